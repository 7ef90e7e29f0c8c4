#pragma once

#include <QObject>
#include <QString>

#include <array>
#include <optional>

namespace tonequill {

Q_NAMESPACE

// The four top-level sections of the window, in the order of the switch.
enum class AppSection { library, find, studio, generate };
Q_ENUM_NS(AppSection)

inline constexpr std::array kAppSections{AppSection::library, AppSection::find, AppSection::studio, AppSection::generate};

// The text that identifies a section, and back; none for an unknown text.
QString sectionText(AppSection section);
std::optional<AppSection> sectionFromText(QStringView text);

} // namespace tonequill

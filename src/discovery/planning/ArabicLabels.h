#pragma once

#include "discovery/records/OnlineSound.h"

#include <QHash>
#include <QString>
#include <QStringList>

#include <optional>

// A short Arabic caption for a found sound, from resources/planning/captions.txt.
// Pure; any thread; the table is built on first use.
namespace tonequill::ArabicLabels {

// The caption of the first term that the sound bears as a tag or in its title, else
// of its own first tag that has one. None for a title that is Arabic already.
std::optional<QString> label(const OnlineSound& sound, const QStringList& terms);

// English terms and their captions.
const QHash<QString, QString>& names();

} // namespace tonequill::ArabicLabels

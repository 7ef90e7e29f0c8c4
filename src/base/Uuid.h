#pragma once

#include <QString>
#include <QUuid>

#include <optional>

namespace tonequill {

// The canonical text of an identity: 36 upper-case characters without braces.
inline QString uuidText(const QUuid& id)
{
    return id.toString(QUuid::WithoutBraces).toUpper();
}

// Reads a canonical identity in either case, the null one included; none for
// anything else.
std::optional<QUuid> uuidFromText(QStringView text);

} // namespace tonequill

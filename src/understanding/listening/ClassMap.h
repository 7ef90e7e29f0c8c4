#pragma once

#include <QByteArray>
#include <QString>
#include <QStringList>

namespace tonequill::ClassMap {

// The class map of a YAMNet-compatible network: a CSV table with the columns
// index,mid,display_name, one row for each score.

// The labels in the order of the scores, as identifiers. Throws
// std::runtime_error, with what is wrong, for a map with a missing, doubled or
// unreadable row.
QStringList read(const QByteArray& csv);

// A display name as an identifier: lower-case words joined with "_"; what stands
// in brackets counts as words. A few have a spelling of their own.
QString identifier(const QString& displayName);

} // namespace tonequill::ClassMap

#pragma once

#include <QList>
#include <QString>
#include <QStringList>

// The tables of the room, resources/planning/NAME.txt: one row a line, columns
// separated by " = ", the entries of a list by ", "; # begins a comment.
namespace tonequill::TableFile {

// The rows in their order, each with its columns. REQUIRES: the table is compiled in.
QList<QStringList> rows(const QString& name);

QStringList entries(const QString& column);

} // namespace tonequill::TableFile

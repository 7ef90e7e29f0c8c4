#pragma once

#include <QString>
#include <QStringList>
#include <QUuid>

#include <ostream>

// How GoogleTest prints Qt's types when an expectation fails.
inline void PrintTo(const QString& text, std::ostream* out)
{
    *out << '"' << text.toStdString() << '"';
}
inline void PrintTo(const QUuid& id, std::ostream* out)
{
    *out << id.toString().toStdString();
}

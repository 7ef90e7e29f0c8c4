#include "discovery/planning/TableFile.h"

#include <QFile>

using namespace Qt::StringLiterals;

namespace tonequill::TableFile {

QList<QStringList> rows(const QString& name)
{
    QFile file(u":/planning/%1.txt"_s.arg(name));
    if (!file.open(QIODevice::ReadOnly))
        qFatal("the table %s is not in the program", qUtf8Printable(name));
    QList<QStringList> all;
    for (const QString& line : QString::fromUtf8(file.readAll()).split(u'\n', Qt::SkipEmptyParts)) {
        if (!line.startsWith(u'#'))
            all << line.split(u" = "_s);
    }
    return all;
}

QStringList entries(const QString& column)
{
    return column.split(u", "_s);
}

} // namespace tonequill::TableFile

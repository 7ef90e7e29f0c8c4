#include "understanding/listening/ClassMap.h"

#include <QHash>
#include <QSet>

#include <stdexcept>

namespace tonequill::ClassMap {

using namespace Qt::StringLiterals;

namespace {

// The spellings that the rest of the program knows and the rule doesn't give.
const QHash<QString, QString>& ownSpellings()
{
    static const QHash<QString, QString> table = {
        {u"Shatter"_s, u"glass_breaking"_s},
        {u"Splash, splatter"_s, u"liquid_splashing"_s},
        {u"Computer keyboard"_s, u"typing_computer_keyboard"_s},
        {u"Choir"_s, u"choir_singing"_s},
        {u"Hubbub, speech noise, speech babble"_s, u"babble"_s},
    };
    return table;
}

// The fields of one line; quotes hold commas, two of them are one.
QStringList fieldsOf(const QString& line)
{
    QStringList fields{QString()};
    bool isQuoted = false;
    for (qsizetype i = 0; i < line.size(); ++i) {
        const QChar c = line[i];
        if (c == u'"') {
            if (isQuoted && i + 1 < line.size() && line[i + 1] == u'"') {
                fields.last() += c;
                ++i;
            } else {
                isQuoted = !isQuoted;
            }
        } else if (c == u',' && !isQuoted) {
            fields << QString();
        } else {
            fields.last() += c;
        }
    }
    return fields;
}

[[noreturn]] void refuse(const QString& reason)
{
    throw std::runtime_error(reason.toStdString());
}

} // namespace

QString identifier(const QString& displayName)
{
    if (const auto own = ownSpellings().find(displayName); own != ownSpellings().end())
        return *own;
    QString name;
    for (const QChar c : displayName.toLower()) {
        if (c.isLetterOrNumber())
            name += c;
        else if (c != u'\'' && !name.isEmpty() && !name.endsWith(u'_'))
            name += u'_';
    }
    while (name.endsWith(u'_'))
        name.chop(1);
    return name;
}

QStringList read(const QByteArray& csv)
{
    QStringList labels;
    QSet<QString> seen;
    const QStringList lines = QString::fromUtf8(csv).split(u'\n');
    if (fieldsOf(lines.first().trimmed()) != QStringList{u"index"_s, u"mid"_s, u"display_name"_s})
        refuse(u"it doesn't start with index,mid,display_name"_s);
    for (qsizetype number = 1; number < lines.size(); ++number) {
        const QString line = lines[number].trimmed();
        if (line.isEmpty())
            continue;
        const QStringList fields = fieldsOf(line);
        if (fields.size() != 3)
            refuse(u"line %1 doesn't have three columns"_s.arg(number + 1));
        if (fields[0] != QString::number(labels.size()))
            refuse(u"row %1 is missing or stands twice"_s.arg(labels.size()));
        const QString label = identifier(fields[2]);
        if (label.isEmpty() || seen.contains(fields[2]))
            refuse(u"line %1 has no name of its own"_s.arg(number + 1));
        seen.insert(fields[2]);
        labels << label;
    }
    if (labels.isEmpty())
        refuse(u"it has no rows"_s);
    return labels;
}

} // namespace tonequill::ClassMap

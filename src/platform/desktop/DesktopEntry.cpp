#include "platform/desktop/DesktopEntry.h"

#include <QUrl>

namespace tonequill {

using namespace Qt::StringLiterals;

namespace {

QString unescaped(QStringView text)
{
    QString result;
    for (qsizetype i = 0; i < text.size(); ++i) {
        if (text[i] != u'\\' || i + 1 == text.size()) {
            result += text[i];
            continue;
        }
        switch (text[++i].unicode()) {
        case u's':
            result += u' ';
            break;
        case u'n':
            result += u'\n';
            break;
        case u't':
            result += u'\t';
            break;
        case u'r':
            result += u'\r';
            break;
        case u'\\':
            result += u'\\';
            break;
        default: // a rule of the value itself, such as the ; of a list
            result += u'\\';
            result += text[i];
        }
    }
    return result;
}

// The words of an Exec line. None if a quote is left open.
std::optional<QStringList> words(const QString& line)
{
    QStringList result;
    QString word;
    bool isInWord = false;
    bool isQuoted = false;
    for (qsizetype i = 0; i < line.size(); ++i) {
        const QChar c = line[i];
        if (c == u'"') {
            isQuoted = !isQuoted;
            isInWord = true;
        } else if (isQuoted && c == u'\\' && i + 1 < line.size()) {
            word += line[++i];
        } else if (!isQuoted && c.isSpace()) {
            if (isInWord)
                result << word;
            word.clear();
            isInWord = false;
        } else {
            word += c;
            isInWord = true;
        }
    }
    if (isQuoted)
        return std::nullopt;
    if (isInWord)
        result << word;
    return result;
}

} // namespace

std::optional<DesktopEntry> DesktopEntry::parse(const QByteArray& text)
{
    DesktopEntry entry;
    bool isInGroup = false;
    const QString lines = QString::fromUtf8(text);
    for (QStringView line : QStringView(lines).split(u'\n')) {
        line = line.trimmed();
        if (line.startsWith(u'['))
            isInGroup = line == u"[Desktop Entry]"_s;
        const qsizetype equals = line.indexOf(u'=');
        if (!isInGroup || line.startsWith(u'#') || equals < 1)
            continue;
        const QString key = line.first(equals).trimmed().toString();
        if (!entry.m_values.contains(key))
            entry.m_values.insert(key, unescaped(line.sliced(equals + 1).trimmed()));
    }
    const bool isThere = entry.value(u"Type"_s) == u"Application"_s && entry.value(u"Hidden"_s) != u"true"_s;
    return isThere ? std::optional(entry) : std::nullopt;
}

QStringList DesktopEntry::list(const QString& key) const
{
    return value(key).split(u';', Qt::SkipEmptyParts);
}

QStringList DesktopEntry::command(const QString& path) const
{
    const auto parts = words(value(u"Exec"_s));
    if (!parts || parts->isEmpty())
        return {};
    QStringList result;
    bool hasFile = false;
    for (const QString& part : *parts) {
        if (part == u"%i"_s) {
            if (const QString icon = value(u"Icon"_s); !icon.isEmpty())
                result << u"--icon"_s << icon;
            continue;
        }
        QString word;
        bool isCode = false; // a word that was nothing but a code may vanish
        for (qsizetype i = 0; i < part.size(); ++i) {
            if (part[i] != u'%' || i + 1 == part.size()) {
                word += part[i];
                continue;
            }
            isCode = part.size() == 2;
            switch (part[++i].unicode()) {
            case u'%':
                word += u'%';
                break;
            case u'f':
            case u'F':
                word += path;
                hasFile = true;
                break;
            case u'u':
            case u'U':
                word += QUrl::fromLocalFile(path).toString(QUrl::FullyEncoded);
                hasFile = true;
                break;
            case u'c':
                word += value(u"Name"_s);
                break;
            default: // %k, and those that no longer mean anything
                break;
            }
        }
        if (!isCode || !word.isEmpty())
            result << word;
    }
    if (!hasFile)
        result << path;
    return result;
}

} // namespace tonequill

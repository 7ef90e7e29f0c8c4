#include "base/Text.h"

#include <QTextBoundaryFinder>

#include <algorithm>

namespace tonequill::text {

namespace {

char32_t firstCodePoint(QStringView text)
{
    if (text.size() > 1 && text[0].isHighSurrogate() && text[1].isLowSurrogate())
        return QChar::surrogateToUcs4(text[0], text[1]);
    return text[0].unicode();
}

// Marks, embeddings, overrides and isolates of the bidirectional algorithm.
bool changesDirection(QChar c)
{
    const char16_t code = c.unicode();
    return code == 0x061C || code == 0x200E || code == 0x200F || (code >= 0x202A && code <= 0x202E) ||
           (code >= 0x2066 && code <= 0x2069);
}

// Calls visit(character) for each grapheme cluster until it returns false.
template <typename Visit>
void forEachCharacter(QStringView text, Visit visit)
{
    QTextBoundaryFinder finder(QTextBoundaryFinder::Grapheme, text.data(), text.size());
    qsizetype start = 0;
    while (start < text.size()) {
        qsizetype end = finder.toNextBoundary();
        if (end < 0)
            end = text.size();
        if (!visit(text.sliced(start, end - start)))
            return;
        start = end;
    }
}

template <typename Test>
qsizetype countIf(QStringView text, Test test)
{
    qsizetype count = 0;
    forEachCharacter(text, [&](QStringView character) {
        count += test(firstCodePoint(character)) ? 1 : 0;
        return true;
    });
    return count;
}

} // namespace

qsizetype characterCount(QStringView text)
{
    return countIf(text, [](char32_t) { return true; });
}

QList<QStringView> characters(QStringView text)
{
    QList<QStringView> result;
    result.reserve(text.size());
    forEachCharacter(text, [&](QStringView character) {
        result << character;
        return true;
    });
    return result;
}

QStringList words(QStringView text, QChar joint)
{
    QStringList result;
    bool isInWord = false;
    forEachCharacter(text, [&](QStringView character) {
        const bool isJoint = !joint.isNull() && character.size() == 1 && character[0] == joint;
        const bool belongs = isJoint || QChar::isLetterOrNumber(firstCodePoint(character));
        if (belongs && !isInWord)
            result << QString();
        if (belongs)
            result.last() += character;
        isInWord = belongs;
        return true;
    });
    return result;
}

qsizetype letterCount(QStringView text)
{
    return countIf(text, [](char32_t c) { return QChar::isLetter(c); });
}

qsizetype numberCount(QStringView text)
{
    return countIf(text, [](char32_t c) { return QChar::isNumber(c); });
}

QString firstCharacters(QStringView text, qsizetype count)
{
    qsizetype length = 0;
    forEachCharacter(text, [&](QStringView character) {
        if (count-- <= 0)
            return false;
        length += character.size();
        return true;
    });
    return text.first(length).toString();
}

QString firstBytes(QStringView text, qsizetype bytes)
{
    qsizetype length = 0;
    forEachCharacter(text, [&](QStringView character) {
        bytes -= character.toUtf8().size();
        if (bytes < 0)
            return false;
        length += character.size();
        return true;
    });
    return text.first(length).toString();
}

QString withoutControls(const QString& text)
{
    const auto isControl = [](QChar c) { return c.category() == QChar::Other_Control; };
    if (std::none_of(text.begin(), text.end(), isControl))
        return text;
    QString result = text;
    std::replace_if(result.begin(), result.end(), isControl, QChar(u' '));
    return result;
}

QString shownPart(const QString& text)
{
    constexpr qsizetype kMost = 32'768;
    if (text.size() <= kMost)
        return text;
    return text.first(text[kMost - 1].isHighSurrogate() ? kMost - 1 : kMost);
}

QString lowercase(QStringView text)
{
    return text.toString().toLower();
}

QString plainLine(QStringView text)
{
    QString line = text.toString();
    line.removeIf(changesDirection);
    for (QChar& c : line) {
        if (c.category() == QChar::Other_Control || c.category() == QChar::Separator_Line ||
            c.category() == QChar::Separator_Paragraph)
            c = QChar::ReplacementCharacter;
    }
    return line;
}

QString trimmed(QStringView text)
{
    return text.trimmed().toString();
}

QString capitalized(QStringView text)
{
    QString result;
    result.reserve(text.size());
    bool inWord = false;
    forEachCharacter(text, [&](QStringView character) {
        const bool isWord = QChar::isLetterOrNumber(firstCodePoint(character)) || character == u"'" || character == u"’";
        const QString one = character.toString();
        result += isWord && !inWord ? one.toUpper() : one.toLower();
        inWord = isWord;
        return true;
    });
    return result;
}

} // namespace tonequill::text

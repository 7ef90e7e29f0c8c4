#pragma once

#include <QList>
#include <QString>
#include <QStringList>
#include <QStringView>

namespace tonequill::text {

// Unicode, wrapped once. A "character" is what a reader takes for one: a
// grapheme cluster. It counts as a letter or a number by its first code point,
// in any script.

// Characters (grapheme clusters) in `text`.
qsizetype characterCount(QStringView text);

// The characters, as views into `text`.
QList<QStringView> characters(QStringView text);

// The runs of letters and numbers, in order: every other character separates, but
// `joint`, which stays in its word.
QStringList words(QStringView text, QChar joint = {});

// Characters that are letters (Unicode general category L*).
qsizetype letterCount(QStringView text);

// Characters that are numbers (general categories Nd, Nl and No).
qsizetype numberCount(QStringView text);

// The first `count` characters, never cutting one apart. REQUIRES: count >= 0.
QString firstCharacters(QStringView text, qsizetype count);

// The longest beginning of `text` that has at most `bytes` bytes in UTF-8 and
// ends between two characters. REQUIRES: bytes >= 0.
QString firstBytes(QStringView text, qsizetype bytes);

// With a blank in place of each control character (general category Cc), line ends
// included: what a name may not hold.
QString withoutControls(const QString& text);

// What is shown of a text: its first 32,768 code units, at most 64 KiB of memory, not
// cutting a surrogate pair. Nothing on a screen shows more, and laying out a
// hostile text of megabytes takes minutes.
QString shownPart(const QString& text);

// Lower case by Unicode's rules, whatever the locale.
QString lowercase(QStringView text);

// For one row of plain text: control characters, line ends among them, become "�",
// and what changes the direction of the text after it goes.
QString plainLine(QStringView text);

// Without white space and newlines at both ends.
QString trimmed(QStringView text);

// The first letter of each word in upper case, the others in lower case.
QString capitalized(QStringView text);

} // namespace tonequill::text

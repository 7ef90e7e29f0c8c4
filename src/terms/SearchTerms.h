#pragma once

#include <QHash>
#include <QList>
#include <QString>
#include <QStringList>

#include <optional>

// English search words for Arabic ones, the written dialects included: the tags
// of sounds are English. Offline and by rules alone: fold the spelling, look the
// word up, else without its prefixes and suffixes, else allow one wrong letter.
//
// The dictionary is resources/terms/arabic-english.txt. Pure; any thread; the
// tables are built on first use. bench/SearchTerms.cpp has the times.
namespace tonequill::SearchTerms {

enum class Fuzzy { no, yes };

// The English words for one Arabic word, the best one first; empty for a word
// that is unknown or not Arabic.
QStringList english(const QString& word, Fuzzy fuzzy);

// What to ask an English catalogue for instead of Arabic text: one word for each
// that is known, Latin words and digits as they are. None for a text without
// Arabic or with nothing left of it.
std::optional<QString> onlineQuery(const QString& text);

// True if a code point is in one of the blocks Arabic and Arabic Supplement.
bool containsArabic(QStringView text);

// The steps, each for itself.

// The spelling that words are compared in: without vowel marks, tatweel, hamza
// and the article; one form of alef, of ya and of ta marbuta.
QString normalize(QStringView text);

// Without vowel marks and tatweel; nothing else changes.
QString stripMarks(QStringView text);

// A normalised word without its prefixes and suffixes, best guess first. It
// doesn't hold the word itself and may hold repeats.
QStringList variants(const QString& word);

// How many characters to insert, delete or replace to make one of the other.
qsizetype editDistance(QStringView one, QStringView other);

// The words of the one key that differs from a normalised word in one character;
// empty if there is none or more than one.
QStringList closest(const QString& word);

// Normalised Arabic words and their English ones.
const QHash<QString, QStringList>& dictionary();

} // namespace tonequill::SearchTerms

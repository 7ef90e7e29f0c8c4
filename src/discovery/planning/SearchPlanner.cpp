#include "discovery/planning/SearchPlanner.h"

#include "base/Text.h"
#include "discovery/planning/TableFile.h"

#include <algorithm>
#include <array>

using namespace Qt::StringLiterals;

namespace tonequill::SearchPlanner {

namespace {

constexpr qsizetype kMostTerms = 8;
constexpr qsizetype kTold = 5; // terms in the summary

// English words that carry no meaning in a search of sounds.
constexpr std::array<QStringView, 13> kStopWords{u"sound", u"sounds", u"effect", u"effects", u"sfx", u"of",  u"the",
                                                 u"a",     u"an",     u"for",    u"free",    u"and", u"with"};

// An ending that may fall, of a word that has so many characters at least.
struct Ending {
    QStringView letters;
    qsizetype fewest;
};
constexpr std::array kEndings{Ending{u"ing", 6}, Ending{u"es", 5}, Ending{u"s", 4}};

void addNew(QStringList& list, const QStringList& more)
{
    for (const QString& one : more) {
        if (!list.contains(one))
            list << one;
    }
}

QStringList keywordsOf(const QString& text)
{
    QStringList words = text::words(text::lowercase(text), u'-'); // "level-up" is one word
    words.removeIf([](const QString& word) { return std::find(kStopWords.begin(), kStopWords.end(), word) != kStopWords.end(); });
    return words;
}

// The person's own words first, where the table has confirmed them.
QStringList ordered(const QStringList& primary, const QStringList& expanded)
{
    QStringList terms;
    for (const QString& word : primary) {
        if (expanded.contains(word))
            terms << word;
    }
    addNew(terms, expanded);
    return terms;
}

QString summaryOf(const QStringList& terms)
{
    return terms.first(std::min(terms.size(), kTold)).join(u", "_s);
}

} // namespace

const QHash<QString, QStringList>& intents()
{
    static const QHash<QString, QStringList> table = [] {
        QHash<QString, QStringList> all;
        for (const QStringList& row : TableFile::rows(u"intents"_s)) {
            if (!all.contains(row.first()))
                all.insert(row.first(), TableFile::entries(row.last()));
        }
        return all;
    }();
    return table;
}

QStringList variants(const QString& word)
{
    const qsizetype length = text::characterCount(word);
    for (const Ending& ending : kEndings) {
        if (length >= ending.fewest && word.endsWith(ending.letters))
            return {word, word.chopped(ending.letters.size())};
    }
    return {word};
}

Plan plan(const QString& text)
{
    const QStringList keywords = keywordsOf(text);
    QStringList expanded;
    addNew(expanded, intents().value(keywords.join(QString()))); // "sword fight" is "swordfight"
    QStringList primary;
    for (const QString& keyword : keywords) {
        addNew(primary, variants(keyword));
        const auto intent = intents().find(keyword);
        addNew(expanded, intent != intents().end() ? *intent : variants(keyword));
    }
    QStringList terms = ordered(primary, expanded);
    if (terms.isEmpty() && !text::trimmed(text).isEmpty())
        terms << text::lowercase(text); // nothing but stop words: searchable all the same
    return {terms.first(std::min(terms.size(), kMostTerms)), primary, summaryOf(terms)};
}

} // namespace tonequill::SearchPlanner

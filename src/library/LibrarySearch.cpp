#include "library/LibrarySearch.h"

#include "base/Text.h"
#include "terms/SearchTerms.h"

#include <QHash>

#include <algorithm>
#include <vector>

using namespace Qt::StringLiterals;

namespace tonequill {

namespace {

// One row a line: a key, then its synonyms.
const QList<QStringList>& synonyms()
{
    // clang-format off
    static const QList<QStringList> rows{
        {u"whoosh"_s, u"swoosh"_s, u"swish"_s, u"swipe"_s, u"transition"_s, u"fast"_s},
        {u"hit"_s, u"impact"_s, u"punch"_s, u"slam"_s, u"thud"_s, u"boom"_s},
        {u"pop"_s, u"click"_s, u"bubble"_s, u"tap"_s},
        {u"riser"_s, u"rise"_s, u"swell"_s, u"build"_s, u"tension"_s},
        {u"laugh"_s, u"giggle"_s, u"funny"_s},
        {u"bass"_s, u"deep"_s, u"low"_s, u"drop"_s, u"boom"_s},
        {u"sparkle"_s, u"bright"_s, u"shine"_s, u"magic"_s, u"chime"_s},
    };
    // clang-format on
    return rows;
}

// The control character of that name. A word holds none, so it is found within one text or not at all.
constexpr QChar kSeparator(0x1F);

// Composed, so that an accent counts the same whether it is part of its letter or follows it.
QString fold(const QString& text)
{
    return text::lowercase(text).normalized(QString::NormalizationForm_C);
}

} // namespace

LibrarySearch::Signature::Signature(QStringView text)
{
    const auto classBit = [](quint32 value) { return quint64(1) << ((value * 0x9E3779B1U) >> 26); }; // 2^32 / golden ratio
    for (qsizetype i = 0; i < text.size(); ++i) {
        letters |= classBit(text[i].unicode());
        if (i > 0)
            pairs |= classBit(quint32(text[i - 1].unicode()) << 16 | text[i].unicode());
    }
}

struct LibrarySearch::Term {
    QString text;
    QString whole;  // as a descriptor stands
    int weight = 0; // of all words of the query together
    Signature signature;
};

std::vector<LibrarySearch::Term> LibrarySearch::termsOf(const QStringList& words)
{
    constexpr int kOwnWord = 2;
    constexpr int kOtherWord = 1;
    QHash<QString, int> counts;
    for (const QString& word : words)
        ++counts[word];
    QHash<QString, int> weights;
    for (auto word = counts.cbegin(); word != counts.cend(); ++word) {
        for (const QString& term : expanded(word.key()))
            weights[term] += *word * (term == word.key() ? kOwnWord : kOtherWord);
    }
    std::vector<Term> terms;
    for (auto term = weights.cbegin(); term != weights.cend(); ++term)
        terms.push_back({term.key(), kSeparator + term.key() + kSeparator, *term, Signature(term.key())});
    return terms;
}

QSet<QString> LibrarySearch::expanded(const QString& word)
{
    QSet<QString> terms{word};
    const auto addAll = [&terms](const QStringList& row) {
        for (const QString& term : row)
            terms << term;
    };
    for (const QString& english : SearchTerms::english(word, SearchTerms::Fuzzy::yes)) {
        terms << english;
        for (const QStringList& row : synonyms()) {
            if (row.first() == english)
                addAll(row);
        }
    }
    for (const QStringList& row : synonyms()) {
        if (row.contains(word))
            addAll(row);
    }
    return terms;
}

const LibrarySearch::Folded& LibrarySearch::folded(const QList<SoundItem>& items, qsizetype index)
{
    Folded& sound = m_folded[index];
    if (!sound.text.isNull())
        return sound;
    const SoundItem& item = items[index];
    // One piece to fold costs a third of four.
    QString text = QString(item.name).replace(kSeparator, u' ') + kSeparator;
    for (const QString& tag : item.tags)
        text += tag + kSeparator;
    text = fold(text);
    sound.nameLength = text.indexOf(kSeparator);
    sound.tagsEnd = text.size();
    for (const QString& descriptor : item.descriptors)
        text += descriptor + kSeparator;
    sound.signature = Signature(text);
    sound.text = text;
    return sound;
}

QList<SoundItem> LibrarySearch::search(const QList<SoundItem>& items, const QString& query)
{
    const QStringList words = text::words(fold(query));
    if (words.isEmpty())
        return items;
    constexpr int kInName = 3;
    constexpr int kInTag = 2;
    const std::vector<Term> terms = termsOf(words);
    struct Match {
        qsizetype index;
        int score;
    };
    std::vector<Match> matches;
    for (qsizetype index = 0; index < items.size(); ++index) {
        const Folded& sound = folded(items, index);
        const QStringView text = sound.text;
        int score = 0;
        for (const Term& term : terms) {
            if (!sound.signature.mayContain(term.signature))
                continue;
            const auto isBetween = [&](qsizetype from, qsizetype to, const QString& part) {
                return text.sliced(from, to - from).contains(part);
            };
            score += isBetween(0, sound.nameLength, term.text) ? kInName * term.weight : 0;
            score += isBetween(sound.nameLength, sound.tagsEnd, term.text) ? kInTag * term.weight : 0;
            score += isBetween(sound.tagsEnd - 1, text.size(), term.whole) ? term.weight : 0;
        }
        if (score > 0)
            matches.push_back({index, score});
    }
    std::stable_sort(matches.begin(), matches.end(), [](const Match& a, const Match& b) { return a.score > b.score; });
    QList<SoundItem> found;
    found.reserve(qsizetype(matches.size()));
    for (const Match& match : matches)
        found << items[match.index];
    return found;
}

QList<SoundItem> LibrarySearch::containing(const QList<SoundItem>& items, const QStringList& words)
{
    std::vector<Term> terms;
    for (const QString& word : words) {
        const QString text = word.normalized(QString::NormalizationForm_C);
        terms.push_back({text, {}, 1, Signature(text)});
    }
    QList<SoundItem> found;
    for (qsizetype index = 0; index < items.size(); ++index) {
        const Folded& sound = folded(items, index);
        const QStringView text = QStringView(sound.text).first(sound.tagsEnd);
        const auto isIn = [&](const Term& term) {
            return sound.signature.mayContain(term.signature) && text.contains(term.text);
        };
        if (std::any_of(terms.begin(), terms.end(), isIn))
            found << items[index];
    }
    return found;
}

} // namespace tonequill

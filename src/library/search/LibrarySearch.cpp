#include "library/search/LibrarySearch.h"

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
};

LibrarySearch::Terms LibrarySearch::termsOf(const QStringList& words)
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
    Terms all;
    for (auto term = weights.cbegin(); term != weights.cend(); ++term) {
        all.terms.push_back({term.key(), kSeparator + term.key() + kSeparator, *term});
        all.signatures.emplace_back(term.key());
    }
    return all;
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
    const auto append = [](QString& text, const QStringList& words) {
        qsizetype size = text.size();
        for (const QString& word : words)
            size += word.size() + 1;
        text.reserve(size);
        for (const QString& word : words)
            text.append(word).append(kSeparator);
    };
    // One piece to fold costs a third of four.
    QString named = item.name;
    named.replace(kSeparator, u' ').append(kSeparator);
    append(named, item.tags);
    sound.text = fold(named);
    sound.nameLength = sound.text.indexOf(kSeparator);
    sound.tagsEnd = sound.text.size();
    append(sound.text, item.descriptors);
    sound.signature = Signature(sound.text);
    return sound;
}

QList<SoundItem> LibrarySearch::search(const QList<SoundItem>& items, const QString& query)
{
    const QStringList words = text::words(fold(query));
    if (words.isEmpty())
        return items;
    constexpr int kInName = 3;
    constexpr int kInTag = 2;
    const Terms all = termsOf(words);
    struct Match {
        qsizetype index;
        int score;
    };
    std::vector<Match> matches;
    for (qsizetype index = 0; index < items.size(); ++index) {
        const Folded& sound = folded(items, index);
        const QStringView text = sound.text;
        int score = 0;
        for (std::size_t i = 0; i < all.terms.size(); ++i) {
            if (!sound.signature.mayContain(all.signatures[i]))
                continue;
            const Term& term = all.terms[i];
            // No word holds a separator, so each place lies in one of the three.
            qsizetype at = text.indexOf(term.text);
            if (at >= 0 && at < sound.nameLength) {
                score += kInName * term.weight;
                at = text.indexOf(term.text, sound.nameLength);
            }
            if (at >= 0 && at < sound.tagsEnd)
                score += kInTag * term.weight;
            if (at >= 0 && text.indexOf(term.whole, sound.tagsEnd - 1) >= 0)
                score += term.weight;
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
    struct Part {
        QString text;
        Signature signature;
    };
    std::vector<Part> parts;
    for (const QString& word : words) {
        const QString text = word.normalized(QString::NormalizationForm_C);
        parts.push_back({text, Signature(text)});
    }
    QList<SoundItem> found;
    for (qsizetype index = 0; index < items.size(); ++index) {
        const Folded& sound = folded(items, index);
        const QStringView text = QStringView(sound.text).first(sound.tagsEnd);
        const auto isIn = [&](const Part& part) {
            return sound.signature.mayContain(part.signature) && text.contains(part.text);
        };
        if (std::any_of(parts.begin(), parts.end(), isIn))
            found << items[index];
    }
    return found;
}

} // namespace tonequill

#include "discovery/catalogue/IndexSearch.h"

#include "discovery/planning/SoundRanker.h"
#include "discovery/planning/TermScore.h"

#include <algorithm>
#include <bit>

namespace tonequill {

namespace {

constexpr qsizetype kShortestList = 400; // the exact stage looks at so many at least
constexpr float kPrimaryTag = 12;
constexpr float kPrimaryWord = 7.5F;
constexpr float kOtherTag = 3.5F;
constexpr float kOtherWord = 2.5F;
constexpr float kPopularity = 4; // points for a popularity of 1, in both stages
constexpr double kArabic = 3;
constexpr std::size_t kRememberedTexts = 1 << 13; // of tags above all, which come again and again

// Larger for a larger number, as an unsigned integer. Not for NaN.
std::uint32_t orderOf(float number)
{
    constexpr std::uint32_t kSign = 0x80000000U;
    const auto bits = std::bit_cast<std::uint32_t>(number + 0.0F); // −0 is 0
    return (bits & kSign) != 0 ? ~bits : bits | kSign;
}

} // namespace

struct IndexSearch::Term {
    std::string text; // UTF-8
    CatalogueTables::Symbol symbol = SymbolTable::kNone;
    bool isPrimary = false;
};

struct IndexSearch::Candidate {
    std::int32_t index = 0;
    TermScore found;
    double score = 0;
};

IndexSearch::IndexSearch(const CatalogueTables& tables)
    : m_tables(tables),
      m_points(std::size_t(tables.soundCount())),
      m_texts(tables.texts(kRememberedTexts))
{
    for (std::int32_t index = 0; index < tables.soundCount(); ++index)
        m_points[std::size_t(index)].boost = static_cast<float>(tables.popularity(index)) * kPopularity;
    for (const QStringView tag : SoundRanker::kBackgroundTags) {
        if (const auto symbol = tables.find(tag.toUtf8().toStdString()); symbol != SymbolTable::kNone)
            m_background.push_back(symbol);
    }
}

std::vector<IndexSearch::Term> IndexSearch::termsOf(const IndexQuery& query) const
{
    std::vector<Term> terms;
    for (const QString& term : query.terms) {
        std::string text = term.toStdString();
        const auto symbol = m_tables.find(text);
        terms.push_back({std::move(text), symbol, query.primary.contains(term)});
    }
    return terms;
}

void IndexSearch::gather(Terms terms)
{
    m_candidates.clear();
    const auto add = [this](std::span<const std::int32_t> postings, float weight) {
        for (const std::int32_t index : postings) {
            float& score = m_points[std::size_t(index)].score;
            if (score == 0)
                m_candidates.push_back(index);
            score += weight;
        }
    };
    for (const Term& term : terms) {
        if (term.symbol == SymbolTable::kNone)
            continue;
        add(m_tables.tagPostings(term.symbol), term.isPrimary ? kPrimaryTag : kOtherTag);
        add(m_tables.wordPostings(term.symbol), term.isPrimary ? kPrimaryWord : kOtherWord);
    }
}

// The best candidates by score, equal ones in the order in which they were gathered:
// both are one number, so that a partial selection gives what a stable sort would.
std::vector<std::int32_t> IndexSearch::shortlist(const IndexQuery& query)
{
    const std::size_t most = std::min(m_candidates.size(), std::size_t(std::max(query.limit, kShortestList)));
    std::vector<std::uint64_t> best; // never many more than are wanted: those that can't be among them go
    const auto keepBest = [&best, most] {
        if (best.size() <= most)
            return std::uint64_t(0);
        const auto end = best.begin() + std::ptrdiff_t(most);
        std::nth_element(best.begin(), end - 1, best.end(), std::greater<>());
        best.erase(end, best.end());
        return best.back();
    };
    std::uint64_t threshold = 0;
    for (std::size_t order = 0; order < m_candidates.size(); ++order) {
        const std::int32_t index = m_candidates[order];
        Points& points = m_points[std::size_t(index)];
        const float boosted = std::exchange(points.score, 0.0F) + points.boost;
        const std::uint64_t key = std::uint64_t(orderOf(boosted)) << 32 | (UINT32_MAX - std::uint32_t(order));
        if (key < threshold || (query.maxSeconds && m_tables.duration(index) > *query.maxSeconds))
            continue;
        best.push_back(key);
        if (best.size() == 4 * most)
            threshold = keepBest();
    }
    keepBest();
    std::sort(best.begin(), best.end(), std::greater<>());
    std::vector<std::int32_t> list;
    list.reserve(best.size());
    for (const std::uint64_t key : best)
        list.push_back(m_candidates[UINT32_MAX - std::uint32_t(key)]);
    return list;
}

IndexSearch::Looked& IndexSearch::lookAt(CatalogueTables::Symbol tag, Terms terms)
{
    if (2 * m_lookedCount >= m_looked.size()) { // at most half full; those it has are looked at anew
        m_looked.assign(std::max<std::size_t>(2 * m_looked.size(), 8192), Looked());
        m_lookedCount = 0;
    }
    constexpr std::uint32_t kSpread = 2654435769U; // 2^32 / the golden ratio
    const std::size_t mask = m_looked.size() - 1;
    std::size_t at = (tag * kSpread >> 12) & mask;
    while (m_looked[at].tag != tag && m_looked[at].tag != SymbolTable::kNone)
        at = (at + 1) & mask;
    Looked& looked = m_looked[at];
    if (looked.tag == SymbolTable::kNone) {
        ++m_lookedCount;
        looked.tag = tag;
        const std::string_view text = m_tables.text(tag);
        for (std::size_t i = 0; i < terms.size(); ++i) {
            looked.is |= std::uint32_t(terms[i].symbol == tag) << i;
            looked.has |= std::uint32_t(text.find(terms[i].text) != std::string_view::npos) << i;
        }
    }
    return looked;
}

// REQUIRES: at most 32 terms.
void IndexSearch::scoreExactly(Terms terms, std::vector<Candidate>& candidates)
{
    std::fill(m_looked.begin(), m_looked.end(), Looked());
    m_lookedCount = 0;
    constexpr std::size_t kAhead = 4;
    for (std::size_t at = 0; at < candidates.size(); ++at) {
        if (at + 2 * kAhead < candidates.size())
            m_tables.willNeed(candidates[at + 2 * kAhead].index);
        if (at + kAhead < candidates.size())
            m_tables.willNeedTexts(candidates[at + kAhead].index);
        Candidate& candidate = candidates[at];
        std::uint32_t is = 0;
        std::uint32_t has = 0;
        for (const CatalogueTables::Symbol tag : m_tables.tags(candidate.index)) {
            const Looked& looked = lookAt(m_tables.lower(tag), terms);
            is |= looked.is;
            has |= looked.has;
        }
        const auto words = m_tables.titleWords(candidate.index);
        const std::string_view title = m_tables.lowerTitle(candidate.index);
        for (std::size_t i = 0; i < terms.size(); ++i) {
            const bool isWord = std::find(words.begin(), words.end(), terms[i].symbol) != words.end();
            const bool isInTitle = isWord || title.find(terms[i].text) != std::string_view::npos;
            candidate.found.add({(is >> i & 1U) != 0, (has >> i & 1U) != 0, isWord, isInTitle, terms[i].isPrimary});
        }
    }
}

bool IndexSearch::isBackground(std::int32_t index) const
{
    const auto tags = m_tables.tags(index);
    return std::any_of(tags.begin(), tags.end(), [this](CatalogueTables::Symbol tag) {
        return std::find(m_background.begin(), m_background.end(), m_tables.lower(tag)) != m_background.end();
    });
}

void IndexSearch::adjustForShortness(std::vector<Candidate>& candidates) const
{
    for (Candidate& candidate : candidates) {
        candidate.score += TermScore::shortness(m_tables.duration(candidate.index));
        if (isBackground(candidate.index))
            candidate.score -= TermScore::kBackgroundCost;
    }
}

QList<OnlineSound> IndexSearch::search(const IndexQuery& query)
{
    const std::vector<Term> terms = termsOf(query);
    gather(terms);
    std::vector<Candidate> candidates;
    for (const std::int32_t index : shortlist(query))
        candidates.push_back({index, {}, 0});
    constexpr std::size_t kAtOnce = 32; // terms, a bit each
    for (std::size_t first = 0; first < terms.size(); first += kAtOnce)
        scoreExactly(Terms(terms).subspan(first, std::min(kAtOnce, terms.size() - first)), candidates);
    for (Candidate& candidate : candidates)
        candidate.score = candidate.found.total();
    if (query.maxSeconds)
        adjustForShortness(candidates);
    // Before popularity, which orders what matches and brings nothing in.
    std::erase_if(candidates, [](const Candidate& candidate) { return !(candidate.score > 0); });
    for (Candidate& candidate : candidates) {
        candidate.score += m_tables.popularity(candidate.index) * double(kPopularity);
        if (query.preferArabic && m_tables.isArabic(candidate.index))
            candidate.score += kArabic;
    }
    std::stable_sort(candidates.begin(), candidates.end(),
                     [](const Candidate& one, const Candidate& other) { return one.score > other.score; });
    QList<OnlineSound> found;
    const qsizetype length = std::clamp(query.limit, qsizetype(0), qsizetype(candidates.size()));
    found.reserve(length);
    for (qsizetype i = 0; i < length; ++i) {
        if (i + 4 < length)
            m_tables.willNeedTexts(candidates[std::size_t(i + 4)].index);
        found << m_tables.sound(candidates[std::size_t(i)].index, m_texts);
    }
    return found;
}

} // namespace tonequill

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
      m_scores(std::size_t(tables.soundCount())),
      m_looked(tables.symbolCount())
{
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

void IndexSearch::gather(const std::vector<Term>& terms)
{
    m_candidates.clear();
    const auto add = [this](std::span<const std::int32_t> postings, float weight) {
        for (const std::int32_t index : postings) {
            float& score = m_scores[std::size_t(index)];
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
    std::vector<std::uint64_t> keys;
    keys.reserve(m_candidates.size());
    for (std::size_t order = 0; order < m_candidates.size(); ++order) {
        const std::int32_t index = m_candidates[order];
        const float score = std::exchange(m_scores[std::size_t(index)], 0.0F);
        if (query.maxSeconds && m_tables.duration(index) > *query.maxSeconds)
            continue;
        const float boosted = score + static_cast<float>(m_tables.popularity(index)) * kPopularity;
        keys.push_back(std::uint64_t(orderOf(boosted)) << 32 | (UINT32_MAX - std::uint32_t(order)));
    }
    const auto length = std::min(keys.size(), std::size_t(std::max(query.limit, kShortestList)));
    const auto end = keys.begin() + std::ptrdiff_t(length);
    std::nth_element(keys.begin(), end, keys.end(), std::greater<>());
    std::sort(keys.begin(), end, std::greater<>());
    std::vector<std::int32_t> best;
    best.reserve(length);
    for (auto key = keys.begin(); key != end; ++key)
        best.push_back(m_candidates[UINT32_MAX - std::uint32_t(*key)]);
    return best;
}

void IndexSearch::scoreExactly(const std::vector<Term>& terms, std::vector<Candidate>& candidates)
{
    for (const Term& term : terms) {
        if (m_newestLook > UINT32_MAX - 2) { // the marks have run out: begin anew
            std::fill(m_looked.begin(), m_looked.end(), 0);
            m_newestLook = 0;
        }
        m_newestLook += 2;
        // A tag that many candidates bear is looked into once.
        const auto isIn = [&](CatalogueTables::Symbol tag) {
            std::uint32_t& looked = m_looked[tag];
            if ((looked & ~1U) != m_newestLook)
                looked = m_newestLook | (m_tables.text(tag).find(term.text) != std::string_view::npos ? 1U : 0U);
            return (looked & 1U) != 0;
        };
        for (Candidate& candidate : candidates) {
            TermScore::Match match;
            for (const CatalogueTables::Symbol tag : m_tables.tags(candidate.index)) {
                const CatalogueTables::Symbol lower = m_tables.lower(tag);
                match.isTag = match.isTag || lower == term.symbol;
                match.isInTag = match.isInTag || isIn(lower);
            }
            const auto words = m_tables.titleWords(candidate.index);
            match.isTitleWord = std::find(words.begin(), words.end(), term.symbol) != words.end();
            match.isInTitle = match.isTitleWord || m_tables.lowerTitle(candidate.index).find(term.text) != std::string_view::npos;
            match.isTermPrimary = term.isPrimary;
            candidate.found.add(match);
        }
    }
    for (Candidate& candidate : candidates)
        candidate.score = candidate.found.total();
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
    scoreExactly(terms, candidates);
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
    for (qsizetype i = 0; i < length; ++i)
        found << m_tables.sound(candidates[std::size_t(i)].index);
    return found;
}

} // namespace tonequill

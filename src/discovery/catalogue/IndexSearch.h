#pragma once

#include "discovery/catalogue/CatalogueTables.h"

#include <QList>
#include <QStringList>

#include <optional>

namespace tonequill {

// A planned question to the catalogue. Terms are matched as they are given.
struct IndexQuery {
    QStringList terms;                // in lower case
    QStringList primary;              // those of them that the person typed weigh more
    std::optional<double> maxSeconds; // longer sounds are out, and short ones preferred
    qsizetype limit = 300;            // results at most
    bool preferArabic = false;
};

// Answers questions from the tables, in two stages: a cheap one over the postings that
// leaves a shortlist, an exact one over that. It keeps arrays of the catalogue's size
// from question to question, so one question at a time. bench/Catalogue.cpp has the
// times.
class IndexSearch {
public:
    // The tables outlive it.
    explicit IndexSearch(const CatalogueTables& tables);

    // The best first. Equal ones stand in the order in which the terms reached them.
    QList<OnlineSound> search(const IndexQuery& query);

private:
    struct Term;
    struct Candidate;
    using Scores = std::vector<float>;

    std::vector<Term> termsOf(const IndexQuery& query) const;
    void gather(const std::vector<Term>& terms);
    std::vector<std::int32_t> shortlist(const IndexQuery& query);
    void scoreExactly(const std::vector<Term>& terms, std::vector<Candidate>& candidates);
    void adjustForShortness(std::vector<Candidate>& candidates) const;
    bool isBackground(std::int32_t index) const;

    const CatalogueTables& m_tables;
    // All 0 between questions: each clears what it touched.
    Scores m_scores;
    std::vector<std::int32_t> m_candidates;
    // For each symbol the last term that it was looked at for, and whether that is in it.
    std::vector<std::uint32_t> m_looked;
    std::uint32_t m_newestLook = 0;
    std::vector<CatalogueTables::Symbol> m_background;
};

} // namespace tonequill

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
    // What a sound has in the first stage.
    struct Points {
        float score = 0; // between questions 0: each clears what it touched
        float boost = 0; // for its popularity
    };
    // What is known of a tag within a question: which of the terms it is, and which are in it,
    // a bit each. Many sounds bear the same tags.
    struct Looked {
        CatalogueTables::Symbol tag = SymbolTable::kNone; // in lower case
        std::uint32_t is = 0;
        std::uint32_t has = 0;
    };
    using Terms = std::span<const Term>;

    std::vector<Term> termsOf(const IndexQuery& query) const;
    void gather(Terms terms);
    std::vector<std::int32_t> shortlist(const IndexQuery& query);
    void scoreExactly(Terms terms, std::vector<Candidate>& candidates);
    Looked& lookAt(CatalogueTables::Symbol tag, Terms terms);
    void adjustForShortness(std::vector<Candidate>& candidates) const;
    bool isBackground(std::int32_t index) const;

    const CatalogueTables& m_tables;
    std::vector<Points> m_points;
    std::vector<std::int32_t> m_candidates;
    std::vector<Looked> m_looked; // by hash, a power of two of them
    std::size_t m_lookedCount = 0;
    std::vector<CatalogueTables::Symbol> m_background;
    SymbolTexts m_texts;
};

} // namespace tonequill

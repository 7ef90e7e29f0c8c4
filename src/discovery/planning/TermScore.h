#pragma once

namespace tonequill {

// How well a sound answers the terms of a plan: the one rule, for what the catalogue
// holds and for what comes from the network, so that where a sound came from
// doesn't decide its place. Points without a unit; more is better.
class TermScore {
public:
    // What one term finds in a sound, everything in lower case.
    struct Match {
        bool isTag = false;         // a whole tag
        bool isInTag = false;       // a part of a tag; need not be told of a whole one
        bool isTitleWord = false;   // a whole word of the title
        bool isInTitle = false;     // a part of the title; need not be told of a whole word
        bool isTermPrimary = false; // the person typed it
    };

    // Term after term, in the order of the plan.
    void add(const Match& match)
    {
        const int points = pointsOf(match);
        if (points == 0)
            return;
        ++m_matched;
        m_primaryMatched += match.isTermPrimary ? 1 : 0;
        m_sum += match.isTermPrimary ? points + kPrimaryBonus : points * kOtherShare;
    }

    double total() const { return m_sum + m_primaryMatched * kPrimaryMatched + m_matched - (m_matched == 0 ? kNothing : 0); }

    // What is added where short effects are looked for.
    static double shortness(double seconds)
    {
        if (seconds <= 3)
            return 3;
        if (seconds <= 6)
            return 1.5;
        return seconds <= 12 ? 0 : -1.5;
    }
    // What a sound with one of the tags kBackground loses then, once.
    static constexpr double kBackgroundCost = 2;

private:
    static int pointsOf(const Match& match)
    {
        const int inTags = match.isTag ? 5 : match.isInTag ? 2 : 0;
        const int inTitle = match.isTitleWord ? 4 : match.isInTitle ? 2 : 0;
        return inTags + inTitle;
    }

    static constexpr double kPrimaryBonus = 4;
    static constexpr double kOtherShare = 0.5;
    static constexpr double kPrimaryMatched = 3;
    static constexpr double kNothing = 6;

    double m_sum = 0;
    int m_matched = 0;
    int m_primaryMatched = 0;
};

} // namespace tonequill

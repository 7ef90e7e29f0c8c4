#include "editor/CandidateLabels.h"
#include "support/Printing.h"

#include <gtest/gtest.h>

using namespace tonequill;
using namespace Qt::StringLiterals;

namespace {

CutCandidate candidate(double start, float score)
{
    CutCandidate c;
    c.id = QUuid::createUuid();
    c.start = start;
    c.end = start + 1;
    c.score = score;
    return c;
}

} // namespace

TEST(CandidateLabels, ASoundEffectMovesUpByHowSureItIs)
{
    const std::vector list = {candidate(0, 30), candidate(1, 20), candidate(2, 10)};
    const auto labelled = CandidateLabels::label(list, [](double start, double end) -> std::optional<HeardLabel> {
        EXPECT_EQ(end, start + 1);
        return start == 1 ? std::optional(HeardLabel{u"glass_breaking"_s, 0.75}) : std::nullopt;
    });
    ASSERT_EQ(labelled.size(), 3U);
    EXPECT_EQ(labelled[0].id, list[1].id);
    EXPECT_FLOAT_EQ(labelled[0].score, 38);
    EXPECT_EQ(labelled[0].label, u"Glass Break"_s);
    EXPECT_TRUE(labelled[0].isBest);
    EXPECT_FALSE(labelled[1].isBest);
    EXPECT_FALSE(labelled[1].label); // nothing was heard in it
    EXPECT_FLOAT_EQ(labelled[1].score, 30);
}

TEST(CandidateLabels, VoiceAndMusicMoveDown)
{
    const std::vector list = {candidate(0, 30), candidate(1, 20)};
    const auto labelled = CandidateLabels::label(list, [](double start, double) -> std::optional<HeardLabel> {
        return start == 0 ? std::optional(HeardLabel{u"speech"_s, 0.99}) : std::nullopt;
    });
    EXPECT_EQ(labelled[0].id, list[1].id);
    EXPECT_FLOAT_EQ(labelled[1].score, 18);
    EXPECT_EQ(labelled[1].label, u"Speech"_s);
}

TEST(CandidateLabels, ASingleOneIsNotListenedTo)
{
    const std::vector list = {candidate(0, 30)};
    int listened = 0;
    const auto labelled = CandidateLabels::label(list, [&](double, double) -> std::optional<HeardLabel> {
        ++listened;
        return HeardLabel{u"door"_s, 1};
    });
    EXPECT_EQ(labelled, list);
    EXPECT_EQ(listened, 0);
}

TEST(CandidateLabels, AtMostSevenAreKept)
{
    std::vector<CutCandidate> list;
    for (int i = 0; i < 9; ++i)
        list.push_back(candidate(i, float(50 - i)));
    const auto labelled = CandidateLabels::label(list, [](double, double) { return std::optional<HeardLabel>(); });
    ASSERT_EQ(labelled.size(), 7U);
    EXPECT_EQ(labelled.back().id, list[6].id);
}

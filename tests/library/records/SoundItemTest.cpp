#include "library/records/SoundItem.h"
#include "library/records/ImportError.h"
#include "support/Printing.h"

#include <gtest/gtest.h>

using namespace tonequill;
using namespace Qt::StringLiterals;

TEST(SoundItem, TheCreditLineJoinsWhatIsThere)
{
    SoundItem item;
    item.name = u"Door"_s;
    EXPECT_EQ(item.creditLine(), u"“Door”"_s);
    item.credit = u""_s;
    EXPECT_EQ(item.creditLine(), u"“Door”"_s);
    item.credit = u"Ana"_s;
    EXPECT_EQ(item.creditLine(), u"“Door” by Ana"_s);
    item.license = u"CC BY 4.0"_s;
    item.pageURL = u"https://example.org/1"_s;
    EXPECT_EQ(item.creditLine(), u"“Door” by Ana (CC BY 4.0) https://example.org/1"_s);
    item.credit.reset();
    EXPECT_EQ(item.creditLine(), u"“Door” (CC BY 4.0) https://example.org/1"_s);
}

TEST(SoundItem, EveryFieldCountsForEqualityAndHash)
{
    SoundItem base;
    base.id = QUuid::createUuid();
    std::vector<SoundItem> others(14, base);
    others[0].id = QUuid::createUuid();
    others[1].name = u"x"_s;
    others[2].fileName = u"x"_s;
    others[3].duration = 1;
    others[4].tags = {u"x"_s};
    others[5].descriptors = {u"x"_s};
    others[6].origin = SoundOrigin::cut;
    others[7].createdAt = 1;
    others[8].nameIsAuto = false;
    others[9].sourceID = u"x"_s;
    others[10].license = u"x"_s;
    others[11].credit = u"x"_s;
    others[12].pageURL = u"x"_s;
    others[13].thumbnail = {{0.5F}};
    EXPECT_EQ(qHash(base), qHash(SoundItem(base)));
    for (std::size_t i = 0; i < others.size(); ++i) {
        EXPECT_NE(base, others[i]) << i;
        EXPECT_NE(qHash(base), qHash(others[i])) << i;
    }
}

TEST(SoundItem, OriginsAreTexts)
{
    EXPECT_EQ(originText(SoundOrigin::imported), u"imported"_s);
    EXPECT_EQ(originText(SoundOrigin::generated), u"generated"_s);
    EXPECT_EQ(originText(SoundOrigin::cut), u"cut"_s);
    EXPECT_EQ(originFromText(u"cut"), SoundOrigin::cut);
    EXPECT_FALSE(originFromText(u"Cut"));
    EXPECT_FALSE(originFromText(u""));
}

TEST(ImportError, SaysWhatIsWrongWithTheFile)
{
    EXPECT_EQ(ImportError::noAudio(u"Holiday"_s).message(), u"Holiday has no audio track."_s);
    EXPECT_EQ(ImportError::unsupported(u"notes"_s).message(),
              u"notes is not a format Tonequill can read. Try WAV, MP3, M4A, AIFF, MP4, MOV or M4V."_s);
}

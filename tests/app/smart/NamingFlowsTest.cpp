#include "app/smart/NamingFlows.h"
#include "app/library/ImportFlows.h"
#include "support/LibraryFolder.h"
#include "support/Printing.h"
#include "support/Program.h"

#include <QCoreApplication>

#include <gtest/gtest.h>

using namespace tonequill;
using namespace Qt::StringLiterals;

namespace {

class NamingFlowsTest : public testing::Test, public test::Machine {
protected:
    NamingFlowsTest()
    {
        SoundItem& item = folder.add(u"IMG_0042"_s);
        item.nameIsAuto = true;
        item.tags = {u"door"_s};
        folder.write();
        model = program(folder.path());
    }
    const SoundItem& stored() const { return model->library().items().first(); }
    static SoundHeard heard(std::vector<HeardLabel> labels) { return {u"Door"_s, {}, {}, std::move(labels)}; }

    test::LibraryFolder folder;
    std::unique_ptr<AppModel> model;
};

} // namespace

TEST_F(NamingFlowsTest, ASureEarNamesAndTagsTheSound)
{
    applyHeard(*model, stored(),
               {u"Glass Break"_s, {}, {}, {{u"glass_breaking"_s, 0.9}, {u"slap_smack"_s, 0.8}, {u"dog"_s, 0.78}}});
    EXPECT_EQ(stored().name, u"Glass Break"_s);
    EXPECT_EQ(stored().tags, (QStringList{u"door"_s, u"glass break"_s, u"slap"_s}));
    EXPECT_EQ(stored().nameIsAuto, true); // a better hearing may rename it again
    applyHeard(*model, stored(), heard({{u"door"_s, 0.75}, {u"knock"_s, 0.74}}));
    EXPECT_EQ(stored().name, u"Door"_s);
    EXPECT_EQ(stored().tags.size(), 3); // "door" was there
}

TEST_F(NamingFlowsTest, AnythingLessThanSureChangesNothing)
{
    const SoundItem before = stored();
    applyHeard(*model, before, heard({{u"door"_s, 0.749}}));
    applyHeard(*model, before, heard({}));
    applyHeard(*model, before, {QString(), {}, {}, {{u"door"_s, 0.9}}});
    applyHeard(*model, before, heard({{u"speech"_s, 0.99}, {u"door"_s, 0.9}}));
    EXPECT_EQ(stored(), before);
}

TEST_F(NamingFlowsTest, ANameThatAPersonGaveStays)
{
    const SoundItem stale = stored();
    model->library().rename(stale, u"My Door"_s, false);
    applyHeard(*model, stale, heard({{u"door"_s, 0.9}})); // the stored record counts
    EXPECT_EQ(stored().name, u"My Door"_s);
    model->library().update(stale, [](SoundItem& record) { record.nameIsAuto.reset(); });
    applyHeard(*model, stale, heard({{u"door"_s, 0.9}}));
    EXPECT_EQ(stored().name, u"My Door"_s);
}

TEST_F(NamingFlowsTest, ASoundThatIsGoneIsNotNamed)
{
    const SoundItem gone = stored();
    deleteItems(*model, {gone});
    applyHeard(*model, gone, heard({{u"door"_s, 0.9}}));
    EXPECT_TRUE(model->library().items().isEmpty());
}

TEST_F(NamingFlowsTest, TheEditorsEarNamesTheOpenSound)
{
    AudioAnalysis analysis;
    analysis.duration = 1;
    analysis.hopSeconds = 0.01;
    analysis.rms.assign(100, 0.2F);
    analysis.peak.assign(100, 0.4F);
    work.analyses.back().answer(analysis);
    settle();
    ASSERT_FALSE(work.hearings.empty());
    work.hearings.back().answer({{u"glass_breaking"_s, 0.9}});
    settle();
    EXPECT_EQ(stored().name, u"Glass Break"_s);
    EXPECT_EQ(model->editor().item()->name, u"Glass Break"_s); // the title follows
}

#include "ui/SoundView.h"

#include "fakes/FakeAudioOutput.h"
#include "fakes/FakeClock.h"
#include "support/LibraryFolder.h"
#include "support/Printing.h"
#include "understanding/SoundClassifier.h"

#include <QTest>

#include <gtest/gtest.h>

using namespace tonequill;
using namespace Qt::StringLiterals;

namespace {

constexpr int kPatienceMs = 20000;

class SoundViewTest : public testing::Test {
protected:
    // The analysis of a short sound may be there before load() returns.
    void loadAndWait(const SoundItem& item, const QString& path)
    {
        editor.load(item, path);
        ASSERT_TRUE(QTest::qWaitFor([this] { return !view.isLoading(); }, kPatienceMs));
    }

    test::LibraryFolder folder;
    test::FakeClock clock;
    test::FakeAudioOutput output;
    SoundClassifier classifier;
    BackgroundEditorWork work{classifier, output};
    EditorModel editor{work, clock};
    SoundView view{editor};
};

} // namespace

TEST_F(SoundViewTest, AnEmptyEditorShowsNothing)
{
    EXPECT_FALSE(view.isOpen());
    EXPECT_EQ(view.name(), QString());
    EXPECT_FALSE(view.envelope().data);
}

TEST_F(SoundViewTest, ShowsTheRecordOfTheSound)
{
    SoundItem item = folder.add(u"Door Slam"_s);
    item.duration = 6.984;
    item.tags = {u"door"_s, u"slam"_s};
    item.descriptors = {u"medium"_s, u"door"_s};
    bool wasLoading = false;
    QObject::connect(&view, &SoundView::changed, &view, [&] { wasLoading |= view.isLoading(); });
    loadAndWait(item, folder.path() + u"/gone.wav"_s);
    EXPECT_TRUE(wasLoading);
    EXPECT_EQ(view.name(), u"Door Slam"_s);
    EXPECT_EQ(view.durationText(), u"6.98 s"_s);
    EXPECT_EQ(view.words().join(u' '), u"door slam medium"_s);
}

TEST_F(SoundViewTest, ShowsTheEnvelopeWhenItIsThere)
{
    const SoundItem& item = folder.add(u"Tone"_s);
    loadAndWait(item, folder.path() + u'/' + item.fileName);
    EXPECT_FALSE(view.isLoading());
    ASSERT_TRUE(view.envelope().data);
    EXPECT_EQ(view.envelope().data->peak.size(), 25u); // a quarter of a second in hops of 10 ms
    EXPECT_EQ(view.durationText(), u"0.25 s"_s);
}

TEST_F(SoundViewTest, SaysWhyASoundCannotBeOpened)
{
    SoundItem item = folder.add(u"Tone"_s);
    loadAndWait(item, folder.path() + u"/gone.wav"_s);
    EXPECT_FALSE(view.isLoading());
    EXPECT_FALSE(view.errorText().isEmpty());
    EXPECT_FALSE(view.envelope().data);
}

TEST_F(SoundViewTest, TellsWhoMustBeCredited)
{
    SoundItem item = folder.add(u"Rain"_s);
    item.license = u"CC BY-SA"_s;
    item.credit = u"Mona"_s;
    editor.load(item, {});
    EXPECT_TRUE(view.needsCredit());
    EXPECT_EQ(view.license(), u"CC BY-SA"_s);
    EXPECT_EQ(view.creditLine(), u"“Rain” by Mona (CC BY-SA)"_s);
    item.license = u"CC0"_s;
    editor.load(item, {});
    EXPECT_FALSE(view.needsCredit());
    EXPECT_EQ(view.creditLine(), QString());
}

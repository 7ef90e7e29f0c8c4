#include "ui/editor/SoundView.h"

#include "fakes/FakeAudioOutput.h"
#include "support/Printing.h"
#include "ui/OpenSound.h"
#include "understanding/listening/SoundClassifier.h"

#include <QSignalSpy>

#include <gtest/gtest.h>

using namespace tonequill;
using namespace Qt::StringLiterals;

namespace {

// A real analysis of real files.
class SoundViewTest : public testing::Test, public test::Machine {
protected:
    // The analysis of a short sound may be there before load() returns.
    void loadAndWait(const SoundItem& item, const QString& path)
    {
        editor.load(item, path);
        ASSERT_TRUE(test::OpenSound::wait([this] { return !view.isLoading(); }));
    }

    test::LibraryFolder folder;
    test::FakeAudioOutput output;
    SoundClassifier classifier;
    BackgroundEditorWork realWork{classifier, output, workers};
    AppModel app{services(realWork), library(folder.path())};
    EditorModel& editor = app.editor();
    SoundView view{app};
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
    EXPECT_EQ(view.tags().join(u' '), u"door slam"_s);
    EXPECT_EQ(view.traits().join(u' '), u"medium"_s);
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

TEST_F(SoundViewTest, TheWaveGetsItsTrueShapeFromTheFile)
{
    const SoundItem& item = folder.add(u"Tone"_s);
    loadAndWait(item, folder.path() + u'/' + item.fileName);
    ASSERT_TRUE(test::OpenSound::wait([this] { return !view.envelope().data->fine.values.empty(); }));
    const FinePeaks& fine = view.envelope().data->fine;
    EXPECT_EQ(fine.values.size(), 2000u); // each frame of a quarter of a second
    EXPECT_DOUBLE_EQ(fine.hopSeconds, 1.0 / 8000);
}

TEST(SoundViewEdits, ANewNameIsTheUsersOwn)
{
    test::OpenSound open;
    open.view->rename(u"  Heavy Door  "_s);
    EXPECT_EQ(open.item().name, u"Heavy Door"_s);
    EXPECT_EQ(open.item().nameIsAuto, false);
    EXPECT_EQ(open.view->name(), u"Heavy Door"_s);
}

TEST(SoundViewEdits, BlanksAndTheSameNameChangeNothing)
{
    test::OpenSound open;
    open.view->rename(u"   "_s);
    open.view->rename(u"Door Slam"_s);
    EXPECT_EQ(open.item().name, u"Door Slam"_s);
    EXPECT_EQ(open.item().nameIsAuto, std::nullopt);
}

TEST(SoundViewEdits, TagsComeAndGo)
{
    test::OpenSound open;
    open.view->addTags(u" wood "_s);
    open.view->addTags(u"wood"_s);
    open.view->addTags(u" , "_s);
    EXPECT_EQ(open.item().tags.join(u' '), u"door slam wood"_s);
    open.view->removeTag(u"door"_s);
    EXPECT_EQ(open.view->tags().join(u' '), u"slam wood"_s);
    EXPECT_EQ(open.view->traits().join(u' '), u"medium door"_s);
}

TEST(SoundViewEdits, SaysWhatWasHeard)
{
    test::OpenSound open;
    open.finishWithThree();
    EXPECT_EQ(open.view->headline(), u"Listening…"_s);
    EXPECT_EQ(open.view->summary(), QString());
    open.work.hearings.back().answer({{u"slam"_s, 0.92}});
    ASSERT_TRUE(test::OpenSound::wait([&open] { return !open.editor().isListening(); }));
    EXPECT_EQ(open.view->headline(), open.editor().heard()->headline);
    EXPECT_TRUE(open.view->headline().contains(u"slam (92% sure)"_s)) << open.view->headline().toStdString();
    EXPECT_FALSE(open.view->summary().isEmpty());
}

TEST(SoundViewEdits, TellsHowFarALongAnalysisHasCome)
{
    test::OpenSound open;
    EXPECT_TRUE(open.view->isLoading());
    int looks = 0;
    QObject::connect(open.view.get(), &SoundView::progressChanged, open.view.get(), [&looks] { ++looks; });
    open.work.analyses.back().question.progress->set(0.25);
    EXPECT_TRUE(test::OpenSound::wait([&looks] { return looks > 0; }));
    EXPECT_EQ(open.view->progress(), 0.25);
}

TEST(SoundViewEdits, ASuggestedNameIsTakenOrForgotten)
{
    test::OpenSound open;
    QSignalSpy smart(open.view.get(), &SoundView::smartChanged);
    open.view->suggestName();
    EXPECT_TRUE(open.view->isThinking());
    EXPECT_FALSE(open.view->hasSuggestion());
    const auto questions = open.work.hearings.size();
    open.view->suggestName(); // it thinks already
    EXPECT_EQ(open.work.hearings.size(), questions);
    open.work.hearings.back().answer({{u"glass_breaking"_s, 0.6}, {u"door"_s, 0.5}});
    ASSERT_TRUE(test::OpenSound::wait([&open] { return open.view->hasSuggestion(); }));
    EXPECT_FALSE(open.view->isThinking());
    EXPECT_EQ(open.view->suggestedName(), u"Glass Break"_s);
    EXPECT_EQ(open.view->suggestedTags(), u"glass, break"_s); // it has "door"
    EXPECT_EQ(open.item().name, u"Door Slam"_s);
    EXPECT_FALSE(smart.isEmpty());

    open.view->dismissSuggestion();
    EXPECT_FALSE(open.view->hasSuggestion());
    EXPECT_EQ(open.view->suggestedName() + open.view->suggestedTags(), QString());
    EXPECT_EQ(open.item().name, u"Door Slam"_s);

    open.editor().setSmartSuggestion(EditorModel::SmartSuggestion{u"Glass Break"_s, {u"glass"_s}});
    open.view->useSuggestion();
    EXPECT_FALSE(open.view->hasSuggestion());
    EXPECT_EQ(open.item().name, u"Glass Break"_s);
    EXPECT_EQ(open.view->tags().join(u' '), u"door slam glass"_s);
}

TEST_F(SoundViewTest, ANameOfMegabytesIsShownByItsBeginningAndStaysWhole)
{
    const SoundItem item = folder.add(QString(3 << 20, u'x'));
    folder.write();
    AppModel opened(services(realWork), library(folder.path()));
    const SoundView shown(opened);
    EXPECT_EQ(shown.name().size(), 32'768);
    SoundView(opened).rename(shown.name()); // the field was left as it is
    EXPECT_EQ(opened.library().find(item.id)->name, item.name);
}

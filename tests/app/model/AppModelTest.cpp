#include "support/Printing.h"
#include "support/Program.h"

#include <QDir>
#include <QFile>
#include <QSignalSpy>
#include <QStandardPaths>
#include <QTemporaryDir>

#include <gtest/gtest.h>

using namespace tonequill;
using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace {

class AppModelTest : public testing::Test, public test::Machine {
protected:
    AppModelTest()
    {
        QDir().mkpath(folder.filePath(u"Library"_s));
        for (int i = 0; i < 5; ++i) {
            const QString name = QString(QChar(u'a' + i));
            QFile file(folder.filePath(u"Library/%1.wav"_s.arg(name)));
            if (!file.open(QIODevice::WriteOnly))
                qFatal("no file");
            records << "{\"id\":\"" + QUuid::createUuid().toString(QUuid::WithoutBraces).toLatin1() + "\",\"name\":\"" +
                           name.toLatin1() + "\",\"fileName\":\"" + name.toLatin1() +
                           ".wav\",\"duration\":1,\"tags\":[],\"descriptors\":[],\"origin\":\"imported\",\"createdAt\":0}";
        }
    }

    // A model over the first `count` of five sounds, a to e.
    std::unique_ptr<AppModel> open(int count = 5)
    {
        QFile index(folder.filePath(u"Library/index.json"_s));
        if (!index.open(QIODevice::WriteOnly))
            qFatal("no index");
        index.write('[' + records.first(count).join(',') + ']');
        index.close();
        return program(folder.filePath(u"Library"_s));
    }

    static QString names(const AppModel& model)
    {
        QString text;
        for (const SoundItem& item : model.selectedItems())
            text += item.name;
        return text;
    }
    static QString openName(const AppModel& model) { return model.selectedItem() ? model.selectedItem()->name : u"none"_s; }
    QTemporaryDir folder;
    QByteArrayList records;
};

} // namespace

TEST_F(AppModelTest, AFirstStartHasItsOwnSettings)
{
    const auto model = open();
    EXPECT_TRUE(model->settings().alsoFinalCut());
    EXPECT_TRUE(model->settings().shortOnlyByDefault());
    EXPECT_FALSE(model->settings().hideCreditSounds());
    EXPECT_FALSE(model->settings().createWithCredits());
    EXPECT_FALSE(model->settings().saveFolderPath());
    EXPECT_EQ(model->section(), AppSection::library);
    EXPECT_FALSE(model->isWorking());
    EXPECT_FALSE(model->notices().notice());
    EXPECT_FALSE(model->pendingSearch());
}

TEST_F(AppModelTest, SettingsAreKeptAtOnce)
{
    const auto model = open();
    model->settings().setAlsoFinalCut(false);
    model->settings().setShortOnlyByDefault(false);
    model->settings().setHideCreditSounds(true);
    model->settings().setCreateWithCredits(true);
    model->settings().setSaveFolderPath(folder.path());
    model->setSection(AppSection::studio);
    Defaults stored(defaults.path());
    const AppModel again({stored, clock, workers, work, apps, languageModel, soundIndex}, library(folder.filePath(u"Library"_s)));
    EXPECT_EQ(again.section(), AppSection::library); // each start begins there
    EXPECT_FALSE(again.settings().alsoFinalCut());
    EXPECT_FALSE(again.settings().shortOnlyByDefault());
    EXPECT_TRUE(again.settings().hideCreditSounds());
    EXPECT_TRUE(again.settings().createWithCredits());
    EXPECT_EQ(again.settings().saveFolderPath(), folder.path());
    model->settings().setSaveFolderPath(std::nullopt);
    EXPECT_FALSE(Defaults(defaults.path()).text(u"saveFolderPath"_s));
}

TEST_F(AppModelTest, ASaveFolderThatIsGoneFallsBackToTheDesktop)
{
    const auto model = open();
    const QString desktop = QStandardPaths::writableLocation(QStandardPaths::DesktopLocation);
    EXPECT_EQ(model->settings().saveFolder(), desktop);
    model->settings().setSaveFolderPath(folder.path());
    EXPECT_EQ(model->settings().saveFolder(), folder.path());
    model->settings().setSaveFolderPath(folder.filePath(u"gone"_s));
    EXPECT_EQ(model->settings().saveFolder(), desktop);
    EXPECT_EQ(model->settings().saveFolderPath(), folder.filePath(u"gone"_s)); // the setting is not cleared
}

TEST_F(AppModelTest, StartsWithTheNewestSoundOpen)
{
    const auto model = open();
    EXPECT_EQ(openName(*model), u"a"_s);
    EXPECT_EQ(names(*model), u"a"_s);
    ASSERT_TRUE(model->editor().item());
    EXPECT_EQ(model->editor().item()->name, u"a"_s);
}

TEST_F(AppModelTest, AnEmptyLibraryHasAnEmptyEditor)
{
    const auto model = open(0);
    EXPECT_FALSE(model->selection().id());
    EXPECT_FALSE(model->editor().item());
    EXPECT_EQ(model->editor().analysisState(), EditorModel::AnalysisState::idle);
    model->selection().selectAll({});
    EXPECT_FALSE(model->selection().id());
}

TEST_F(AppModelTest, SelectingTheOpenSoundAgainDoesNotReloadIt)
{
    const auto model = open();
    QSignalSpy loads(&model->editor(), &EditorModel::itemChanged);
    model->setSelection(model->selection().id());
    EXPECT_EQ(loads.count(), 0);
    model->setSelection(model->library().items()[1].id);
    EXPECT_EQ(loads.count(), 1);
    EXPECT_EQ(model->editor().item()->name, u"b"_s);
}

TEST_F(AppModelTest, AnErrorLivesSevenSecondsAnythingElseThreeAndAHalf)
{
    const auto model = open();
    model->say(u"Saved."_s);
    clock.advance(3499ms);
    EXPECT_EQ(model->notices().text(), u"Saved."_s);
    EXPECT_FALSE(model->notices().isError());
    clock.advance(1ms);
    EXPECT_FALSE(model->notices().notice());
    model->say(u"No."_s, Tone::error);
    clock.advance(6999ms);
    EXPECT_TRUE(model->notices().isError());
    clock.advance(1ms);
    EXPECT_FALSE(model->notices().notice());
}

TEST_F(AppModelTest, ALaterNoticeLivesItsOwnFullTime)
{
    const auto model = open();
    model->say(u"First."_s);
    clock.advance(2s);
    model->say(u"Second."_s);
    EXPECT_EQ(model->notices().text(), u"Second."_s);
    clock.advance(3499ms); // the first one's timer has passed meanwhile
    EXPECT_EQ(model->notices().text(), u"Second."_s);
    clock.advance(1ms);
    EXPECT_FALSE(model->notices().notice());
}

TEST_F(AppModelTest, ANoticeMayOutliveTheModel)
{
    auto model = open();
    model->say(u"Bye."_s);
    model.reset();
    clock.advance(10s);
    EXPECT_EQ(clock.sleeperCount(), 0U);
}

TEST_F(AppModelTest, SectionsAreTexts)
{
    EXPECT_EQ(sectionText(AppSection::generate), u"generate"_s);
    EXPECT_EQ(sectionFromText(u"find"), AppSection::find);
    EXPECT_FALSE(sectionFromText(u"Find"));
    EXPECT_EQ(kAppSections.size(), 4U);
}

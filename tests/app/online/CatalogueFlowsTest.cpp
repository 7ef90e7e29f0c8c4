#include "app/online/CatalogueFlows.h"

#include "discovery/catalogue/Inflater.h"
#include "support/Await.h"
#include "support/Gate.h"
#include "support/Program.h"
#include "support/Wav.h"

#include <QSignalSpy>

#include <gtest/gtest.h>

using namespace tonequill;
using namespace Qt::StringLiterals;

namespace {

// A catalogue of two sounds where the program looks for it.
class CatalogueFlowsTest : public testing::Test {
protected:
    CatalogueFlowsTest()
    {
        QDir().mkpath(QFileInfo(SoundIndex::userPath()).path());
        test::writeBytes(SoundIndex::userPath(),
                         QByteArray::fromStdString(
                             Inflater::deflate(R"({"items":[{"i":"1","t":"a","u":"a.mp3"},{"i":"2","t":"b","u":"b.mp3"}]})")));
    }
    ~CatalogueFlowsTest() override { QFile::remove(SoundIndex::userPath()); }

    test::Program program;
};

} // namespace

TEST_F(CatalogueFlowsTest, TellsHowManySoundsCanBeFound)
{
    const QSignalSpy changes(&program.model, &AppModel::searchableCountChanged);
    EXPECT_EQ(program.model.searchableCount(), 0);
    EXPECT_EQ(test::await(loadCatalogue(program.model)), 2);
    EXPECT_EQ(program.model.searchableCount(), 2);
    EXPECT_EQ(test::await(loadCatalogue(program.model)), 2) << "it is loaded already";
    EXPECT_EQ(changes.size(), 1);
}

TEST_F(CatalogueFlowsTest, IsSilentWithoutACatalogue)
{
    QFile::remove(SoundIndex::userPath());
    EXPECT_EQ(test::await(loadCatalogue(program.model)), 0);
    EXPECT_EQ(program.model.searchableCount(), 0);
    EXPECT_EQ(program.model.notices().text(), QString());
}

TEST_F(CatalogueFlowsTest, EndsWithTheModel)
{
    const test::HeldBack behind(program.workers.behind());
    startFlow(loadCatalogue(program.model));
    program.model.close();
    EXPECT_TRUE(program.model.flows().isEmpty());
    EXPECT_EQ(program.model.searchableCount(), 0);
    behind.letGo();
}

#include "library/store/IndexWriter.h"
#include "platform/files/Files.h"
#include "support/Printing.h"
#include "support/Wav.h"

#include <QDir>
#include <QTemporaryDir>

#include <gtest/gtest.h>

using namespace tonequill;
using namespace Qt::StringLiterals;

namespace {

class IndexWriterTest : public testing::Test {
protected:
    QString at(const QString& name) const { return folder.filePath(name); }
    QStringList everything() const
    {
        return QDir(folder.path()).entryList(QDir::AllEntries | QDir::Hidden | QDir::NoDotAndDotDot);
    }
    // A folder in the index' place refuses every write, whoever runs the test.
    void block() const { ASSERT_TRUE(QDir(folder.path()).mkpath(u"index.json/x"_s)); }
    void unblock() const { ASSERT_TRUE(QDir(at(u"index.json"_s)).removeRecursively()); }

    QTemporaryDir folder;
    IndexWriter writer{at(u"index.json"_s)};
    const IndexWriter::Leaving sound{at(u"a.wav"_s), at(u".importing-a.wav"_s)};
};

} // namespace

TEST_F(IndexWriterTest, AFileGoesOnceTheIndexIsWritten)
{
    test::writeBytes(sound.file, "sound");
    const int state = writer.write({"[", "]"}, {}, {sound});
    EXPECT_TRUE(writer.finish());
    EXPECT_TRUE(writer.hasWritten(state));
    EXPECT_FALSE(writer.hasWritten(state + 1));
    EXPECT_EQ(everything(), QStringList{u"index.json"_s});
    EXPECT_EQ(Files::readAll(at(u"index.json"_s), 100), "[]");
}

TEST_F(IndexWriterTest, AFileStaysAsLongAsTheIndexCannotBeWritten)
{
    test::writeBytes(sound.file, "sound");
    block();
    const int state = writer.write({"[]"}, {}, {sound});
    EXPECT_FALSE(writer.finish());
    EXPECT_FALSE(writer.hasWritten(state));
    EXPECT_EQ(everything(), (QStringList{u"a.wav"_s, u"index.json"_s})); // and no mark
    unblock();
    writer.write({"[1]"}); // a newer state, without it as well
    EXPECT_TRUE(writer.finish());
    EXPECT_TRUE(writer.hasWritten(state));
    EXPECT_EQ(everything(), QStringList{u"index.json"_s});
}

TEST_F(IndexWriterTest, AFileThatIsKeptAfterAllStays)
{
    test::writeBytes(sound.file, "sound");
    block();
    writer.write({"[]"}, {}, {sound});
    EXPECT_FALSE(writer.finish());
    writer.keep({sound});
    unblock();
    writer.write({"[1]"});
    EXPECT_TRUE(writer.finish());
    EXPECT_EQ(everything(), (QStringList{u"a.wav"_s, u"index.json"_s}));
}

TEST_F(IndexWriterTest, AFileThatCannotBeRemovedKeepsItsMark)
{
    ASSERT_TRUE(QDir(folder.path()).mkpath(u"a.wav/x"_s));
    writer.write({"[]"}, {}, {sound});
    EXPECT_TRUE(writer.finish());
    EXPECT_EQ(everything(), (QStringList{u".importing-a.wav"_s, u"a.wav"_s, u"index.json"_s}));
}

#include "indexing/CatalogueSources.h"

#include "indexing/CatalogueWriter.h"
#include "support/Printing.h"

#include <gmock/gmock.h>

using namespace tonequill;
using namespace Qt::StringLiterals;
using testing::ElementsAre;
using testing::IsEmpty;

namespace {

struct Read {
    QList<CatalogueEntry> entries;
    std::vector<qsizetype> faults; // lines
    TakeEntry take = [this](CatalogueEntry entry) { entries << std::move(entry); };
    CatalogueSources::TakeFault fault = [this](qsizetype line, const QString&) { faults.push_back(line); };
};

} // namespace

TEST(CatalogueSources, ReadJsonLines)
{
    Read read;
    CatalogueSources::readJsonLines("{\"i\":\"1\",\"t\":\"A\",\"u\":\"a.mp3\",\"g\":[\"x\"],\"d\":2.5,\"a\":1}\n"
                                    "\n{\"i\":\"2\",\"t\":\"B\"}\r\nnonsense\n[]\n{},{}\n"
                                    "  {\"i\":\"3\",\"t\":\"C\",\"u\":\"c.ogg\",\"s\":\"w\"}",
                                    read.take, read.fault);
    ASSERT_EQ(read.entries.size(), 2);
    EXPECT_EQ(read.entries[0].sound.id, u"1"_s);
    EXPECT_EQ(read.entries[0].sound.duration, 2.5);
    EXPECT_TRUE(read.entries[0].isMarked);
    EXPECT_EQ(read.entries[1].sound.url, u"c.ogg"_s) << "the file may hold what isn't loaded";
    EXPECT_EQ(read.entries[1].sound.source, u"wikimedia_audio"_s);
    EXPECT_THAT(read.faults, ElementsAre(3, 4, 5, 6));
}

TEST(CatalogueSources, ReadCsv)
{
    Read read;
    CatalogueSources::readCsv(
        "\xEF\xBB\xBFid,Title,u,tags,duration,nonsense,license,creator,page,source,popularity\r\n"
        "1,\"Door, \"\"big\"\"\nslam\",https://example.org/a.mp3,door; slam,1.5,x,by,Ana,https://example.org/,w,0.5\r\n"
        "\r\n2,Bell,b.mp3\n3,,c.mp3\n4,No address,\n",
        read.take, read.fault);
    ASSERT_EQ(read.entries.size(), 2);
    const OnlineSound full{u"1"_s,
                           u"Door, \"big\"\nslam"_s,
                           u"https://example.org/a.mp3"_s,
                           1.5,
                           u"by"_s,
                           u"Ana"_s,
                           u"https://example.org/"_s,
                           {u"door"_s, u"slam"_s},
                           u"wikimedia_audio"_s,
                           false,
                           0.5};
    EXPECT_EQ(read.entries[0].sound, full);
    const OnlineSound bare{u"2"_s, u"Bell"_s, u"b.mp3"_s, 0, u"cc0"_s, {}, {}, {}, u"freesound"_s, false, 0};
    EXPECT_EQ(read.entries[1].sound, bare);
    EXPECT_THAT(read.faults, ElementsAre(6, 7));
    Read nothing;
    CatalogueSources::readCsv({}, nothing.take, nothing.fault);
    EXPECT_THAT(nothing.faults, IsEmpty());
}

TEST(CatalogueSources, ReadBackWhatWasWritten)
{
    Read read;
    CatalogueSources::readJsonLines(
        "{\"i\":\"1\",\"t\":\"\xC3\x89\\n\\u0000\",\"u\":\"a.mp3\",\"g\":[\"x\",\"Y\"],\"d\":0.1,\"l\":\"by\",\"c\":\"\",\"p\":"
        "\"p\",\"s\":\"w\",\"r\":0.3}\n"
        "{\"i\":\"2\",\"t\":\"B\",\"u\":\"b.mp3\",\"a\":1}\n{\"i\":\"2\",\"t\":\"again\",\"u\":\"b.mp3\"}",
        read.take, read.fault);
    CatalogueWriter writer;
    for (const CatalogueEntry& entry : read.entries)
        writer.add(entry);
    EXPECT_EQ(writer.count(), 2);
    EXPECT_EQ(writer.repeats(), 1);
    EXPECT_EQ(writer.file(), writer.file());
    Read again;
    EXPECT_EQ(CatalogueSources::readCatalogue(writer.file(), again.take), CatalogueReader::Outcome::done);
    ASSERT_EQ(again.entries.size(), 2);
    EXPECT_EQ(again.entries[0].sound, read.entries[0].sound);
    EXPECT_EQ(again.entries[1].sound, read.entries[1].sound);
    EXPECT_TRUE(again.entries[1].isMarked);
    EXPECT_EQ(CatalogueSources::readCatalogue("x", again.take), CatalogueReader::Outcome::notDeflate);
}

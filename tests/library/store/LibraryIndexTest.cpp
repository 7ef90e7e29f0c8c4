#include "library/store/LibraryIndex.h"
#include "support/Printing.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>

using namespace tonequill;
using namespace Qt::StringLiterals;

namespace {

const QUuid kId = QUuid::fromString(u"0a1b2c3d-4e5f-6071-8293-a4b5c6d7e8f9"_s);

SoundItem fullItem()
{
    SoundItem item;
    item.id = kId;
    item.name = u"Tür \"zu\"\\\n\u0001 باب 👍"_s;
    item.fileName = u"0A1B2C3D-4E5F-6071-8293-A4B5C6D7E8F9.wav"_s;
    item.duration = 1.25;
    item.tags = {u"door"_s, u"door"_s};
    item.descriptors = {u"medium"_s};
    item.origin = SoundOrigin::cut;
    item.createdAt = 800000000.125;
    item.nameIsAuto = false;
    item.sourceID = u"fs:1"_s;
    item.license = u"CC0"_s;
    item.credit = u"Ana"_s;
    item.pageURL = u"https://example.org/a"_s;
    item.thumbnail = {{0, 0.5F, 1, 0.1F}};
    return item;
}

// The smallest valid record, with one place to change it.
QByteArray minimal(const QByteArray& key = {}, const QByteArray& value = {})
{
    const std::pair<QByteArray, QByteArray> fields[] = {
        {"id", "\"0A1B2C3D-4E5F-6071-8293-A4B5C6D7E8F9\""},
        {"name", "\"n\""},
        {"fileName", "\"f.wav\""},
        {"duration", "1"},
        {"tags", "[]"},
        {"descriptors", "[]"},
        {"origin", "\"cut\""},
        {"createdAt", "7"},
    };
    QByteArray json = "[{";
    bool isOwnKey = true;
    for (const auto& [name, standard] : fields) {
        isOwnKey &= name != key;
        const QByteArray& chosen = name == key ? value : standard;
        if (chosen.isEmpty())
            continue;
        json += (json.endsWith('{') ? "\"" : ",\"") + name + "\":" + chosen;
    }
    if (isOwnKey && !key.isEmpty())
        json += ",\"" + key + "\":" + value;
    return json + "}]";
}

} // namespace

TEST(LibraryIndex, WritesKeysInDeclaredOrder)
{
    EXPECT_EQ(LibraryIndex::encode(fullItem()).toStdString(),
              R"({"id":"0A1B2C3D-4E5F-6071-8293-A4B5C6D7E8F9","name":"Tür \"zu\"\\\n\u0001 باب 👍",)"
              R"("fileName":"0A1B2C3D-4E5F-6071-8293-A4B5C6D7E8F9.wav","duration":1.25,"tags":["door","door"],)"
              R"("descriptors":["medium"],"origin":"cut","createdAt":800000000.125,"nameIsAuto":false,"sourceID":"fs:1",)"
              R"("license":"CC0","credit":"Ana","pageURL":"https://example.org/a","thumbnail":[0,0.5,1,0.1]})");
}

TEST(LibraryIndex, LeavesOutWhatIsNotThere)
{
    SoundItem item;
    item.id = kId;
    item.name = u"n"_s;
    item.fileName = u"f.wav"_s;
    EXPECT_EQ(LibraryIndex::encode(item).toStdString(),
              R"({"id":"0A1B2C3D-4E5F-6071-8293-A4B5C6D7E8F9","name":"n","fileName":"f.wav","duration":0,"tags":[],)"
              R"("descriptors":[],"origin":"imported","createdAt":0})");
}

TEST(LibraryIndex, ReadsBackExactlyWhatItWrote)
{
    SoundItem item = fullItem();
    item.duration = 0.1 + 0.2;
    item.createdAt = std::nextafter(800000000.0, 1e9);
    item.thumbnail->clear();
    for (float value = 0; value < 1; value += 0.00731F)
        item.thumbnail->push_back(std::sqrt(value));
    const auto read = LibraryIndex::decode('[' + LibraryIndex::encode(item) + ',' + LibraryIndex::encode(fullItem()) + ']');
    ASSERT_TRUE(read);
    EXPECT_EQ(*read, (QList<SoundItem>{item, fullItem()}));
}

TEST(LibraryIndex, WritesNothingThatIsNoJson)
{
    SoundItem item = fullItem();
    item.duration = std::numeric_limits<double>::quiet_NaN();
    item.thumbnail = {{std::numeric_limits<float>::infinity()}};
    const auto read = LibraryIndex::decode('[' + LibraryIndex::encode(item) + ']');
    ASSERT_TRUE(read);
    EXPECT_EQ(read->first().duration, 0);
}

TEST(LibraryIndex, OldRecordsLackTheOptionalFields)
{
    const auto read = LibraryIndex::decode(minimal());
    ASSERT_TRUE(read);
    const SoundItem& item = read->first();
    EXPECT_FALSE(item.nameIsAuto || item.sourceID || item.license || item.credit || item.pageURL || item.thumbnail);
    EXPECT_EQ(item.createdAt, 7);
}

TEST(LibraryIndex, NullCountsAsAbsentForAnOptionalFieldOnly)
{
    for (const char* key : {"nameIsAuto", "sourceID", "license", "credit", "pageURL", "thumbnail"})
        EXPECT_TRUE(LibraryIndex::decode(minimal(key, "null"))) << key;
    for (const char* key : {"id", "name", "fileName", "duration", "tags", "descriptors", "origin", "createdAt"})
        EXPECT_FALSE(LibraryIndex::decode(minimal(key, "null"))) << key;
}

TEST(LibraryIndex, AMissingRequiredKeyFailsTheWholeIndex)
{
    for (const char* key : {"id", "name", "fileName", "duration", "tags", "descriptors", "origin", "createdAt"})
        EXPECT_FALSE(LibraryIndex::decode(minimal(key, ""))) << key;
}

TEST(LibraryIndex, AWrongTypeFailsTheWholeIndex)
{
    const std::pair<const char*, const char*> wrong[] = {
        {"id", "7"},
        {"id", "\"not-an-id\""},
        {"name", "[]"},
        {"fileName", "false"},
        {"duration", "\"1\""},
        {"tags", "\"door\""},
        {"tags", "[1]"},
        {"descriptors", "{}"},
        {"origin", "\"stolen\""},
        {"createdAt", "\"now\""},
        {"nameIsAuto", "1"},
        {"sourceID", "5"},
        {"license", "[]"},
        {"credit", "{}"},
        {"pageURL", "true"},
        {"thumbnail", "0.5"},
        {"thumbnail", "[\"0.5\"]"},
        {"duration", "1e999"},
        {"duration", "NaN"},
        {"thumbnail", "[1e39]"},
    };
    for (const auto& [key, value] : wrong)
        EXPECT_FALSE(LibraryIndex::decode(minimal(key, value))) << key << " " << value;
}

TEST(LibraryIndex, WhatIsNoArrayOfRecordsIsRefused)
{
    for (const QByteArray& json : {QByteArray(), QByteArray("{}"), QByteArray("null"), QByteArray("[7]"), QByteArray("[[]]"),
                                   QByteArray("[{}]"), QByteArray("[") + minimal(), minimal().chopped(1),
                                   QByteArray("\xff\xfe[]"), QByteArray(5000, '['), QByteArray("[{\"name\":\"\xc3\x28\"}]")})
        EXPECT_FALSE(LibraryIndex::decode(json)) << json.left(40).toStdString();
    EXPECT_TRUE(LibraryIndex::decode("[]")->isEmpty());
    EXPECT_TRUE(LibraryIndex::decode(" [ ] \n")->isEmpty());
}

TEST(LibraryIndex, UnknownKeysAreSkipped)
{
    EXPECT_TRUE(LibraryIndex::decode(minimal("mood", "{\"deep\":[1,2,{}]}")));
}

TEST(LibraryIndex, RecordsAreFoundByTheirBracketsWhateverStandsInTheirTexts)
{
    const QByteArray record = minimal("name", R"("]},{[\"\\")").sliced(1).chopped(1);
    const QByteArray nested = minimal("extra", R"([{"a":[1,{"b":"}"}]},[]])").sliced(1).chopped(1);
    for (const QByteArray& between : {QByteArray(","), QByteArray(" ,\n\t"), QByteArray("\r\n, ")}) {
        const auto items = LibraryIndex::decode(" [ " + record + between + nested + between + record + "\n]\n ");
        ASSERT_TRUE(items) << between.toStdString();
        ASSERT_EQ(items->size(), 3);
        EXPECT_EQ(items->first().name, u"]},{[\"\\"_s);
    }
    const QByteArray plain = minimal().sliced(1).chopped(1);
    for (const QByteArray& broken :
         {'[' + plain + ",]", "[," + plain + ']', '[' + plain + plain + ']', '[' + plain, '[' + plain + "]]", '[' + plain + "]x",
          '[' + plain + ",7]", plain, '[' + plain.chopped(1) + "]]", '[' + plain.chopped(1), QByteArray("[\"a\"]"),
          QByteArray("[{\"a\":\"]"), QByteArray("[{\"a\\\""), QByteArray("[{]}]"), QByteArray("[{}}]"), QByteArray("[[]]"),
          '[' + plain + "]" + QByteArray("\0", 1)})
        EXPECT_FALSE(LibraryIndex::decode(broken)) << broken.toStdString();
    EXPECT_TRUE(LibraryIndex::decode(" [ \n] ")->isEmpty());
}

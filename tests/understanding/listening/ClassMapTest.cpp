#include "understanding/listening/ClassMap.h"

#include "support/Printing.h"

#include <gmock/gmock.h>

#include <stdexcept>

using namespace tonequill;
using namespace Qt::StringLiterals;
using testing::ElementsAre;

namespace {

std::string failureOf(const QByteArray& csv)
{
    try {
        ClassMap::read(csv);
        return "none";
    } catch (const std::runtime_error& error) {
        return error.what();
    }
}

} // namespace

TEST(ClassMap, MakesIdentifiersOfDisplayNames)
{
    const std::pair<QString, QString> cases[] = {
        {u"Speech"_s, u"speech"_s},
        {u"Whoosh, swoosh, swish"_s, u"whoosh_swoosh_swish"_s},
        {u"Vehicle horn, car horn, honking"_s, u"vehicle_horn_car_horn_honking"_s},
        {u"Wind noise (microphone)"_s, u"wind_noise_microphone"_s},
        {u"Tick-tock"_s, u"tick_tock"_s},
        {u"Dental drill, dentist's drill"_s, u"dental_drill_dentists_drill"_s},
        {u"Thump, thud"_s, u"thump_thud"_s},
        {u"Chuckle, chortle"_s, u"chuckle_chortle"_s},
        // Those with a spelling of their own.
        {u"Shatter"_s, u"glass_breaking"_s},
        {u"Splash, splatter"_s, u"liquid_splashing"_s},
        {u"Computer keyboard"_s, u"typing_computer_keyboard"_s},
        {u"Choir"_s, u"choir_singing"_s},
        {u"Hubbub, speech noise, speech babble"_s, u"babble"_s},
        {u" (!) "_s, QString()},
    };
    for (const auto& [name, label] : cases)
        EXPECT_EQ(ClassMap::identifier(name), label) << name.toStdString();
}

TEST(ClassMap, ReadsOneLabelForEachScore)
{
    EXPECT_THAT(ClassMap::read("index,mid,display_name\r\n0,/m/1,Speech\r\n1,/m/2,\"Beep, bleep\"\r\n2,,\"A \"\"B\"\"\"\r\n"),
                ElementsAre(u"speech"_s, u"beep_bleep"_s, u"a_b"_s));
}

TEST(ClassMap, RefusesWhatIsNoMap)
{
    EXPECT_EQ(failureOf(""), "it doesn't start with index,mid,display_name");
    EXPECT_EQ(failureOf(QByteArray(100, '\0')), "it doesn't start with index,mid,display_name");
    EXPECT_EQ(failureOf("index,mid,display_name\n"), "it has no rows");
    EXPECT_EQ(failureOf("index,mid,display_name\n0,a,Bell\n2,b,Dog\n"), "row 1 is missing or stands twice");
    EXPECT_EQ(failureOf("index,mid,display_name\n0,a,Bell\n0,a,Bell\n"), "row 1 is missing or stands twice");
    EXPECT_EQ(failureOf("index,mid,display_name\n0,a,Bell\n1,a,Bell\n"), "line 3 has no name of its own");
    EXPECT_EQ(failureOf("index,mid,display_name\n0,a\n"), "line 2 doesn't have three columns");
    EXPECT_EQ(failureOf("index,mid,display_name\n0,a,!\n"), "line 2 has no name of its own");
}

#include "understanding/naming/SoundNamer.h"

#include "support/Printing.h"

#include <gmock/gmock.h>

using namespace tonequill;
using namespace Qt::StringLiterals;

TEST(SoundNamer, ReadsLabelsAsPeopleDo)
{
    const std::pair<QString, QString> cases[] = {
        {u"glass_breaking"_s, u"Glass Break"_s},
        {u"whoosh_swoosh_swish"_s, u"Whoosh"_s},
        {u"thump_thud"_s, u"Thud"_s},
        {u"gunshot_gunfire"_s, u"Gunshot"_s},
        {u"crumpling_crinkling"_s, u"Crinkle"_s},
        {u"liquid_splashing"_s, u"Splash"_s},
        {u"finger_snapping"_s, u"Finger Snap"_s},
        {u"typing_computer_keyboard"_s, u"Keyboard Typing"_s},
        {u"wind_noise_microphone"_s, u"Wind Rumble"_s},
        {u"belly_laugh"_s, u"Big Laugh"_s},
        {u"baby_laughter"_s, u"Baby Laugh"_s},
        {u"chuckle_chortle"_s, u"Chuckle"_s},
        {u"slap_smack"_s, u"Slap"_s},
        {u"tick_tock"_s, u"Tick Tock"_s},
        {u"door"_s, u"Door"_s},
        {u"vehicle_horn_car_horn_honking"_s, u"Vehicle Horn Car"_s},
        {u"noise"_s, u"Noise"_s},
        {u"engine_noise"_s, u"Engine"_s},
        {u"other_sounds"_s, u"Other Sounds"_s},
        {u"__DOOR__knock_"_s, u"Door Knock"_s},
        {QString(), QString()},
    };
    for (const auto& [label, name] : cases)
        EXPECT_EQ(SoundNamer::pretty(label), name) << label.toStdString();
}

TEST(SoundNamer, TellsHowSureItIs)
{
    const std::pair<double, QString> cases[] = {
        {1.0, u"Sounds like door (100% sure)"_s},  {0.996, u"Sounds like door (100% sure)"_s},
        {0.704, u"Sounds like door (70% sure)"_s}, {0.7, u"Sounds like door (70% sure)"_s},
        {0.699, u"Probably door (70% sure)"_s},    {0.4, u"Probably door (40% sure)"_s},
        {0.399, u"Maybe door (40% sure)"_s},       {0.15, u"Maybe door (15% sure)"_s},
    };
    for (const auto& [confidence, headline] : cases)
        EXPECT_EQ(SoundNamer::ruleBased({{u"door"_s, confidence}}, {}, 2).headline, headline) << confidence;
}

TEST(SoundNamer, ClaimsNothingWhenItIsNotSure)
{
    const std::vector<HeardLabel> weak = {{u"door"_s, 0.149}, {u"knock"_s, 0.1}};
    for (const auto& labels : {weak, std::vector<HeardLabel>()}) {
        const SoundHeard heard = SoundNamer::ruleBased(labels, {u"short"_s}, 0.3);
        EXPECT_EQ(heard.name, QString());
        EXPECT_EQ(heard.summary, u"I couldn't tell what this is. Listen and rename it if you like."_s);
        EXPECT_EQ(heard.headline, u"Not sure what this is"_s);
        EXPECT_EQ(heard.labels, labels);
    }
}

TEST(SoundNamer, SumsUpInOneSentence)
{
    const auto summary = [](const std::vector<HeardLabel>& labels, double duration) {
        return SoundNamer::ruleBased(labels, {}, duration).summary;
    };
    EXPECT_EQ(summary({{u"door"_s, 0.9}}, 0.5), u"A short door."_s);
    EXPECT_EQ(summary({{u"alarm"_s, 0.9}}, 0.99), u"A short alarm."_s);
    EXPECT_EQ(summary({{u"engine"_s, 0.9}}, 1.0), u"A longer engine."_s);
    EXPECT_EQ(summary({{u"door"_s, 0.9}, {u"knock"_s, 0.2}}, 0.5), u"Door, with a hint of knock."_s);
    EXPECT_EQ(summary({{u"thump_thud"_s, 0.9}, {u"glass_breaking"_s, 0.2}, {u"knock"_s, 0.1}}, 5),
              u"Thud, with a hint of glass break."_s);
}

TEST(SoundNamer, KeepsTheLabelsItWasGiven)
{
    const std::vector<HeardLabel> labels = {{u"glass_breaking"_s, 0.9}, {u"knock"_s, 0.2}};
    const SoundHeard heard = SoundNamer::ruleBased(labels, {u"short"_s, u"bright"_s}, 0.5);
    EXPECT_EQ(heard.name, u"Glass Break"_s);
    EXPECT_EQ(heard.labels, labels);
}

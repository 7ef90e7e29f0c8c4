#include "audio/effects/EffectSettings.h"
#include "audio/effects/EffectControls.h"
#include "support/Printing.h"

#include <gmock/gmock.h>

#include <limits>

using namespace tonequill;
using namespace Qt::StringLiterals;

namespace {

EffectSettings everythingSet()
{
    EffectSettings settings;
    settings.speed = 1.37;
    settings.pitch = -3.5;
    settings.gainDb = 6;
    settings.fadeIn = 0.1;
    settings.fadeOut = 0.30000000000000004; // needs all 17 digits
    settings.reverse = true;
    settings.echo = 0.4;
    settings.reverb = 1;
    settings.voice = VoiceStyle::alien;
    return settings;
}

} // namespace

TEST(VoiceStyle, HasAnIdALabelASymbolAndAHint)
{
    struct Row {
        VoiceStyle style;
        const char16_t* id;
        const char16_t* label;
        const char16_t* symbol;
        double offset;
        bool addsCharacter;
        const char16_t* hint;
    };
    const std::vector<Row> rows = {
        {VoiceStyle::natural, u"natural", u"Natural", u"person.wave.2", 0, false, u"The voice as it was recorded."},
        {VoiceStyle::man, u"man", u"Man", u"person.fill", -4, false, u"Lower. Turns a woman's voice into a man's."},
        {VoiceStyle::woman, u"woman", u"Woman", u"person.fill", 4, false, u"Higher. Turns a man's voice into a woman's."},
        {VoiceStyle::child, u"child", u"Child", u"figure.and.child.holdinghands", 8, false, u"Much higher, like a kid."},
        {VoiceStyle::giant, u"giant", u"Giant", u"arrow.down.circle", -9, false, u"Very low and heavy."},
        {VoiceStyle::robot, u"robot", u"Robot", u"cpu", 0, true, u"Metallic and buzzing."},
        {VoiceStyle::alien, u"alien", u"Alien", u"sparkle", 3, true, u"Strange and warbly."},
        {VoiceStyle::telephone, u"telephone", u"Telephone", u"phone.fill", 0, true, u"Thin, like a phone call."},
        {VoiceStyle::megaphone, u"megaphone", u"Megaphone", u"megaphone.fill", 0, true, u"Loud and harsh, like a loudspeaker."},
    };
    ASSERT_EQ(rows.size(), kVoiceStyles.size());
    for (std::size_t i = 0; i < rows.size(); ++i) {
        const Row& row = rows[i];
        EXPECT_EQ(kVoiceStyles[i], row.style);
        EXPECT_EQ(idOf(row.style), QString::fromUtf16(row.id));
        EXPECT_EQ(voiceStyleFromId(row.id), row.style);
        EXPECT_EQ(labelOf(row.style), QString::fromUtf16(row.label));
        EXPECT_EQ(symbolOf(row.style), QString::fromUtf16(row.symbol));
        EXPECT_EQ(hintOf(row.style), QString::fromUtf16(row.hint));
        EXPECT_EQ(pitchOffsetOf(row.style), row.offset);
        EXPECT_EQ(addsCharacter(row.style), row.addsCharacter);
    }
    EXPECT_FALSE(voiceStyleFromId(u"Robot"));
    EXPECT_FALSE(voiceStyleFromId(u""));
}

TEST(EffectSettings, AreNeutralAtFirst)
{
    const EffectSettings settings;
    EXPECT_EQ(settings.speed, 1);
    EXPECT_TRUE(settings.isNeutral());
    EXPECT_FALSE(settings.needsEngine());
    EXPECT_EQ(settings.totalPitch(), 0);
}

TEST(EffectSettings, AreNotNeutralAtTheSmallestChange)
{
    const double tiny = 1e-12;
    for (const auto field : {&EffectSettings::speed, &EffectSettings::pitch, &EffectSettings::gainDb, &EffectSettings::fadeIn,
                             &EffectSettings::fadeOut, &EffectSettings::echo, &EffectSettings::reverb}) {
        EffectSettings settings;
        settings.*field += tiny;
        EXPECT_FALSE(settings.isNeutral());
        EXPECT_FALSE(settings.needsEngine());
    }
    EffectSettings reversed;
    reversed.reverse = true;
    EXPECT_FALSE(reversed.isNeutral());
    EffectSettings robot;
    robot.voice = VoiceStyle::robot;
    EXPECT_FALSE(robot.isNeutral());
}

TEST(EffectSettings, NeedTheEngineForSpeedPitchEchoAndReverb)
{
    const auto needs = [](auto change) {
        EffectSettings settings;
        change(settings);
        return settings.needsEngine();
    };
    EXPECT_FALSE(needs([](auto& s) { s.speed = 1.0009; }));
    EXPECT_FALSE(needs([](auto& s) { s.speed = 0.9991; }));
    EXPECT_TRUE(needs([](auto& s) { s.speed = 1.0011; }));
    EXPECT_TRUE(needs([](auto& s) { s.speed = 0.9989; }));
    EXPECT_FALSE(needs([](auto& s) { s.pitch = 0.001; }));
    EXPECT_TRUE(needs([](auto& s) { s.pitch = -0.0011; }));
    EXPECT_FALSE(needs([](auto& s) { s.echo = 0.001; }));
    EXPECT_TRUE(needs([](auto& s) { s.echo = 0.0011; }));
    EXPECT_FALSE(needs([](auto& s) { s.reverb = 0.001; }));
    EXPECT_TRUE(needs([](auto& s) { s.reverb = 0.0011; }));
    EXPECT_TRUE(needs([](auto& s) { s.voice = VoiceStyle::man; }));
    EXPECT_TRUE(needs([](auto& s) { s.voice = VoiceStyle::alien; }));
    EXPECT_FALSE(needs([](auto& s) { s.voice = VoiceStyle::robot; }));
    EXPECT_FALSE(needs([](auto& s) { s.voice = VoiceStyle::telephone; }));
    EXPECT_FALSE(needs([](auto& s) { s.gainDb = 12, s.fadeIn = 1, s.fadeOut = 1, s.reverse = true; }));
    // A voice and a pitch that cancel each other leave nothing to do.
    EXPECT_FALSE(needs([](auto& s) { s.voice = VoiceStyle::man, s.pitch = 4; }));
}

TEST(EffectSettings, KeepTheTotalPitchWithinTwoOctaves)
{
    EffectSettings settings;
    settings.pitch = 24;
    settings.voice = VoiceStyle::child;
    EXPECT_EQ(settings.totalPitch(), 24);
    settings.pitch = -20;
    settings.voice = VoiceStyle::giant;
    EXPECT_EQ(settings.totalPitch(), -24);
    settings.pitch = 2;
    EXPECT_EQ(settings.totalPitch(), -7);
}

TEST(EffectSettings, AreWrittenWithAllNineKeys)
{
    EXPECT_EQ(EffectSettings().toJson(), "{\"speed\":1,\"pitch\":0,\"gainDb\":0,\"fadeIn\":0,\"fadeOut\":0,\"reverse\":false,"
                                         "\"echo\":0,\"reverb\":0,\"voice\":\"natural\"}");
    EXPECT_EQ(everythingSet().toJson(),
              "{\"speed\":1.37,\"pitch\":-3.5,\"gainDb\":6,\"fadeIn\":0.1,\"fadeOut\":0.30000000000000004,\"reverse\":true,"
              "\"echo\":0.4,\"reverb\":1,\"voice\":\"alien\"}");
}

TEST(EffectSettings, AreReadBackAsTheyWereWritten)
{
    EXPECT_EQ(EffectSettings::fromJson(everythingSet().toJson()), everythingSet());
    EXPECT_EQ(EffectSettings::fromJson(EffectSettings().toJson()), EffectSettings());
    for (const VoiceStyle style : kVoiceStyles) {
        EffectSettings settings;
        settings.voice = style;
        EXPECT_EQ(EffectSettings::fromJson(settings.toJson()), settings);
    }
    EffectSettings broken;
    broken.pitch = std::numeric_limits<double>::infinity();
    EXPECT_EQ(EffectSettings::fromJson(broken.toJson()), EffectSettings()); // JSON has no word for it
}

TEST(EffectSettings, TakeTheDefaultForWhatIsMissing)
{
    EXPECT_EQ(EffectSettings::fromJson("{}"), EffectSettings());
    EXPECT_EQ(EffectSettings::fromJson(R"({"speed":null,"reverse":null,"voice":null,"echo":null})"), EffectSettings());
    EffectSettings older; // from before there were voices, echo and reverb
    older.speed = 2;
    older.gainDb = -6;
    EXPECT_EQ(EffectSettings::fromJson(R"({"speed":2,"pitch":0,"gainDb":-6,"fadeIn":0,"fadeOut":0,"reverse":false})"), older);
    EXPECT_EQ(EffectSettings::fromJson(R"({"later":[1,{}],"speed":2,"gainDb":-6})"), older);
}

TEST(EffectSettings, RefuseWhatHasTheWrongType)
{
    for (const char* json : {
             "",
             "null",
             "[]",
             "3",
             "\"speed\"",
             "{",
             "{\"speed\":}",
             R"({"speed":"2"})",
             R"({"speed":true})",
             R"({"speed":[]})",
             R"({"pitch":{}})",
             R"({"gainDb":"0"})",
             R"({"fadeIn":false})",
             R"({"fadeOut":"1"})",
             R"({"reverse":1})",
             R"({"reverse":"true"})",
             R"({"echo":[0]})",
             R"({"reverb":"1"})",
             R"({"voice":1})",
             R"({"voice":true})",
             R"({"voice":"ghost"})",
             R"({"voice":"Robot"})",
             R"({"voice":""})",
             R"({"voice":["robot"]})",
         })
        EXPECT_FALSE(EffectSettings::fromJson(QByteArray(json))) << json;
}

TEST(EffectControls, RunTheSpeedSliderByPowersOfTwo)
{
    EXPECT_EQ(EffectControls::speedFromSlider(-2), 0.25);
    EXPECT_EQ(EffectControls::speedFromSlider(0), 1);
    EXPECT_EQ(EffectControls::speedFromSlider(2), 4);
    EXPECT_EQ(EffectControls::speedFromSlider(0.5), 1.41); // rounded to hundredths
    EXPECT_EQ(EffectControls::speedFromSlider(-0.5), 0.71);
    EXPECT_EQ(EffectControls::sliderFromSpeed(2), 1);
    EXPECT_EQ(EffectControls::sliderFromSpeed(0.25), -2);
    EXPECT_EQ(EffectControls::sliderFromSpeed(0.1), -2);
    EXPECT_EQ(EffectControls::sliderFromSpeed(8), 2);
}

TEST(EffectControls, DrawAPresetAsPressedWithinAThousandth)
{
    EXPECT_THAT(EffectControls::kSpeedPresets, testing::ElementsAre(0.5, 0.75, 1, 1.5, 2));
    EXPECT_TRUE(EffectControls::isActivePreset(1.5, 1.5));
    EXPECT_TRUE(EffectControls::isActivePreset(1.5, 1.5009));
    EXPECT_FALSE(EffectControls::isActivePreset(1.5, 1.5011));
    EXPECT_FALSE(EffectControls::isActivePreset(1, 1.01));
}

TEST(EffectControls, SayTheirValues)
{
    EXPECT_EQ(EffectControls::speedText(0.5), u"0.5×"_s);
    EXPECT_EQ(EffectControls::speedText(0.75), u"0.75×"_s);
    EXPECT_EQ(EffectControls::speedText(1), u"1×"_s);
    EXPECT_EQ(EffectControls::speedText(1.5), u"1.5×"_s);
    EXPECT_EQ(EffectControls::gainText(-3), u"-3 dB"_s);
    EXPECT_EQ(EffectControls::gainText(0), u"+0 dB"_s);
    EXPECT_EQ(EffectControls::gainText(11.6), u"+12 dB"_s);
    EXPECT_EQ(EffectControls::pitchText(7), u"+7 semitones"_s);
    EXPECT_EQ(EffectControls::pitchText(-12), u"-12 semitones"_s);
    EXPECT_EQ(EffectControls::fadeText(0.25), u"0.25 s"_s);
    EXPECT_EQ(EffectControls::amountText(0.404), u"40%"_s);
    EXPECT_EQ(EffectControls::amountText(1), u"100%"_s);
}

TEST(EffectSettings, RefuseWhatIsNoJsonByTheLetter)
{
    for (const char* json :
         {R"({"speed":.5})", R"({"speed":1.})", R"({"speed":01})", R"({"speed":+1})", R"({"speed":NaN})", R"({"speed":1e999})",
          R"({"gainDb":-1e999})", R"({"speed":1,})", R"({speed:1})", R"({'speed':1})", R"({"later":"\q"})", R"({"speed":1} 2)"})
        EXPECT_FALSE(EffectSettings::fromJson(QByteArray(json))) << json;
}

TEST(EffectSettings, TellWhatCannotBeRendered)
{
    const auto isRenderable = [](const char* json) { return EffectSettings::fromJson(QByteArray(json))->isRenderable(); };
    EXPECT_TRUE(isRenderable(R"({"fadeIn":0,"fadeOut":1e300,"speed":-1e300,"pitch":1e300,"echo":-1,"reverb":1e300})"));
    EXPECT_TRUE(isRenderable(R"({"gainDb":-1e300})"));
    EXPECT_TRUE(isRenderable(R"({"gainDb":100})"));
    EXPECT_FALSE(isRenderable(R"({"gainDb":101})"));
    EXPECT_FALSE(isRenderable(R"({"fadeIn":-0.001})"));
    EXPECT_FALSE(isRenderable(R"({"fadeOut":-1})"));
}

TEST(EffectControls, RoundAsPrintfDoes)
{
    EXPECT_EQ(EffectControls::speedText(1.25), u"1.2×"_s);
    EXPECT_EQ(EffectControls::gainText(2.5), u"+2 dB"_s);
    EXPECT_EQ(EffectControls::pitchText(-0.5), u"-0 semitones"_s);
    EXPECT_EQ(EffectControls::fadeText(0.125), u"0.12 s"_s);
}

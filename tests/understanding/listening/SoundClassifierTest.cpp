#include "understanding/listening/SoundClassifier.h"

#include "platform/media/AudioFile.h"
#include "platform/process/Defaults.h"
#include "support/Cancelling.h"
#include "support/MediaFactory.h"
#include "support/Printing.h"

#include <gmock/gmock.h>

#include <limits>
#include <thread>

using namespace tonequill;
using namespace Qt::StringLiterals;
using testing::AllOf;
using testing::ElementsAre;
using testing::Field;
using testing::Ge;
using testing::IsEmpty;
using testing::Le;
using testing::Not;
using testing::SizeIs;

namespace {

const QString kData = QStringLiteral(TONEQUILL_TEST_DATA "/understanding/");

QString lavfi(const QString& name, const QString& source, const QStringList& options = {})
{
    return test::makeMedia(name, QStringList{u"-f"_s, u"lavfi"_s, u"-i"_s, source} + options);
}

// Two loud beeps in four seconds.
QString beeps()
{
    return lavfi(u"beeps.wav"_s, u"aevalsrc='0.5*sin(2*PI*1000*t)*(lt(mod(t\\,1)\\,0.3))*lt(t\\,2)':s=44100:d=4"_s);
}

// Its "loud" follows the mean of the log-mel frames, so that what it says can be foreseen.
ClassifierChoice loudness()
{
    return {kData + u"loudness.onnx"_s, {}, ClassifierChoice::IfBroken::fail};
}

constexpr double kForever = std::numeric_limits<double>::infinity();

} // namespace

TEST(SoundClassifier, KeepsTheStrongestLabels)
{
    const QStringList labels = {u"a"_s, u"b"_s, u"silence"_s, u"c"_s, u"d"_s, u"e"_s, u"f"_s};
    const std::vector<double> best = {0.05, 0.3, 0.99, 0.7, 0.3, 0.0500001, 0.3};
    const auto heard = [&](int top) { return SoundClassifier::strongest(labels, best, top); };
    EXPECT_THAT(heard(10), ElementsAre(HeardLabel{u"c"_s, 0.7}, HeardLabel{u"b"_s, 0.3}, HeardLabel{u"d"_s, 0.3},
                                       HeardLabel{u"f"_s, 0.3}, HeardLabel{u"e"_s, 0.0500001}));
    EXPECT_THAT(heard(2), ElementsAre(HeardLabel{u"c"_s, 0.7}, HeardLabel{u"b"_s, 0.3}));
    EXPECT_THAT(heard(0), IsEmpty());
    EXPECT_THAT(heard(-1), IsEmpty());
}

TEST(SoundClassifier, CutsTheRangeToTheFile)
{
    const SoundClassifier classifier(loudness());
    const auto whole = classifier.classify(beeps(), 0, 4, 5);
    EXPECT_THAT(whole, Not(IsEmpty()));
    EXPECT_EQ(classifier.classify(beeps(), 0, 400, 5), whole);
    EXPECT_EQ(classifier.classify(beeps(), 0, kForever, 5), whole);
    EXPECT_EQ(classifier.classify(beeps(), -3, 4, 5), whole);
    EXPECT_EQ(classifier.classify(beeps(), -kForever, 1e300, 5), whole);
}

TEST(SoundClassifier, HearsTheRangeAndNothingElse)
{
    const SoundClassifier classifier(loudness());
    const auto loud = classifier.classify(beeps(), 0, 1, 1);
    const auto quiet = classifier.classify(beeps(), 2.5, 3.5, 1);
    ASSERT_THAT(loud, SizeIs(1));
    ASSERT_THAT(quiet, SizeIs(1));
    EXPECT_EQ(quiet[0].name, u"quiet_hushed"_s);
    // A peak over windows: the loud second counts though most of the range is quiet.
    const auto both = classifier.classify(beeps(), 0, 4, 5);
    for (const HeardLabel& label : both) {
        if (label.name == u"loud"_s) {
            EXPECT_GE(label.confidence, loud[0].name == u"loud"_s ? loud[0].confidence : 0);
        } else if (label.name == u"quiet_hushed"_s) {
            EXPECT_GE(label.confidence, quiet[0].confidence - 1e-6);
        }
    }
}

TEST(SoundClassifier, DoesNotTouchTheNetworkForAnEmptyRange)
{
    const SoundClassifier broken({u"/nowhere/a.onnx"_s, {}, ClassifierChoice::IfBroken::fail});
    EXPECT_THAT(broken.classify(beeps(), 2, 2, 5), IsEmpty());
    EXPECT_THAT(broken.classify(beeps(), 3, 2, 5), IsEmpty());
    EXPECT_THAT(broken.classify(beeps(), 4, 9, 5), IsEmpty());
    EXPECT_THAT(broken.classify(beeps(), 1e300, kForever, 5), IsEmpty());
    EXPECT_THAT(broken.classify(beeps(), std::nan(""), 3, 5), IsEmpty());
    EXPECT_THROW(broken.classify(beeps(), 0, 1, 5), SoundModelError);
}

TEST(SoundClassifier, PadsAShortSound)
{
    const SoundClassifier classifier;
    EXPECT_THAT(classifier.classify(beeps(), 0, 0.2, 5), Not(IsEmpty()));
    EXPECT_NO_THROW(classifier.classify(beeps(), 0, 1.0 / 44100, 5)) << "one frame";
    // Silence after the range must be as good as zeros: 0.3 seconds, then nothing.
    const SoundClassifier plain(loudness());
    const auto padded = plain.classify(beeps(), 0, 0.35, 3);
    const auto heard = plain.classify(beeps(), 0, 1.0, 3);
    ASSERT_EQ(padded.size(), heard.size());
    for (std::size_t i = 0; i < heard.size(); ++i)
        EXPECT_NEAR(padded[i].confidence, heard[i].confidence, 1e-3);
}

TEST(SoundClassifier, HearsNothingInSilence)
{
    const SoundClassifier classifier;
    EXPECT_THAT(classifier.classify(lavfi(u"silence.wav"_s, u"anullsrc=r=48000:cl=stereo:d=3"_s), 0, 3, 5), IsEmpty());
    EXPECT_THAT(classifier.classify(beeps(), 2.6, 4, 5), IsEmpty());
}

TEST(SoundClassifier, TakesEveryKindOfSound)
{
    const SoundClassifier classifier;
    const QStringList floats = {u"-c:a"_s, u"pcm_f32le"_s};
    const QString tone = u"sine=f=700:r=%1:d=1.5"_s;
    const QString files[] = {
        lavfi(u"8k.wav"_s, tone.arg(8000)),
        lavfi(u"192k.wav"_s, tone.arg(192000)),
        lavfi(u"six.flac"_s, tone.arg(48000), {u"-ac"_s, u"6"_s}),
        lavfi(u"square.wav"_s, u"aevalsrc='sgn(sin(2*PI*440*t))':s=44100:d=1.5"_s),
        lavfi(u"hot.wav"_s, u"aevalsrc='1e30*sin(2*PI*440*t)':s=44100:d=1.5"_s, floats),
        lavfi(u"nan.wav"_s, u"aevalsrc='if(lt(mod(t\\,0.1)\\,0.05)\\,0/0\\,1/0)':s=44100:d=1.5"_s, floats),
    };
    for (const QString& file : files) {
        const auto heard = classifier.classify(file, 0, kForever, 5);
        EXPECT_THAT(heard, Each(Field(&HeardLabel::confidence, AllOf(Ge(0.05), Le(1.0))))) << file.toStdString();
        EXPECT_TRUE(
            std::is_sorted(heard.begin(), heard.end(), [](const auto& a, const auto& b) { return a.confidence > b.confidence; }));
        EXPECT_LE(heard.size(), 5U);
    }
    EXPECT_THAT(classifier.classify(files[5], 0, kForever, 5), IsEmpty()) << "what is no number is silence";
    EXPECT_THROW(classifier.classify(test::makeFile(u"letter.wav"_s, "Hello"), 0, 1, 5), AudioFileError);
    EXPECT_THROW(classifier.classify(u"/nowhere/a.wav"_s, 0, 1, 5), AudioFileError);
}

TEST(SoundClassifier, AnswersTheSameFromManyThreads)
{
    const QString file =
        lavfi(u"chirp.wav"_s, u"aevalsrc='0.4*sin(2*PI*(200+700*t)*t)|0.4*sin(2*PI*(3000-500*t)*t)':s=48000:d=4"_s);
    const SoundClassifier classifier;
    std::vector<std::vector<HeardLabel>> together(4);
    {
        std::vector<std::jthread> threads;
        for (std::size_t i = 0; i < together.size(); ++i)
            threads.emplace_back([&, i] { together[i] = classifier.classify(file, 0.5 * double(i), 4, 50); });
    }
    for (std::size_t i = 0; i < together.size(); ++i) {
        EXPECT_EQ(together[i], classifier.classify(file, 0.5 * double(i), 4, 50)) << i;
        EXPECT_EQ(together[i], SoundClassifier().classify(file, 0.5 * double(i), 4, 50)) << i;
    }
}

TEST(SoundClassifier, EndsWhenItIsCancelled)
{
    const QString path = test::makeMedia(u"cancelled.wav"_s, test::wandering(16'000, 1, 2));
    Progress progress;
    const SoundClassifier classifier;
    EXPECT_NO_THROW(classifier.classify(path, 0, 2, 5, &progress));
    progress.cancel();
    EXPECT_THROW(classifier.classify(path, 0, 2, 5, &progress), Cancelled);
}

TEST(SoundClassifier, FallsBackOnlyWhereItMay)
{
    ClassifierChoice broken{test::makeFile(u"broken.onnx"_s, "no"), kData + u"loudness_class_map.csv"_s,
                            ClassifierChoice::IfBroken::fail};
    EXPECT_THROW(SoundClassifier(broken).classify(beeps(), 0, 2, 5), SoundModelError);
    broken.ifBroken = ClassifierChoice::IfBroken::useBuiltIn;
    EXPECT_EQ(SoundClassifier(broken).classify(beeps(), 0, 2, 5), SoundClassifier().classify(beeps(), 0, 2, 5));
}

TEST(SoundClassifier, IsChosenByTheEnvironmentOrTheDefaults)
{
    using IfBroken = ClassifierChoice::IfBroken;
    Defaults defaults(test::scratchPath(u"classifier.ini"_s));
    EXPECT_EQ(ClassifierChoice::from(defaults, IfBroken::fail).networkPath, QString());
    defaults.setText(u"classifier"_s, u"/a.onnx"_s);
    defaults.setText(u"classifierMap"_s, u"/a.csv"_s);
    EXPECT_EQ(ClassifierChoice::from(defaults, IfBroken::fail).networkPath, u"/a.onnx"_s);
    EXPECT_EQ(ClassifierChoice::from(defaults, IfBroken::useBuiltIn).classMapPath, u"/a.csv"_s);
    EXPECT_EQ(ClassifierChoice::from(defaults, IfBroken::useBuiltIn).ifBroken, IfBroken::useBuiltIn);
    qputenv("TONEQUILL_CLASSIFIER", "/b.onnx");
    const ClassifierChoice choice = ClassifierChoice::from(defaults, IfBroken::fail);
    qunsetenv("TONEQUILL_CLASSIFIER");
    EXPECT_EQ(choice.networkPath, u"/b.onnx"_s);
    EXPECT_EQ(choice.classMapPath, QString()) << "a map belongs to its network";
}

TEST(SoundClassifier, EndsSoonAfterItIsCancelled)
{
    const QString path = test::makeMedia(u"long-cancelled.wav"_s, test::wandering(8'000, 1, 30));
    const SoundClassifier classifier;
    classifier.prepare();
    const auto listen = [&](Progress& progress) { classifier.classify(path, 0, 30, 5, &progress); };
    EXPECT_LE(test::workAfterCancel(listen), test::kSoon);
}

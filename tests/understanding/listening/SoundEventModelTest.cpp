#include "understanding/listening/SoundEventModel.h"

#include "support/MediaFactory.h"
#include "support/Printing.h"
#include "understanding/listening/PatchStream.h"

#include <QDir>
#include <QFile>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>

#include <gmock/gmock.h>

#include <cmath>
#include <numbers>
#include <stdexcept>

using namespace tonequill;
using namespace Qt::StringLiterals;
using testing::ElementsAre;

namespace {

const QString kData = QStringLiteral(TONEQUILL_TEST_DATA "/understanding/");

std::vector<float> patchOf(float value)
{
    return std::vector<float>(EventNetwork::kPatchValues, value);
}

QString refusalOf(const QString& network, const QString& map = kData + u"loudness_class_map.csv"_s)
{
    try {
        SoundEventModel::fromFile(network, map);
        return u"none"_s;
    } catch (const SoundModelError& error) {
        return error.message();
    }
}

// The signal of golden.json: two sweeps that end in silence.
std::vector<float> goldenSignal()
{
    std::vector<float> samples(16000, 0.0F);
    for (std::size_t n = 0; n < 12000; ++n) {
        const double t = double(n) / 16000;
        samples[n] = static_cast<float>(0.5 * std::sin(2 * std::numbers::pi * (300 + 900 * t) * t) +
                                        0.1 * std::sin(2 * std::numbers::pi * (5000 - 2000 * t) * t));
    }
    return samples;
}

std::vector<double> numbersOf(const QJsonValue& array)
{
    std::vector<double> numbers;
    const QJsonArray list = array.toArray();
    for (const QJsonValue& value : list)
        numbers.push_back(value.toDouble());
    return numbers;
}

} // namespace

TEST(SoundEventModel, HearsWhatItWasTrainedToHear)
{
    // golden.json is written by the training tools, by another FFT and another
    // implementation of the network; both compute in 32 bits.
    const QJsonObject golden = QJsonDocument::fromJson(test::bytesOfFile(kData + u"golden.json"_s)).object();
    std::vector<float> patch;
    PatchStream stream([&](std::span<const float> first) { patch.assign(first.begin(), first.end()); });
    stream.add(goldenSignal());
    stream.finish();
    const QJsonObject frames = golden[u"frames"_s].toObject();
    ASSERT_FALSE(frames.isEmpty());
    for (const QString& frame : frames.keys()) {
        const std::vector<double> expected = numbersOf(frames[frame]);
        ASSERT_EQ(expected.size(), 64U);
        for (std::size_t band = 0; band < 64; ++band)
            EXPECT_NEAR(patch[frame.toULong() * 64 + band], expected[band], 1e-4) << frame.toStdString() << " " << band;
    }

    QFile network(u":/classifier/network.onnx"_s);
    SoundEventModel::builtIn(); // brings the resources
    ASSERT_TRUE(network.open(QIODevice::ReadOnly));
    const std::vector<float> scores = EventNetwork(network.readAll()).scores(patch);
    const std::vector<double> expected = numbersOf(golden[u"scores"_s]);
    ASSERT_EQ(scores.size(), expected.size());
    for (std::size_t i = 0; i < scores.size(); ++i)
        EXPECT_NEAR(scores[i], expected[i], 1e-4) << i;
}

TEST(SoundEventModel, CallsSilenceSilence)
{
    const auto model = SoundEventModel::builtIn();
    const auto confidences = model->confidences(patchOf(std::log(0.001F)));
    EXPECT_GT(confidences[std::size_t(model->labels().indexOf(u"silence"_s))], 0.5);
    for (qsizetype i = 0; i < model->labels().size(); ++i)
        if (model->labels()[i] != u"silence") {
            EXPECT_LE(confidences[std::size_t(i)], 0.05) << model->labels()[i].toStdString();
        }
}

TEST(SoundEventModel, SpellsItsLabelsAsTheNamerKnowsThem)
{
    const QStringList labels = SoundEventModel::builtIn()->labels();
    for (const QString& label :
         {u"speech"_s, u"singing"_s, u"music"_s, u"whoosh_swoosh_swish"_s, u"thump_thud"_s, u"gunshot_gunfire"_s,
          u"glass_breaking"_s, u"crumpling_crinkling"_s, u"liquid_splashing"_s, u"finger_snapping"_s,
          u"typing_computer_keyboard"_s, u"slap_smack"_s, u"tick_tock"_s, u"silence"_s})
        EXPECT_EQ(labels.count(label), 1) << label.toStdString();
}

TEST(SoundEventModel, ReadsConfidencesOffACurve)
{
    const QByteArray onnx = test::bytesOfFile(kData + u"loudness.onnx"_s);
    // The scores of a patch of zeros: sigmoid of 3, -3 and 0.1.
    const SoundEventModel plain(onnx, {u"a"_s, u"b"_s, u"c"_s});
    const auto scores = plain.confidences(patchOf(0));
    EXPECT_THAT(scores, ElementsAre(testing::DoubleNear(0.952574, 1e-5), testing::DoubleNear(0.047426, 1e-5),
                                    testing::DoubleNear(0.524979, 1e-5)));
    const SoundEventModel curved(onnx, {u"a"_s, u"b"_s, u"c"_s}, {{0.1, 0.0}, {0.5, 0.6}, {0.6, 0.8}});
    EXPECT_THAT(curved.confidences(patchOf(0)), ElementsAre(0.8, 0.0, testing::DoubleNear(0.6 + 0.2 * 0.24979, 1e-4)));
}

TEST(SoundEventModel, TakesANetworkOfTheUsersOwn)
{
    const auto model = SoundEventModel::fromFile(kData + u"loudness.onnx"_s, kData + u"loudness_class_map.csv"_s);
    EXPECT_THAT(model->labels(), ElementsAre(u"loud"_s, u"quiet_hushed"_s, u"silence"_s));
    EXPECT_GT(model->confidences(patchOf(4))[0], 0.99);
    // The class map beside it needs no name.
    EXPECT_EQ(SoundEventModel::fromFile(kData + u"loudness.onnx"_s)->labels(), model->labels());
}

TEST(SoundEventModel, TellsWhyANetworkCannotBeUsed)
{
    const QByteArray good = test::bytesOfFile(kData + u"loudness.onnx"_s);
    const auto sentence = [](const QString& name, const QString& reason) {
        return u"The sound classifier “%1” can't be used: %2."_s.arg(name, reason);
    };
    EXPECT_EQ(refusalOf(u"/nowhere/a.onnx"_s), sentence(u"a.onnx"_s, u"it can't be opened"_s));
    EXPECT_EQ(refusalOf(kData), sentence(QString(), u"it can't be opened"_s));
    const QString unreadable = u"it is not an ONNX network that can be read"_s;
    EXPECT_EQ(refusalOf(test::makeFile(u"text.onnx"_s, "Hello, this is a letter.\n")), sentence(u"text.onnx"_s, unreadable));
    EXPECT_NE(refusalOf(test::makeFile(u"empty.onnx"_s, {})), u"none"_s);
    EXPECT_NE(refusalOf(test::makeFile(u"zeros.onnx"_s, QByteArray(4096, '\0'))), u"none"_s);
    for (qsizetype size = 1; size < good.size(); size += 7)
        EXPECT_NE(refusalOf(test::makeFile(u"cut%1.onnx"_s.arg(size), good.first(size))), u"none"_s) << size;
    EXPECT_EQ(refusalOf(kData + u"long_patches.onnx"_s),
              sentence(u"long_patches.onnx"_s, u"it does not take patches of 96 frames of 64 bands"_s));
    EXPECT_EQ(refusalOf(kData + u"logits.onnx"_s), sentence(u"logits.onnx"_s, u"its scores are not between 0 and 1"_s));

    const QString huge = test::scratchPath(u"huge.onnx"_s);
    QFile file(huge);
    ASSERT_TRUE(file.open(QIODevice::WriteOnly) && file.resize(qint64(2) << 30)); // sparse
    EXPECT_EQ(refusalOf(huge), sentence(u"huge.onnx"_s, u"it is too large"_s));
}

TEST(SoundEventModel, TellsWhyAClassMapCannotBeUsed)
{
    const QString network = kData + u"loudness.onnx"_s;
    const QByteArray head = "index,mid,display_name\n";
    EXPECT_EQ(refusalOf(network, test::makeFile(u"two.csv"_s, head + "0,a,Bell\n1,b,Dog\n")),
              u"The sound classifier “loudness.onnx” can't be used: it has 3 scores for 2 labels."_s);
    EXPECT_EQ(refusalOf(network, test::makeFile(u"gap.csv"_s, head + "0,a,Bell\n2,b,Dog\n")),
              u"The sound classifier “gap.csv” can't be used: row 1 is missing or stands twice."_s);
    QDir(test::scratchPath(u"."_s)).mkdir(u"alone"_s);
    EXPECT_EQ(refusalOf(test::makeFile(u"alone/lonely.onnx"_s, test::bytesOfFile(network)), QString()),
              u"The sound classifier “lonely.onnx” can't be used: its class map is not beside it."_s);
}

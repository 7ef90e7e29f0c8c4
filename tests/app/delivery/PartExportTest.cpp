#include "app/delivery/PartExport.h"
#include "audio/effects/EffectRenderer.h"
#include "platform/media/AudioFile.h"
#include "support/Printing.h"
#include "support/Wav.h"

#include <QDir>
#include <QTemporaryDir>

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <thread>
#include <vector>

using namespace tonequill;
using namespace Qt::StringLiterals;

namespace {

using Part = EditorModel::Part;

SoundItem named(const QString& name)
{
    SoundItem item;
    item.name = name;
    return item;
}

std::vector<float> samplesOf(const QString& path)
{
    AudioFile file(path);
    AudioBuffer buffer(file.format(), file.length());
    file.read(buffer);
    const auto channel = buffer.channel(0);
    return {channel.begin(), channel.end()};
}

QStringList temporaryFiles()
{
    return QDir(QDir::tempPath()).entryList({u"render-*"_s, u"*.wav"_s}, QDir::Files);
}

} // namespace

TEST(PartExport, OnePartHasTheNameOfTheSound)
{
    EXPECT_EQ(PartExport::names(named(u"Door"_s), {{0, 1, u"Slam"_s}}), QStringList{u"Door"_s});
    EXPECT_EQ(PartExport::names(named(u"IMG_0042"_s), {}), QStringList{u"IMG_0042"_s});
}

TEST(PartExport, PartsWithoutALabelAreNumbered)
{
    EXPECT_EQ(PartExport::names(named(u"Door"_s), {{0, 1, {}}, {2, 3, {}}}),
              (QStringList{u"Door – Part 1"_s, u"Door – Part 2"_s}));
}

TEST(PartExport, ANameThatSaysNothingIsLeftOutAndALabelThatComesAgainIsCounted)
{
    EXPECT_EQ(PartExport::names(named(u"IMG_0042"_s), {{0, 1, u"Whoosh"_s}, {2, 3, {}}, {4, 5, u"Whoosh"_s}}),
              (QStringList{u"Whoosh"_s, u"Part 2"_s, u"Whoosh 2"_s}));
    EXPECT_EQ(PartExport::names(named(u"Street"_s), {{0, 1, u"Horn"_s}, {2, 3, u"Horn"_s}, {4, 5, u"Horn"_s}}),
              (QStringList{u"Street – Horn"_s, u"Street – Horn 2"_s, u"Street – Horn 3"_s}));
}

TEST(PartExport, APartOfTwentyMillisecondsIsNotWorthAFile)
{
    const std::vector<Part> parts = {{0, 0.02, {}}, {1, 1.021, {}}, {3, 2, {}}};
    EXPECT_EQ(PartExport::usable(parts), (std::vector<Part>{{1, 1.021, {}}}));
}

TEST(PartExport, ACutIsFadedAndLevelled)
{
    const QTemporaryDir folder;
    const QString source = test::writeTone(folder.filePath(u"a.wav"_s), 2, 48000);
    const QString path = folder.filePath(u"cut.wav"_s);
    const ExportResult result = PartExport::exportWithEffects(source, 0.5, 1.5, {}, path);
    EXPECT_EQ(result.frames, 48000);
    EXPECT_EQ(result.sampleRate, 48000);
    const auto samples = samplesOf(path);
    ASSERT_EQ(samples.size(), 48000U);
    EXPECT_NEAR(*std::max_element(samples.begin(), samples.end()), 0.891, 0.002); // -1 dBFS
    const auto loudest = [&](std::size_t from, std::size_t count) {
        float peak = 0;
        for (std::size_t i = from; i < from + count; ++i)
            peak = std::max(peak, std::abs(samples[i]));
        return peak;
    };
    EXPECT_LT(loudest(0, 48), 0.891 * 0.3);            // the first of four milliseconds
    EXPECT_GT(loudest(4 * 48, 480), 0.891 * 0.95);     // and behind them
    EXPECT_LT(loudest(48000 - 240, 240), 0.891 * 0.2); // the last five of thirty
    EXPECT_GT(loudest(48000 - 40 * 48, 480), 0.891 * 0.95);
}

TEST(PartExport, EffectsAreRenderedAndNothingTemporaryStays)
{
    const QTemporaryDir folder;
    const QStringList before = temporaryFiles();
    const QString source = test::writeTone(folder.filePath(u"a.wav"_s), 2, 48000);
    const QString path = folder.filePath(u"cut.wav"_s);
    EffectSettings effects;
    effects.speed = 2;
    const ExportResult result = PartExport::exportWithEffects(source, 0, 2, effects, path);
    EXPECT_NEAR(double(result.frames), 48000, 480);
    EXPECT_EQ(result.channels, 2); // effects are rendered in stereo
    EXPECT_EQ(temporaryFiles(), before);

    effects = {};
    effects.reverse = true;
    effects.gainDb = -6;
    EXPECT_THROW(PartExport::exportWithEffects(folder.filePath(u"gone.wav"_s), 0, 2, effects, path), std::exception);
    EXPECT_THROW(PartExport::exportWithEffects(source, 5, 6, effects, path), RenderError);
    EXPECT_THROW(PartExport::exportWithEffects(source, 0, 1, effects, folder.filePath(u"no/folder/cut.wav"_s)), std::exception);
    EXPECT_EQ(temporaryFiles(), before);
}

TEST(PartExport, ARenderedCutEndsWithAFadeOfTenMilliseconds)
{
    const QTemporaryDir folder;
    const QString source = test::writeTone(folder.filePath(u"a.wav"_s), 1, 48000);
    const QString path = folder.filePath(u"cut.wav"_s);
    EffectSettings effects;
    effects.gainDb = -6;
    ASSERT_EQ(PartExport::exportWithEffects(source, 0, 1, effects, path).frames, 48'000);
    const auto samples = samplesOf(path);
    const auto loudest = [&](int fromEndMs, int lengthMs) {
        float peak = 0;
        for (std::size_t i = 48'000U - 48U * unsigned(fromEndMs), end = i + 48U * unsigned(lengthMs); i < end; ++i)
            peak = std::max(peak, std::abs(samples[i]));
        return peak;
    };
    EXPECT_GT(loudest(15, 5), 0.891 * 0.98); // an unrendered one would be half as loud there
    EXPECT_LT(loudest(5, 5), 0.891 * 0.51);
    EXPECT_GT(loudest(5, 5), 0.891 * 0.3);
    EXPECT_LT(loudest(1, 1), 0.891 * 0.11);
}

TEST(PartExport, ARenderedCutHasEveryFrame)
{
    // A length whose seconds come back as one frame less.
    qint64 frames = 48'000;
    while (static_cast<qint64>(double(frames) / 48'000 * 48'000) == frames && frames < 96'000)
        ++frames;
    ASSERT_LT(frames, 96'000);
    const QTemporaryDir folder;
    const QString source = test::writeTone(folder.filePath(u"a.wav"_s), 3, 48'000);
    EffectSettings effects;
    effects.reverse = true;
    const double end = (double(frames) + 0.5) / 48'000;
    EXPECT_EQ(PartExport::exportWithEffects(source, 0, end, effects, folder.filePath(u"cut.wav"_s)).frames, frames);
}

TEST(PartExport, TwoOfOneNameAtOnceAreTwoFiles)
{
    const QTemporaryDir folder;
    const QString source = test::writeTone(folder.filePath(u"source.wav"_s), 1, 48'000);
    const QString out = folder.filePath(u"made/as needed"_s);
    std::vector<std::thread> threads;
    for (int i = 0; i < 6; ++i)
        threads.emplace_back([&] { PartExport::exportInto(out, u"Same"_s, source, 0, 1, {}); });
    for (std::thread& thread : threads)
        thread.join();
    const QDir made(out);
    EXPECT_EQ(made.entryList(QDir::Files | QDir::Hidden, QDir::Name),
              (QStringList{u"Same 2.wav"_s, u"Same 3.wav"_s, u"Same 4.wav"_s, u"Same 5.wav"_s, u"Same 6.wav"_s, u"Same.wav"_s}));
    for (const QString& name : made.entryList(QDir::Files))
        EXPECT_EQ(AudioFile(made.filePath(name)).length(), 48'000);
}

// What is heard when a part is played, and what the part's file holds, are the same.

#include "app/delivery/PartExport.h"
#include "audio/effects/EffectRenderer.h"
#include "platform/media/AudioFile.h"
#include "platform/media/AudioFileWriter.h"
#include "platform/playback/SdlAudioOutput.h"
#include "support/Environment.h"
#include "support/MediaFactory.h"
#include "support/Printing.h"
#include "understanding/listening/SoundClassifier.h"

#include <QTemporaryDir>
#include <QTest>

#include <gtest/gtest.h>

#include <array>
#include <cmath>
#include <cstring>

using namespace tonequill;
using namespace Qt::StringLiterals;

namespace {

constexpr int kPatienceMs = 20000;
constexpr double kRate = 48000;
using Frame = std::array<float, 2>;

std::vector<Frame> framesOf(const AudioBuffer& buffer)
{
    std::vector<Frame> frames(std::size_t(buffer.frameLength()));
    for (std::size_t i = 0; i < frames.size(); ++i)
        frames[i] = {buffer.channel(0)[i], buffer.channel(1)[i]};
    return frames;
}

AudioBuffer readAll(const QString& path)
{
    AudioFile file(path);
    AudioBuffer buffer(file.format(), file.length());
    file.read(buffer);
    return buffer;
}

class HeardPartTest : public testing::Test {
protected:
    HeardPartTest()
    {
        // Four seconds without a frame of silence, so that the silence around can be left out.
        AudioBuffer noise({kRate, 2}, qint64(4 * kRate));
        noise.setFrameLength(noise.capacityFrames());
        quint32 random = 7;
        for (int channel = 0; channel < 2; ++channel) {
            for (float& sample : noise.channel(channel)) {
                random = random * 1664525 + 1013904223;
                sample = (float(random >> 8) / float(1 << 24) - 0.5F) * 0.8F;
                sample += sample < 0 ? -0.01F : 0.01F;
            }
        }
        AudioFileWriter writer(source, noise.format(), AudioEncoding::wavFloat32);
        writer.write(noise);
        writer.finish();
    }

    // Everything that the editor plays of the range, silences left out.
    std::vector<Frame> heard(const EffectSettings& effects)
    {
        {
            SdlAudioOutput output;
            Workers workers;
            BackgroundEditorWork work(classifier, output, workers);
            SystemClock clock;
            EditorModel editor(work, clock);
            SoundItem item;
            item.id = QUuid::createUuid();
            item.duration = 4;
            editor.load(item, source);
            EXPECT_TRUE(QTest::qWaitFor([&] { return editor.isSettled(); }, kPatienceMs));
            editor.setRange(1, 2);
            editor.setEffects(effects);
            editor.play();
            EXPECT_TRUE(editor.isPlaying());
            EXPECT_TRUE(QTest::qWaitFor([&] { return !editor.isPlaying(); }, kPatienceMs));
            EXPECT_FALSE(editor.loadError());
        }
        const QByteArray bytes = test::bytesOfFile(recording);
        std::vector<Frame> frames(std::size_t(bytes.size()) / sizeof(Frame));
        std::memcpy(frames.data(), bytes.constData(), frames.size() * sizeof(Frame));
        std::erase(frames, Frame());
        return frames;
    }

    QTemporaryDir folder;
    QString source = folder.filePath(u"source.wav"_s);
    QString recording = folder.filePath(u"heard.raw"_s);
    test::Environment driver{"SDL_AUDIODRIVER", "disk"};
    test::Environment file{"SDL_DISKAUDIOFILE", QFile::encodeName(recording)};
    test::Environment delay{"SDL_DISKAUDIODELAY", "10"};
    SoundClassifier classifier;
};

} // namespace

TEST_F(HeardPartTest, APartIsHeardAsItIsInTheFileAndSavedFadedAndLevelled)
{
    std::vector<Frame> frames = heard({});
    ASSERT_GE(frames.size(), std::size_t(kRate));
    frames.resize(std::size_t(kRate)); // it ends with the tick that sees the end
    std::vector<Frame> range = framesOf(readAll(source));
    range = {range.begin() + int(kRate), range.begin() + int(2 * kRate)};
    EXPECT_TRUE(frames == range);

    const QString saved = folder.filePath(u"part.wav"_s);
    PartExport::exportWithEffects(source, 1, 2, {}, saved);
    AudioBuffer finished({kRate, 2}, qint64(frames.size()));
    finished.setFrameLength(finished.capacityFrames());
    for (std::size_t i = 0; i < frames.size(); ++i) {
        finished.channel(0)[i] = frames[i][0];
        finished.channel(1)[i] = frames[i][1];
    }
    AudioExporter::process(finished, ExportPreset::anyEditor, 0.004, 0.03);
    const AudioBuffer written = readAll(saved);
    ASSERT_EQ(written.frameLength(), finished.frameLength());
    constexpr double kHalfStep = 0.5 / (1 << 23) + 1e-9; // the file's 24 bits are rounded
    double worst = 0;
    for (int channel = 0; channel < 2; ++channel) {
        for (std::size_t i = 0; i < frames.size(); ++i)
            worst = std::max(worst, std::abs(double(written.channel(channel)[i]) - double(finished.channel(channel)[i])));
    }
    EXPECT_LE(worst, kHalfStep);
}

TEST_F(HeardPartTest, EffectsAreHeardAsTheyAreRendered)
{
    EffectSettings effects;
    effects.voice = VoiceStyle::robot;
    effects.speed = 1.5;
    effects.reverse = true;
    const std::vector<Frame> frames = heard(effects);
    std::vector<Frame> rendered = framesOf(EffectRenderer::renderBuffer(source, 1, 2, effects));
    std::erase(rendered, Frame());
    EXPECT_EQ(frames.size(), rendered.size());
    EXPECT_TRUE(frames == rendered);
}

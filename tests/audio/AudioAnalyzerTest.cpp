#include "audio/AudioAnalyzer.h"
#include "platform/AudioFile.h"
#include "support/MediaFactory.h"
#include "support/Printing.h"

#include <gmock/gmock.h>

using namespace tonequill;
using namespace Qt::StringLiterals;
using testing::ElementsAre;

TEST(AudioAnalyzer, ReadsEveryKindOfFileOnce)
{
    for (const QString& name : {u"a.wav"_s, u"a.mp3"_s, u"a.m4a"_s, u"a.flac"_s, u"a.ogg"_s, u"a.opus"_s}) {
        const auto analysis = AudioAnalyzer::analyze(test::makeMedia(name, test::wandering(48000, 2, 2)));
        EXPECT_NEAR(analysis.duration, 2.0, 0.06) << name.toStdString();
        EXPECT_EQ(analysis.sampleRate, 48000);
        EXPECT_EQ(analysis.rms.size(), analysis.peak.size());
        EXPECT_NEAR(static_cast<double>(analysis.rms.size()), 200, 6) << name.toStdString();
    }
}

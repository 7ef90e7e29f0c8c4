#include "platform/AudioFile.h"
#include "support/MediaFactory.h"
#include "support/Printing.h"
#include "support/Sound.h"

#include <gmock/gmock.h>

using namespace tonequill;
using namespace Qt::StringLiterals;

TEST(AudioFile, TellsWhatIsWrongInOneSentence)
{
    const auto sentence = [](AudioFileError::Kind kind, const QString& detail = {}) {
        return AudioFileError(kind, u"/some/where/My Take.wav"_s, detail).message();
    };
    using Kind = AudioFileError::Kind;
    EXPECT_EQ(sentence(Kind::open), u"“My Take.wav” couldn't be opened."_s);
    EXPECT_EQ(sentence(Kind::unsupported), u"“My Take.wav” isn't a sound or video file that can be read."_s);
    EXPECT_EQ(sentence(Kind::read), u"“My Take.wav” couldn't be read."_s);
    EXPECT_EQ(sentence(Kind::seek), u"“My Take.wav” couldn't be read from the chosen place."_s);
    EXPECT_EQ(sentence(Kind::write), u"“My Take.wav” couldn't be saved."_s);
    EXPECT_EQ(sentence(Kind::write, u"the disk is full"_s), u"“My Take.wav” couldn't be saved: the disk is full."_s);
    EXPECT_EQ(sentence(Kind::noMemory), u"There is not enough memory for “My Take.wav”."_s);
}

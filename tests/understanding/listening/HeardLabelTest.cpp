#include "understanding/listening/HeardLabel.h"

#include <gtest/gtest.h>

using namespace tonequill;
using namespace Qt::StringLiterals;

TEST(HeardLabel, KnowsWhatIsVoiceAndMusic)
{
    const QSet<QString>& labels = voiceAndMusic();
    EXPECT_EQ(labels.size(), 10);
    for (const QString& label : {u"speech"_s, u"babble"_s, u"chatter"_s, u"singing"_s, u"music"_s, u"rapping"_s, u"humming"_s,
                                 u"whispering"_s, u"choir_singing"_s, u"orchestra"_s})
        EXPECT_TRUE(labels.contains(label)) << label.toStdString();
}

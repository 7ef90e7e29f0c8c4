#include "understanding/listening/HeardLabel.h"

namespace tonequill {

using namespace Qt::StringLiterals;

const QSet<QString>& voiceAndMusic()
{
    static const QSet<QString> labels = {u"speech"_s,  u"babble"_s,  u"chatter"_s,    u"singing"_s,       u"music"_s,
                                         u"rapping"_s, u"humming"_s, u"whispering"_s, u"choir_singing"_s, u"orchestra"_s};
    return labels;
}

} // namespace tonequill

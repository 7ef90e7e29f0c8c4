#include "audio/effects/VoiceStyle.h"

#include <algorithm>

namespace tonequill {

using namespace Qt::StringLiterals;

namespace {

struct Row {
    VoiceStyle style;
    const char16_t* id;
    const char16_t* label;
    const char16_t* symbol;
    double pitchOffset;
    bool addsCharacter;
    const char16_t* hint;
};

constexpr std::array kRows = {
    Row{VoiceStyle::natural, u"natural", u"Natural", u"person.wave.2", 0, false, u"The voice as it was recorded."},
    Row{VoiceStyle::man, u"man", u"Man", u"person.fill", -4, false, u"Lower. Turns a woman's voice into a man's."},
    Row{VoiceStyle::woman, u"woman", u"Woman", u"person.fill", 4, false, u"Higher. Turns a man's voice into a woman's."},
    Row{VoiceStyle::child, u"child", u"Child", u"figure.and.child.holdinghands", 8, false, u"Much higher, like a kid."},
    Row{VoiceStyle::giant, u"giant", u"Giant", u"arrow.down.circle", -9, false, u"Very low and heavy."},
    Row{VoiceStyle::robot, u"robot", u"Robot", u"cpu", 0, true, u"Metallic and buzzing."},
    Row{VoiceStyle::alien, u"alien", u"Alien", u"sparkle", 3, true, u"Strange and warbly."},
    Row{VoiceStyle::telephone, u"telephone", u"Telephone", u"phone.fill", 0, true, u"Thin, like a phone call."},
    Row{VoiceStyle::megaphone, u"megaphone", u"Megaphone", u"megaphone.fill", 0, true, u"Loud and harsh, like a loudspeaker."},
};

const Row& rowOf(VoiceStyle style)
{
    return kRows[static_cast<std::size_t>(style)];
}

static_assert(kRows.size() == kVoiceStyles.size());
static_assert(std::equal(kRows.begin(), kRows.end(), kVoiceStyles.begin(),
                         [](const Row& row, VoiceStyle style) { return row.style == style; }),
              "a row's place is its style");

} // namespace

QString idOf(VoiceStyle style)
{
    return QString::fromUtf16(rowOf(style).id);
}

std::optional<VoiceStyle> voiceStyleFromId(QStringView id)
{
    const auto* const row =
        std::find_if(kRows.begin(), kRows.end(), [id](const Row& each) { return id == QStringView(each.id); });
    return row == kRows.end() ? std::nullopt : std::optional(row->style);
}

QString labelOf(VoiceStyle style)
{
    return QString::fromUtf16(rowOf(style).label);
}

QString symbolOf(VoiceStyle style)
{
    return QString::fromUtf16(rowOf(style).symbol);
}

QString hintOf(VoiceStyle style)
{
    return QString::fromUtf16(rowOf(style).hint);
}

double pitchOffsetOf(VoiceStyle style)
{
    return rowOf(style).pitchOffset;
}

bool addsCharacter(VoiceStyle style)
{
    return rowOf(style).addsCharacter;
}

} // namespace tonequill

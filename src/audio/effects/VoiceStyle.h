#pragma once

#include <QString>
#include <QStringView>

#include <array>
#include <optional>

namespace tonequill {

// How a voice is disguised. The order is the one of the picker.
enum class VoiceStyle { natural, man, woman, child, giant, robot, alien, telephone, megaphone };

inline constexpr std::array kVoiceStyles = {VoiceStyle::natural, VoiceStyle::man,       VoiceStyle::woman,
                                            VoiceStyle::child,   VoiceStyle::giant,     VoiceStyle::robot,
                                            VoiceStyle::alien,   VoiceStyle::telephone, VoiceStyle::megaphone};

// The style's id, which is also how it is stored.
QString idOf(VoiceStyle style);
std::optional<VoiceStyle> voiceStyleFromId(QStringView id);

QString labelOf(VoiceStyle style);
QString symbolOf(VoiceStyle style); // the name of its icon
QString hintOf(VoiceStyle style);   // one sentence under the picker

// Semitones that the style adds to the pitch.
double pitchOffsetOf(VoiceStyle style);

// Whether the style has a waveform recipe (VoiceDSP); the others only shift.
bool addsCharacter(VoiceStyle style);

} // namespace tonequill

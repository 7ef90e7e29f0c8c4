#pragma once

#include "library/records/SoundItem.h"
#include "understanding/listening/HeardLabel.h"

namespace tonequill {

class AppModel;

// Names a sound by what was heard in it: only where the name is still the program's
// to choose, and the ear is sure.
void applyHeard(AppModel& model, const SoundItem& item, const SoundHeard& heard);

// From now on what the editor hears names the open sound.
void followTheEar(AppModel& model);

} // namespace tonequill

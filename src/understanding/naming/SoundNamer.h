#pragma once

#include "understanding/listening/HeardLabel.h"

#include <QStringList>

#include <vector>

// Turns the classifier's labels into words for people, without a model. Always
// available, and what is used when a language model is not. Any thread.
namespace tonequill::SoundNamer {

// The display name of a label.
QString pretty(const QString& label);

// Name, summary and headline of what was heard. `descriptors` are taken, and not
// used, so that this can stand in for the smart namer. `duration` is in seconds.
SoundHeard ruleBased(const std::vector<HeardLabel>& labels, const QStringList& descriptors, double duration);

} // namespace tonequill::SoundNamer

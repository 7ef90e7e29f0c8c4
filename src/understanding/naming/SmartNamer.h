#pragma once

#include "platform/network/LanguageModel.h"

#include <QStringList>

#include <optional>

namespace tonequill {

// What is known of a sound that gets a name.
struct SoundFacts {
    QString name;             // the current one
    QStringList labels;       // what was heard, as display names, most likely first
    QStringList existingTags; // the sound's tags so far
    double duration = 0;      // seconds
    QStringList descriptors;  // trait words such as "punchy"
};

// A name with tags for a sound. `name` may be empty where there is no good one.
struct SoundNaming {
    QString name;
    QStringList tags;

    bool operator==(const SoundNaming&) const = default;
};

// Names a sound with a language model, or by rule where that fails. A model's
// answer is never taken as it stands.
namespace SmartNamer {

// Nothing when the model fails or answers no acceptable name. Keep `model` until
// it is done.
QCoro::Task<std::optional<SoundNaming>> askModel(LanguageModel& model, SoundFacts facts);

// By rule; never fails.
SoundNaming fallback(const SoundFacts& facts);

// The name as the library wants it: one to four words in Title Case, without
// numbers, at most 40 characters; or nothing.
std::optional<QString> cleanName(const std::optional<QString>& text);

} // namespace SmartNamer

} // namespace tonequill

#pragma once

#include <QHashFunctions>
#include <QSet>
#include <QString>

#include <functional>
#include <vector>

namespace tonequill {

// One thing that was heard in a stretch of audio.
struct HeardLabel {
    QString name;          // the classifier's identifier, such as "glass_breaking"
    double confidence = 0; // 0 to 1, the best value of any window

    bool operator==(const HeardLabel&) const = default;
};

inline size_t qHash(const HeardLabel& label, size_t seed = 0) noexcept
{
    return qHashMulti(seed, label.name, label.confidence);
}

// Names that count as voice or music and not as a sound effect.
const QSet<QString>& voiceAndMusic();

// What the user is told about a sound.
struct SoundHeard {
    QString name;     // a short display name; empty when nothing was recognised
    QString summary;  // one sentence
    QString headline; // a short line with the certainty
    std::vector<HeardLabel> labels;

    bool operator==(const SoundHeard&) const = default;
};

} // namespace tonequill

template <>
struct std::hash<tonequill::HeardLabel> {
    std::size_t operator()(const tonequill::HeardLabel& label) const noexcept { return qHash(label); }
};

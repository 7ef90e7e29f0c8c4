#pragma once

#include "base/Progress.h"
#include "understanding/listening/HeardLabel.h"
#include "understanding/listening/SoundEventModel.h"

#include <QSet>
#include <QString>

#include <memory>
#include <mutex>
#include <vector>

namespace tonequill {

class Defaults;

// Which network listens. Both paths are empty for the one of the program.
struct ClassifierChoice {
    enum class IfBroken { fail, useBuiltIn };

    QString networkPath;
    QString classMapPath; // empty: the class map beside the network
    IfBroken ifBroken = IfBroken::fail;

    // What the environment (TONEQUILL_CLASSIFIER, TONEQUILL_CLASSIFIER_MAP) or
    // else the defaults (keys "classifier", "classifierMap") name.
    static ClassifierChoice from(const Defaults& defaults, IfBroken ifBroken);
};

// Tells what a stretch of audio sounds like. It is the only listener in the
// system. The network is loaded when it is first needed. Any thread, several at
// once; classify() blocks its caller.
class SoundClassifier {
public:
    explicit SoundClassifier(ClassifierChoice choice = {}) : m_choice(std::move(choice)) {}

    // Loads the network now instead of with the first question. Throws
    // SoundModelError as classify() does.
    void prepare() const { model(); }

    // The labels above 0.05 other than "silence", strongest first, at most `top`;
    // of equals the earlier one first. REQUIRES: best.size() == labels.size().
    static std::vector<HeardLabel> strongest(const QStringList& labels, const std::vector<double>& best, int top);

    // What is heard between `start` and `end` (seconds) in the file: at most
    // `top` labels, strongest first, each with the best confidence of any window
    // of about one second. A file of any length is read in blocks.
    // Throws AudioFileError, and SoundModelError for a broken network of the
    // user's unless the choice is to fall back; and Cancelled, within a patch.
    std::vector<HeardLabel> classify(const QString& path, double start, double end, int top,
                                     const Progress* progress = nullptr) const;

private:
    std::shared_ptr<const SoundEventModel> model() const;

    ClassifierChoice m_choice;
    mutable std::mutex m_mutex; // guards m_model
    mutable std::shared_ptr<const SoundEventModel> m_model;
};

} // namespace tonequill

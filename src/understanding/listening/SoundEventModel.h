#pragma once

#include "base/UserError.h"
#include "understanding/listening/EventNetwork.h"

#include <QByteArray>
#include <QStringList>

#include <memory>
#include <mutex>
#include <span>
#include <utility>
#include <vector>

namespace tonequill {

// A network of the user's own that cannot be used, with the reason.
class SoundModelError : public UserError {
public:
    using UserError::UserError;
};

// A network that knows sounds, with the names of what it knows and what its
// scores are worth. Any number of threads at once: each call borrows a network
// of its own, so that answers don't depend on what runs beside it.
class SoundEventModel {
public:
    // Where a score stands for a confidence; between the points it is linear.
    using Curve = std::vector<std::pair<double, double>>;

    // The network that comes with the program.
    static std::shared_ptr<const SoundEventModel> builtIn();

    // A network with the interface of YAMNet: patches in, one score for each
    // line of the class map (index,mid,display_name) out. Without a map, the one
    // *class_map.csv beside the network. Throws SoundModelError.
    static std::shared_ptr<const SoundEventModel> fromFile(const QString& networkPath, const QString& classMapPath = {});

    // Throws std::runtime_error if the bytes are no network of that many labels.
    SoundEventModel(QByteArray onnx, QStringList labels, Curve curve = {{0, 0}, {1, 1}});

    const QStringList& labels() const { return m_labels; }

    // How sure the model is of each label, 0 to 1, for one patch of log-mel
    // frames. REQUIRES: patch.size() == EventNetwork::kPatchValues.
    std::vector<double> confidences(std::span<const float> patch) const;

private:
    std::unique_ptr<EventNetwork> borrow() const;
    void giveBack(std::unique_ptr<EventNetwork> network) const;

    QByteArray m_onnx;
    QStringList m_labels;
    Curve m_curve;
    mutable std::mutex m_mutex; // guards m_idle
    mutable std::vector<std::unique_ptr<EventNetwork>> m_idle;
};

} // namespace tonequill

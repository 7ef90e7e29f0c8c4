#pragma once

#include <QByteArray>

#include <memory>
#include <span>
#include <vector>

namespace tonequill {

// An ONNX network that takes a patch of 96 log-mel frames of 64 bands
// (1 x 1 x 96 x 64) and gives one score between 0 and 1 for each label.
// One thread at a time; every thread may have its own.
class EventNetwork {
public:
    static constexpr int kPatchFrames = 96;
    static constexpr int kPatchValues = kPatchFrames * 64;

    // Throws std::runtime_error, with what is wrong with it in a few words, for
    // bytes that are no such network. Nothing is printed.
    explicit EventNetwork(const QByteArray& onnx);
    ~EventNetwork();
    EventNetwork(EventNetwork&&) noexcept;
    EventNetwork& operator=(EventNetwork&&) noexcept;

    int outputCount() const { return m_outputCount; }

    // REQUIRES: patch.size() == kPatchValues. Throws std::runtime_error.
    std::vector<float> scores(std::span<const float> patch);

private:
    struct State;
    std::unique_ptr<State> m_state;
    int m_outputCount = 0;
};

} // namespace tonequill

#include "understanding/listening/EventNetwork.h"

#include <opencv2/core/utils/logger.hpp>
#include <opencv2/dnn.hpp>

#include <cmath>
#include <mutex>
#include <stdexcept>

namespace tonequill {

namespace {

int saySomewhereElse(int /*status*/, const char* /*function*/, const char* /*message*/, const char* /*file*/, int /*line*/,
                     void* /*context*/)
{
    return 0; // the exception tells it
}

// OpenCV prints to the terminal before it throws, and spreads even small
// networks over all cores, where one is faster than the hand-over.
void quieten()
{
    static std::once_flag once;
    std::call_once(once, [] {
        cv::utils::logging::setLogLevel(cv::utils::logging::LOG_LEVEL_SILENT);
        cv::redirectError(saySomewhereElse);
        cv::setNumThreads(1);
    });
}

} // namespace

struct EventNetwork::State {
    cv::dnn::Net net;
};

EventNetwork::EventNetwork(const QByteArray& onnx) : m_state(std::make_unique<State>())
{
    quieten();
    try {
        m_state->net = cv::dnn::readNetFromONNX(onnx.constData(), static_cast<std::size_t>(onnx.size()));
    } catch (const cv::Exception&) {
        throw std::runtime_error("it is not an ONNX network that can be read");
    }
    if (m_state->net.empty())
        throw std::runtime_error("it holds no network");
    m_state->net.setPreferableBackend(cv::dnn::DNN_BACKEND_OPENCV);
    m_state->net.setPreferableTarget(cv::dnn::DNN_TARGET_CPU);
    const std::vector<float> nothing(kPatchValues, 0.0F);
    m_outputCount = static_cast<int>(scores(nothing).size());
}

EventNetwork::~EventNetwork() = default;
EventNetwork::EventNetwork(EventNetwork&&) noexcept = default;
EventNetwork& EventNetwork::operator=(EventNetwork&&) noexcept = default;

std::vector<float> EventNetwork::scores(std::span<const float> patch)
{
    const int shape[] = {1, 1, kPatchFrames, kPatchValues / kPatchFrames};
    cv::Mat input(4, shape, CV_32F);
    std::copy(patch.begin(), patch.end(), input.ptr<float>());
    try {
        m_state->net.setInput(input);
        const cv::Mat output = m_state->net.forward();
        if (output.type() != CV_32F || output.dims != 2 || output.size[0] != 1)
            throw std::runtime_error("its output is not one row of scores");
        std::vector<float> scores(output.begin<float>(), output.end<float>());
        for (float& score : scores) {
            if (!std::isfinite(score))
                score = 0;
            if (score < -0.001F || score > 1.001F)
                throw std::runtime_error("its scores are not between 0 and 1");
            score = std::clamp(score, 0.0F, 1.0F);
        }
        return scores;
    } catch (const cv::Exception&) {
        throw std::runtime_error("it does not take patches of 96 frames of 64 bands");
    }
}

} // namespace tonequill

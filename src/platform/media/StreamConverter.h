#pragma once

#include "platform/media/AudioBuffer.h"

#include <memory>

namespace tonequill {

// Converts a stream of buffers to another rate and another number of channels.
//
// The resampler is that of a mastering tool: nothing below 95 % of the band is
// touched, and what folds back lies below 24 bits. It has no delay, and the
// length is that which the ratio of the rates implies, rounded. Channels are
// taken in the order usual for their number. More of them are mixed down so that
// full scale in all of them stays full scale; one channel goes to all of several
// as it is.
class StreamConverter {
public:
    // Throws std::bad_alloc. REQUIRES: both formats have 1…64 channels.
    StreamConverter(AudioFormat from, AudioFormat to);
    ~StreamConverter();
    StreamConverter(StreamConverter&&) noexcept;
    StreamConverter& operator=(StreamConverter&&) noexcept;

    // The frames that `buffer` completes; valid until the next call.
    const AudioBuffer& convert(const AudioBuffer& buffer);

    // The frames that were held back. REQUIRES: the stream's end was converted.
    const AudioBuffer& finish();

private:
    struct Resampler;

    AudioBuffer m_result;
    std::unique_ptr<Resampler> m_resampler; // null where both formats are equal
};

} // namespace tonequill

#pragma once

#include "platform/AudioFileSource.h"
#include "platform/Decoder.h"
#include "platform/MediaInput.h"

#include <memory>
#include <vector>

namespace tonequill {

// A compressed sound track, decoded.
class DecodedSource final : public AudioFile::Source {
public:
    // Throws AudioFileError (unsupported). REQUIRES: input->firstAudio().
    explicit DecodedSource(std::unique_ptr<MediaInput> input);

    void seek(qint64 frame) override;
    qint64 read(std::span<float* const> channels, qint64 frames) override;

private:
    void start();
    bool decodeMore();

    std::unique_ptr<MediaInput> m_input;
    std::unique_ptr<Decoder> m_decoder;
    ffmpeg::Packet m_packet;
    int m_streamIndex = 0;
    bool m_isAtEnd = false;
    qint64 m_position = 0; // of the first ready frame
    qint64 m_discard = 0;  // frames still to be decoded and dropped
    AudioBuffer m_ready;   // decoded, not read yet
    qint64 m_readyStart = 0;
};

} // namespace tonequill

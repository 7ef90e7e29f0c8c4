#pragma once

#include "platform/media/AudioFileSource.h"
#include "platform/media/SampleFormats.h"
#include "platform/media/ffmpeg/MediaInput.h"

#include <memory>
#include <vector>

namespace tonequill {

// Plain samples in a file: the header is libavformat's work, the samples are
// read in large blocks and converted at once.
class PcmSource final : public AudioFile::Source {
public:
    // Null if the first sound track of `input` is not plain samples that lie in
    // one piece; `input` is taken over only otherwise.
    // Throws AudioFileError (unsupported).
    static std::unique_ptr<PcmSource> make(std::unique_ptr<MediaInput>& input);

    void seek(qint64 frame) override { m_position = frame; }
    qint64 read(std::span<float* const> channels, qint64 frames) override;

private:
    PcmSource() = default;

    std::unique_ptr<MediaInput> m_input;
    SampleFormat m_samples = SampleFormat::s16le;
    qint64 m_offset = 0; // of frame 0 in the file
    int m_frameBytes = 0;
    qint64 m_position = 0;
    std::vector<std::byte> m_block;
};

} // namespace tonequill

#pragma once

#include "platform/media/OutputFile.h"
#include "platform/media/ffmpeg/Ffmpeg.h"

namespace tonequill {

// An MPEG-4 file with one sound track, written packet by packet.
class M4aFile {
public:
    // `track` describes the packets, whose times are in `timeBase`.
    // Throws AudioFileError (write, unsupported).
    M4aFile(const QString& path, const AVCodecParameters& track, AVRational timeBase);
    ~M4aFile();
    M4aFile(const M4aFile&) = delete;
    M4aFile& operator=(const M4aFile&) = delete;

    // Takes the packet's data. A first time below 0 becomes the track's priming.
    // Throws AudioFileError (write).
    void write(AVPacket* packet);

    // Throws AudioFileError (write).
    void finish();

private:
    struct Callbacks;
    struct IoDeleter {
        void operator()(AVIOContext* io) const;
    };
    struct ContextDeleter {
        void operator()(AVFormatContext* context) const { avformat_free_context(context); }
    };
    void check(int result);

    OutputFile m_file;
    qint64 m_offset = 0; // where libavformat writes next
    qint64 m_size = 0;
    AVRational m_timeBase;
    std::unique_ptr<AVIOContext, IoDeleter> m_io;
    std::unique_ptr<AVFormatContext, ContextDeleter> m_context;
};

} // namespace tonequill

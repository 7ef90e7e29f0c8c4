#pragma once

#include "platform/media/RegularFile.h"
#include "platform/media/ffmpeg/Ffmpeg.h"

#include <QString>

#include <chrono>
#include <memory>

namespace tonequill {

// A media file opened with libavformat, as carefully as a file from anywhere
// deserves: recognised by its content alone, only as one of the containers we
// know, with no way to open a second file or the network, and with a deadline.
class MediaInput {
public:
    using Moment = std::chrono::steady_clock::time_point;

    // Throws AudioFileError: open for what is no regular file, unsupported for
    // what is no audio or video file, or isn't wanted any more.
    // REQUIRES: `progress` outlives the input.
    explicit MediaInput(const QString& path, const Progress* progress = nullptr);
    // Once more from the start, of a file that is open already; nothing is read
    // later than `deadline`.
    MediaInput(std::shared_ptr<const RegularFile> file, Moment deadline);
    ~MediaInput();
    MediaInput(const MediaInput&) = delete;
    MediaInput& operator=(const MediaInput&) = delete;

    const QString& path() const { return m_file->path(); }
    const RegularFile& file() const { return *m_file; }
    const std::shared_ptr<const RegularFile>& sharedFile() const { return m_file; }
    AVFormatContext* context() const { return m_context.get(); }

    // The first sound track, null without one.
    AVStream* firstAudio() const;

    // Leaves out every track but `stream`.
    void selectOnly(const AVStream* stream);

    // Opening and everything up to here must be done by then: a damaged file
    // may keep a demuxer searching, and nobody waits for that.
    Moment deadline() const { return m_deadline; }

    // Allows as much time again as opening had. For a reader that goes on.
    void renewDeadline();

    // Reads the next packet of the selected tracks. False at the end of the file,
    // where it cannot be read any more, past the deadline, and when it isn't wanted.
    bool read(AVPacket* packet);

    // The bytes of the file that belong to sound data start here.
    qint64 dataOffset() const { return m_dataOffset; }

private:
    struct Callbacks;
    void open();
    bool isComplete() const;

    std::shared_ptr<const RegularFile> m_file;
    qint64 m_offset = 0; // where libavformat reads next
    qint64 m_dataOffset = 0;
    Moment m_deadline;
    AVIOContext* m_io = nullptr;
    ffmpeg::FormatContext m_context;
};

} // namespace tonequill

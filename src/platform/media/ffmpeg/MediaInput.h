#pragma once

#include "platform/media/RegularFile.h"
#include "platform/media/ffmpeg/Ffmpeg.h"

#include <QString>

#include <memory>

namespace tonequill {

// A media file opened with libavformat, as carefully as a file from anywhere
// deserves: recognised by its content alone, only as one of the containers we
// know, with no way to open a second file or the network. A damaged file may keep a
// demuxer searching: it gets so many bytes to read and then the end of the file. Bytes
// are counted and not seconds, so that a file is the same sound on every machine.
class MediaInput {
public:
    // Throws AudioFileError: open for what is no regular file, unsupported for
    // what is no audio or video file, or isn't wanted any more.
    // REQUIRES: `progress` outlives the input.
    explicit MediaInput(const QString& path, const Progress* progress = nullptr);
    // Once more from the start, of a file that is open already.
    explicit MediaInput(std::shared_ptr<const RegularFile> file);
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

    // Whether the container is nothing but the packets of one sound track, so that
    // nothing but damage or filling stands between them.
    bool isBare() const;

    // Reads the next packet of the selected tracks. False at the end of the file,
    // where it cannot be read any more, after a search that was too long, and when it
    // isn't wanted.
    bool read(AVPacket* packet);

    // All that was read of the file until now, in bytes; what takes many small steps
    // counts for more.
    qint64 bytesRead() const { return m_read; }

    // The bytes of the file that belong to sound data start here.
    qint64 dataOffset() const { return m_dataOffset; }

private:
    struct Callbacks;
    void open();
    bool isComplete() const;

    std::shared_ptr<const RegularFile> m_file;
    qint64 m_offset = 0; // where libavformat reads next
    qint64 m_dataOffset = 0;
    qint64 m_read = 0;     // bytes …
    qint64 m_mostRead = 0; // … and how many of them are allowed
    AVIOContext* m_io = nullptr;
    ffmpeg::FormatContext m_context;
};

} // namespace tonequill

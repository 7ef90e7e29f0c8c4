#include "platform/media/ffmpeg/M4aFile.h"

#include "platform/media/AudioFile.h"

#include <algorithm>

namespace tonequill {

namespace {

constexpr int kIoBufferBytes = 256 * 1024;

} // namespace

struct M4aFile::Callbacks {
    static int write(void* opaque, uint8_t* from, int bytes)
    {
        auto* self = static_cast<M4aFile*>(opaque);
        if (!self->m_file.tryWrite(from, bytes, self->m_offset))
            return AVERROR(EIO);
        self->m_offset += bytes;
        self->m_size = std::max(self->m_size, self->m_offset);
        return bytes;
    }

    static int64_t seek(void* opaque, int64_t offset, int whence)
    {
        auto* self = static_cast<M4aFile*>(opaque);
        switch (whence & ~AVSEEK_FORCE) {
        case AVSEEK_SIZE:
            return self->m_size;
        case SEEK_SET:
            break;
        case SEEK_CUR:
            offset += self->m_offset;
            break;
        case SEEK_END:
            offset += self->m_size;
            break;
        default:
            return AVERROR(EINVAL);
        }
        if (offset < 0)
            return AVERROR(EINVAL);
        self->m_offset = offset;
        return offset;
    }
};

void M4aFile::IoDeleter::operator()(AVIOContext* io) const
{
    av_freep(&io->buffer);
    avio_context_free(&io);
}

M4aFile::M4aFile(const QString& path, const AVCodecParameters& track, AVRational timeBase) : m_file(path), m_timeBase(timeBase)
{
    ffmpeg::configure();
    auto* buffer = static_cast<unsigned char*>(av_malloc(kIoBufferBytes));
    if (!buffer)
        throw std::bad_alloc();
    m_io.reset(avio_alloc_context(buffer, kIoBufferBytes, 1, this, nullptr, Callbacks::write, Callbacks::seek));
    if (!m_io) {
        av_free(buffer);
        throw std::bad_alloc();
    }
    AVFormatContext* context = nullptr;
    if (avformat_alloc_output_context2(&context, nullptr, "ipod", nullptr) < 0)
        throw AudioFileError(AudioFileError::Kind::unsupported, path);
    m_context.reset(context);
    context->pb = m_io.get();
    AVStream* stream = avformat_new_stream(context, nullptr);
    if (!stream || avcodec_parameters_copy(stream->codecpar, &track) < 0)
        throw std::bad_alloc();
    stream->codecpar->codec_tag = 0; // the other container's
    stream->time_base = timeBase;
    // The edit list counts in the movie's units: with the usual 1/1000 second the
    // sound would not end where it ended.
    av_opt_set_int(context->priv_data, "movie_timescale", timeBase.den, 0);
    check(avformat_write_header(context, nullptr));
}

M4aFile::~M4aFile() = default;

void M4aFile::check(int result)
{
    if (result < 0 || m_io->error < 0)
        m_file.throwFailure();
}

void M4aFile::write(AVPacket* packet)
{
    packet->stream_index = 0;
    av_packet_rescale_ts(packet, m_timeBase, m_context->streams[0]->time_base);
    check(av_write_frame(m_context.get(), packet));
}

void M4aFile::finish()
{
    check(av_write_trailer(m_context.get()));
    avio_flush(m_io.get());
    check(0);
    m_file.finish();
}

} // namespace tonequill

#include "platform/media/ffmpeg/MediaInput.h"

#include "platform/media/AudioFile.h"

#include <QtEndian>

#include <algorithm>
#include <array>
#include <span>
#include <string>
#include <string_view>

namespace tonequill {

namespace {

constexpr int kIoBufferBytes = 64 * 1024;
constexpr int kPaddedIoBufferBytes = kIoBufferBytes + AV_INPUT_BUFFER_PADDING_SIZE;

// What a demuxer may read to open a file: an index may be large.
constexpr qint64 kOpeningBytes = 64LL * 1024 * 1024;

// … and between two packets: of a bare stream some filling, of another file as much
// as lies between two of its sounds, which is at most all of it.
constexpr qint64 kBareBytes = 16LL * 1024 * 1024;
constexpr qint64 kPacketBytes = 64LL * 1024 * 1024;

// A step in a file counts as much as that.
constexpr qint64 kStepBytes = 4096;

// Containers of sound and video by libavformat's names. What is not here is
// refused, above all what refers to other files (play lists, concatenation
// scripts, image sequences) and what takes any text (subtitles, text modes).
constexpr std::string_view kContainers =
    "|aac|ac3|aiff|amr|ape|asf|au|avi|caf|dsf|dts|eac3|flac|flv|iff|matroska,webm|mlp|mov,mp4,m4a,3gp,3g2,mj2|mp3|mpc|mpc8|"
    "mpeg|mpegts|mxf|ogg|rm|sox|tak|truehd|tta|voc|w64|wav|wv|";

constexpr std::string_view kBareContainers = "|aac|ac3|amr|dts|eac3|mlp|mp3|truehd|";

bool isAmong(std::string_view containers, const char* name)
{
    return containers.find('|' + std::string(name) + '|') != std::string_view::npos;
}

// A file without any name: libavformat is to look at the bytes alone.
constexpr const char* kNoName = "";

// Up to this score a container is only guessed from what looks like its frames
// somewhere in the file, which happens in programs and archives, too.
constexpr int kGuess = AVPROBE_SCORE_EXTENSION / 2;

// Whether the file begins with what the container begins with: short files are
// guessed right, and this tells them from the others.
bool beginsLike(const RegularFile& file, std::string_view container)
{
    std::array<uint8_t, 4> bytes = {};
    if (file.read(bytes.data(), bytes.size(), 0) < static_cast<qint64>(bytes.size()))
        return false;
    const quint32 word = qFromBigEndian<quint32>(bytes.data());
    if (container == "mp3")
        return word >> 21 == 0x7FF || word >> 8 == 0x494433; // a frame, or "ID3"
    if (container == "ac3" || container == "eac3")
        return word >> 16 == 0x0B77;
    if (container == "mpeg")
        return word == 0x000001BA;
    return container == "mpegts" && word >> 24 == 0x47;
}

int refuseToOpen(AVFormatContext*, AVIOContext**, const char*, int, AVDictionary**)
{
    return AVERROR(EPERM);
}

} // namespace

struct MediaInput::Callbacks {
    static int read(void* opaque, uint8_t* into, int bytes)
    {
        auto* self = static_cast<MediaInput*>(opaque);
        self->m_read += kStepBytes;
        if (isOver(opaque))
            return AVERROR_EXIT;
        const qint64 got = self->m_file->read(into, bytes, self->m_offset);
        if (got < 0)
            return AVERROR(EIO);
        if (got == 0)
            return AVERROR_EOF;
        self->m_offset += got;
        self->m_read += got;
        return static_cast<int>(got);
    }

    static int64_t seek(void* opaque, int64_t offset, int whence)
    {
        auto* self = static_cast<MediaInput*>(opaque);
        if ((whence & AVSEEK_SIZE) != 0)
            return self->m_file->size();
        switch (whence & ~AVSEEK_FORCE) {
        case SEEK_SET:
            break;
        case SEEK_CUR:
            offset += self->m_offset;
            break;
        case SEEK_END:
            offset += self->m_file->size();
            break;
        default:
            return AVERROR(EINVAL);
        }
        if (offset < 0)
            return AVERROR(EINVAL);
        self->m_offset = offset;
        return offset;
    }

    static int isOver(void* opaque)
    {
        const auto* self = static_cast<MediaInput*>(opaque);
        return self->m_file->isCancelled() || self->m_read > self->m_mostRead ? 1 : 0;
    }
};

MediaInput::MediaInput(const QString& path, const Progress* progress)
    : MediaInput(std::make_shared<const RegularFile>(path, progress))
{}

MediaInput::MediaInput(std::shared_ptr<const RegularFile> file) : m_file(std::move(file)), m_mostRead(kOpeningBytes)
{
    ffmpeg::configure();
    try {
        open();
    } catch (...) {
        m_context.reset();
        if (m_io)
            av_freep(&m_io->buffer);
        avio_context_free(&m_io);
        throw;
    }
}

MediaInput::~MediaInput()
{
    m_context.reset();
    av_freep(&m_io->buffer);
    avio_context_free(&m_io);
}

void MediaInput::open()
{
    const AudioFileError unsupported(AudioFileError::Kind::unsupported, path());
    if (m_file->size() == 0)
        throw unsupported;

    auto* buffer = static_cast<unsigned char*>(av_malloc(kPaddedIoBufferBytes));
    if (!buffer)
        throw std::bad_alloc();
    m_io = avio_alloc_context(buffer, kIoBufferBytes, 0, this, Callbacks::read, nullptr, Callbacks::seek);
    if (!m_io) {
        av_free(buffer);
        throw std::bad_alloc();
    }
    const AVInputFormat* container = nullptr;
    const int score = av_probe_input_buffer2(m_io, &container, kNoName, nullptr, 0, 0);
    if (score < 0 || !container || (score <= kGuess && !beginsLike(*m_file, container->name)))
        throw unsupported;
    if (!isAmong(kContainers, container->name))
        throw unsupported;

    AVFormatContext* context = avformat_alloc_context();
    if (!context)
        throw std::bad_alloc();
    context->pb = m_io;
    context->io_open = refuseToOpen;
    context->interrupt_callback = {Callbacks::isOver, this};
    if (avformat_open_input(&context, kNoName, container, nullptr) < 0)
        throw unsupported; // which has freed the context
    m_context.reset(context);
    m_dataOffset = avio_tell(m_io);
    if (!isComplete() && avformat_find_stream_info(context, nullptr) < 0)
        throw unsupported;
}

// Whether the header has told all tracks: where it has, nothing needs to be
// read, let alone decoded, to find out.
bool MediaInput::isComplete() const
{
    if ((m_context->ctx_flags & AVFMTCTX_NOHEADER) != 0 || m_context->nb_streams == 0)
        return false;
    const std::span streams(m_context->streams, m_context->nb_streams);
    return std::all_of(streams.begin(), streams.end(), [](const AVStream* stream) {
        const AVCodecParameters& parameters = *stream->codecpar;
        if (parameters.codec_type != AVMEDIA_TYPE_AUDIO)
            return parameters.codec_type != AVMEDIA_TYPE_UNKNOWN;
        return parameters.codec_id != AV_CODEC_ID_NONE && parameters.sample_rate > 0 && parameters.ch_layout.nb_channels > 0;
    });
}

AVStream* MediaInput::firstAudio() const
{
    const std::span streams(m_context->streams, m_context->nb_streams);
    const auto found = std::find_if(streams.begin(), streams.end(),
                                    [](const AVStream* stream) { return stream->codecpar->codec_type == AVMEDIA_TYPE_AUDIO; });
    return found == streams.end() ? nullptr : *found;
}

void MediaInput::selectOnly(const AVStream* selected)
{
    for (AVStream* stream : std::span(m_context->streams, m_context->nb_streams))
        stream->discard = stream == selected ? AVDISCARD_DEFAULT : AVDISCARD_ALL;
}

bool MediaInput::isBare() const
{
    return isAmong(kBareContainers, m_context->iformat->name);
}

bool MediaInput::read(AVPacket* packet)
{
    m_mostRead = m_read + (isBare() ? kBareBytes : m_file->size() + kPacketBytes);
    return av_read_frame(m_context.get(), packet) >= 0;
}

} // namespace tonequill

#include "platform/media/AudioFile.h"

#include "platform/media/ffmpeg/DecodedSource.h"
#include "platform/media/ffmpeg/WhileWanted.h"
#include "platform/media/pcm/PcmSource.h"

#include <QFileInfo>

#include <algorithm>
#include <array>

namespace tonequill {

using namespace Qt::StringLiterals;

namespace {

QString sentence(AudioFileError::Kind kind, const QString& fileName, const QString& detail)
{
    const QString name = u"“"_s + fileName + u"”"_s;
    const auto tell = [&] {
        switch (kind) {
        case AudioFileError::Kind::open:
            return name + u" couldn't be opened"_s;
        case AudioFileError::Kind::unsupported:
            return name + u" isn't a sound or video file that can be read"_s;
        case AudioFileError::Kind::read:
            return name + u" couldn't be read"_s;
        case AudioFileError::Kind::seek:
            return name + u" couldn't be read from the chosen place"_s;
        case AudioFileError::Kind::write:
            return name + u" couldn't be saved"_s;
        case AudioFileError::Kind::noMemory:
            return u"There is not enough memory for "_s + name;
        }
        Q_UNREACHABLE();
    };
    return detail.isEmpty() ? tell() + u'.' : tell() + u": "_s + detail + u'.';
}

std::unique_ptr<AudioFile::Source> openSource(const QString& path, const Progress* progress)
{
    try {
        auto input = std::make_unique<MediaInput>(path, progress);
        if (!input->firstAudio())
            throw AudioFileError(AudioFileError::Kind::unsupported, path);
        if (auto plain = PcmSource::make(input))
            return plain;
        return std::make_unique<DecodedSource>(std::move(input));
    } catch (const std::bad_alloc&) {
        throw AudioFileError(AudioFileError::Kind::noMemory, path);
    }
}

} // namespace

AudioFileError::AudioFileError(Kind kind, const QString& path, const QString& detail)
    : AudioFileError(kind, Name{QFileInfo(path).fileName()}, detail)
{}

AudioFileError::AudioFileError(Kind kind, const Name& name, const QString& detail)
    : UserError(sentence(kind, name.text, detail)),
      m_kind(kind),
      m_detail(detail)
{}

AudioFile::AudioFile(const QString& path, const Progress* progress)
    : m_source(whileWanted(progress, [&] { return openSource(path, progress); })),
      m_progress(progress)
{}

AudioFile::~AudioFile() = default;
AudioFile::AudioFile(AudioFile&&) noexcept = default;
AudioFile& AudioFile::operator=(AudioFile&&) noexcept = default;

AudioFormat AudioFile::format() const
{
    return m_source->format();
}

qint64 AudioFile::length() const
{
    return m_source->length();
}

qint64 AudioFile::framePosition() const
{
    return m_position;
}

void AudioFile::seek(qint64 frame)
{
    if (frame == m_position)
        return;
    whileWanted(m_progress, [&] { m_source->seek(std::min(frame, length())); });
    m_position = frame;
}

qint64 AudioFile::read(AudioBuffer& into, qint64 frames)
{
    Q_ASSERT(into.format() == format() && frames >= 1);
    const qint64 wanted = std::min({frames, into.capacityFrames(), length() - m_position});
    qint64 got = 0;
    if (wanted > 0) {
        std::array<float*, kMaxChannels> channels = {};
        for (int channel = 0; channel < into.channelCount(); ++channel)
            channels[static_cast<std::size_t>(channel)] = into.channelCapacity(channel).data();
        const auto used = std::span(channels).first(static_cast<std::size_t>(into.channelCount()));
        got = whileWanted(m_progress, [&] { return m_source->read(used, wanted); });
    }
    m_position += got;
    into.setFrameLength(got);
    return got;
}

} // namespace tonequill

#include "platform/media/MediaTracks.h"

#include "platform/media/ffmpeg/MediaInput.h"
#include "platform/media/ffmpeg/WhileWanted.h"

#include <span>

namespace tonequill {

MediaTracks mediaTracks(const QString& path, const Progress* progress)
{
    const auto input = whileWanted(progress, [&] { return std::make_unique<const MediaInput>(path, progress); });
    MediaTracks tracks;
    for (const AVStream* stream : std::span(input->context()->streams, input->context()->nb_streams)) {
        if (stream->codecpar->codec_type == AVMEDIA_TYPE_AUDIO)
            ++tracks.audioCount;
        else if (stream->codecpar->codec_type == AVMEDIA_TYPE_VIDEO &&
                 (stream->disposition & (AV_DISPOSITION_ATTACHED_PIC | AV_DISPOSITION_TIMED_THUMBNAILS)) == 0)
            ++tracks.videoCount;
    }
    return tracks;
}

} // namespace tonequill

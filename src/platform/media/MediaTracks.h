#pragma once

#include "base/Progress.h"
#include "platform/media/AudioFile.h"

#include <QString>

namespace tonequill {

// The tracks of a media file, as far as the library asks. A cover picture
// inside a music file is not a video track.
struct MediaTracks {
    int audioCount = 0;
    int videoCount = 0;
};

// Reads the tracks from the container, without decoding.
// Throws AudioFileError (open, unsupported): a file that is no media at all, a
// folder, an image or text. Throws Cancelled.
MediaTracks mediaTracks(const QString& path, const Progress* progress = nullptr);

// Writes the first sound track of `source` to `destination` as AAC in MPEG-4:
// copied as it is where it is AAC already, encoded otherwise. More than two
// channels are mixed down to two when encoded. A failure leaves nothing at
// `destination`. Throws AudioFileError (open, unsupported, read, write) or Cancelled.
void extractFirstAudio(const QString& source, const QString& destination, Progress* progress = nullptr);

} // namespace tonequill

// Any bytes as a sound file: refused or read from anywhere, with every sample a
// number and no position beyond the end.

#include "audio/analysis/AudioAnalyzer.h"
#include "platform/media/AudioFile.h"
#include "platform/media/MediaTracks.h"

#include <QString>

#include <algorithm>
#include <cmath>
#include <cstdlib>

#include <sys/mman.h>
#include <unistd.h>

using namespace tonequill;

namespace {

constexpr qint64 kMaxFrames = 200'000; // a few bytes may promise hours of silence

// A file in memory that has a path. A descriptor's link leads to a regular file.
class MemoryFile {
public:
    MemoryFile(const std::uint8_t* data, std::size_t size) : m_descriptor(memfd_create("fuzz", MFD_CLOEXEC))
    {
        if (m_descriptor < 0 || write(m_descriptor, data, size) != static_cast<ssize_t>(size))
            std::abort();
    }
    ~MemoryFile() { close(m_descriptor); }
    MemoryFile(const MemoryFile&) = delete;
    MemoryFile& operator=(const MemoryFile&) = delete;

    QString path() const { return QStringLiteral("/proc/self/fd/%1").arg(m_descriptor); }

private:
    int m_descriptor;
};

AudioBuffer readStart(AudioFile& file)
{
    AudioBuffer start(file.format(), std::min(file.length(), kMaxFrames));
    if (start.capacityFrames() > 0)
        file.read(start);
    return start;
}

void checkSamples(const AudioBuffer& buffer)
{
    for (int channel = 0; channel < buffer.channelCount(); ++channel)
        for (const float sample : buffer.channel(channel))
            if (!std::isfinite(sample))
                std::abort();
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    const MemoryFile memory(data, size);
    try {
        mediaTracks(memory.path());
    } catch (const AudioFileError&) {
    }
    try {
        AudioFile file(memory.path());
        if (file.channelCount() > 8)
            return 0; // only slower
        const AudioBuffer start = readStart(file);
        checkSamples(start);
        AudioBuffer range(file.format(), 700);
        for (const qint64 part : {3, 1, 4, 2}) {
            file.seek(std::min(file.length(), kMaxFrames) * part / 4);
            file.read(range);
            checkSamples(range);
            if (file.framePosition() > file.length())
                std::abort();
        }
        if (file.length() <= kMaxFrames) {
            const AudioAnalysis analysis = AudioAnalyzer::analyze(memory.path());
            if (analysis.rms.size() != analysis.peak.size() ||
                !std::all_of(analysis.rms.begin(), analysis.rms.end(), [](float value) { return std::isfinite(value); }))
                std::abort();
        }
    } catch (const AudioFileError&) {
    } catch (const AnalysisError&) {
    }
    return 0;
}

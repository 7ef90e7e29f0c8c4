#pragma once

#include "audio/effects/EffectSettings.h"
#include "base/Progress.h"
#include "base/UserError.h"
#include "platform/media/AudioBuffer.h"

#include <QString>

namespace tonequill {

// Why a sound could not be rendered.
class RenderError : public UserError {
public:
    enum class Kind { engine, empty, memory };
    static RenderError engine(const QString& reason);
    static RenderError empty();
    static RenderError memory();
    Kind kind() const { return m_kind; }

private:
    RenderError(Kind kind, const QString& reason);
    Kind m_kind;
};

// The one pipeline of effects, for the editor, for files and for every clip of
// the studio. No state: any number of renders may run at once, on any threads,
// and the same input gives the same bytes.
//
// Every operation throws RenderError::memory where a buffer does not fit, and
// Cancelled; what it worked on is good for nothing then. A start, end or fade
// that is not a finite number and a fade below 0 are mistakes of the caller, which
// stop the program.
namespace EffectRenderer {

// The one internal format.
inline constexpr AudioFormat format{48'000, 2};

// The whole pipeline in its fixed order: read, reverse, engine, voice, gain and
// fades. Throws RenderError (empty, memory, engine) and AudioFileError.
AudioBuffer renderBuffer(const QString& path, double startSeconds, double endSeconds, const EffectSettings& settings,
                         Progress* progress = nullptr);

// The same, written by writeTemp(). The caller removes the file.
QString render(const QString& path, double startSeconds, double endSeconds, const EffectSettings& settings,
               Progress* progress = nullptr);

// The range in the internal format; it is cut to the file.
// Throws RenderError (empty: nothing is left of it) and AudioFileError.
AudioBuffer read(const QString& path, double startSeconds, double endSeconds, const Progress* progress = nullptr);

void reverse(AudioBuffer& buffer, const Progress* progress = nullptr);

// Speed and pitch, then echo, then reverb, with their tails, cut behind the last
// audible frame. At most ten minutes come back. REQUIRES: buffer is in the
// internal format. Throws RenderError::engine.
AudioBuffer runEngine(const AudioBuffer& buffer, const EffectSettings& settings, Progress* progress = nullptr);

// Keeps 10 ms behind the last frame that reaches 0.0005 in one of the channels.
void trimSilence(AudioBuffer& buffer, const Progress* progress = nullptr);

// Gain, then linear fades. Where the fades overlap, both apply.
void applyGainAndFades(AudioBuffer& buffer, const EffectSettings& settings, const Progress* progress = nullptr);

// Writes a 32-bit float WAV of a fresh name to the temporary folder and gives
// its path. Throws AudioFileError (write).
QString writeTemp(const AudioBuffer& buffer, const Progress* progress = nullptr);

// Removes files of writeTemp() that nobody came back for: those of a crash. It
// leaves what is younger than an hour, which another running copy may be using.
void sweepStrays();

} // namespace EffectRenderer
} // namespace tonequill

#pragma once

#include "base/Progress.h"
#include "base/UserError.h"
#include "platform/media/AudioBuffer.h"

#include <QString>
#include <QStringView>

#include <array>
#include <optional>

namespace tonequill {

// What a finished file is. The order is the one of the menus.
enum class ExportPreset { anyEditor, shortForm, studio };

inline constexpr std::array kExportPresets = {ExportPreset::anyEditor, ExportPreset::shortForm, ExportPreset::studio};

// The preset's id, which is also how it is stored.
QString idOf(ExportPreset preset);
std::optional<ExportPreset> exportPresetFromId(QStringView id);

QString titleOf(ExportPreset preset);
QString descriptionOf(ExportPreset preset);
QString fileExtensionOf(ExportPreset preset); // without the dot

struct ExportRequest {
    QString source;
    double start = 0; // seconds; below 0 counts as 0
    double end = 0;   // seconds; behind the file counts as its end
    ExportPreset preset = ExportPreset::anyEditor;
    double fadeIn = 0;  // seconds
    double fadeOut = 0; // seconds
};

// What was written.
struct ExportResult {
    qint64 frames = 0;
    double sampleRate = 0;
    int channels = 0;

    bool operator==(const ExportResult&) const = default;
};

// Why a part could not be made into a file.
class ExportError : public UserError {
public:
    enum class Kind { conversionFailed, emptyRange, bufferFailed };
    static ExportError conversionFailed(const QString& reason);
    static ExportError emptyRange();
    static ExportError bufferFailed();
    Kind kind() const { return m_kind; }

private:
    ExportError(Kind kind, const QString& reason);
    Kind m_kind;
};

// Makes finished files for editing programs: 48 kHz, one or two channels. No
// state; any thread; the same input gives the same bytes.
namespace AudioExporter {

// Cuts the range out of the source and writes it to `path`, under exactly that
// name. The file appears there complete or not at all: it is written beside it
// and renamed. A failure leaves what was at `path`, and so does a cancel. The
// source may be the destination. Throws ExportError, AudioFileError and Cancelled.
ExportResult exportRange(const ExportRequest& request, const QString& path, const Progress* progress = nullptr);

// The buffer in another format: resampled without a delay to the length that the
// ratio of the rates implies, rounded; more channels mixed down without
// clipping; one channel on both sides of two. An equal format gives the same
// buffer back. Throws ExportError (conversionFailed, bufferFailed) and Cancelled.
AudioBuffer convert(AudioBuffer buffer, AudioFormat to, const Progress* progress = nullptr);

// Linear fades of at most half the sound each, then the preset's level: a peak
// of -1 dBFS, raised by at most 24 dB; silence and `studio` are left as they are.
// Throws Cancelled; the buffer is good for nothing then.
void process(AudioBuffer& buffer, ExportPreset preset, double fadeIn, double fadeOut, const Progress* progress = nullptr);

} // namespace AudioExporter
} // namespace tonequill

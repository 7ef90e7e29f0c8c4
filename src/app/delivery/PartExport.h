#pragma once

#include "audio/effects/EffectSettings.h"
#include "audio/export/AudioExporter.h"
#include "editor/EditorModel.h"

#include <QStringList>

#include <vector>

// How parts of a sound become files. Any thread, but for effectsFor().
namespace tonequill::PartExport {

// A part of 20 milliseconds or less is not worth a file.
std::vector<EditorModel::Part> usable(std::vector<EditorModel::Part> parts);

// What the files of the parts are called, in their order: the sound's name for
// one; for more the part's label, or "Part 1", behind the sound's name if that
// says anything, and counted where a label comes again.
QStringList names(const SoundItem& item, const std::vector<EditorModel::Part>& parts);

// The effects of the editor belong to the sound that is open in it.
EffectSettings effectsFor(const EditorModel& editor, const SoundItem& item);

// The range of `source` (seconds) as a finished file for any editor, with the
// effects and short fades against clicks. What is at `path` afterwards is
// AudioExporter's word. Throws ExportError, RenderError, AudioFileError and Cancelled.
ExportResult exportWithEffects(const QString& source, double start, double end, const EffectSettings& effects,
                               const QString& path, Progress* progress = nullptr);

// The same as a new file in `folder`, which is made if it is missing. It is finished
// aside and then gets the first name for the sound that is free: no file is ever
// replaced. What fails is told of `name`. Throws FileError as well.
struct NewFile {
    QString path;
    ExportResult result;
};
NewFile exportInto(const QString& folder, const QString& name, const QString& source, double start, double end,
                   const EffectSettings& effects, Progress* progress = nullptr);

} // namespace tonequill::PartExport

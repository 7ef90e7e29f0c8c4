#pragma once

#include <QByteArray>
#include <QMap>
#include <QString>

#include <optional>

namespace tonequill {

// What was put in the Auto Folder for one sound.
struct AutoFolderEntry {
    QString file; // in the folder, as last written
    QString name; // the sound's at that moment

    bool operator==(const AutoFolderEntry&) const = default;
};

// By the sound's id in its canonical upper-case text.
using AutoFolderManifest = QMap<QString, AutoFolderEntry>;

// { "<id>": { "file": "…", "name": "…" }, … }. None for bytes that are no manifest.
QByteArray encodeManifest(const AutoFolderManifest& manifest);
std::optional<AutoFolderManifest> decodeManifest(const QByteArray& json);

// What a run has done so far, kept beside the settings until the manifest has it.
// A program that is ended in the middle of a run finds it at its next start, so
// that no file is delivered twice. One caller at a time, on any thread.
class AutoFolderJournal {
public:
    explicit AutoFolderJournal(QString path) : m_path(std::move(path)) {}

    // `folder` is the path that the run delivers to. False if it can't be written.
    bool append(const QString& folder, const QString& key, const AutoFolderEntry& entry) const;
    // Sees to it that the disk has room for that line. False if it has none.
    bool reserve(const QString& folder, const QString& key, const AutoFolderEntry& entry) const;
    // What was done in that folder. A line that was cut off is left out.
    AutoFolderManifest read(const QString& folder) const;
    void clear() const;

private:
    QString m_path;
};

} // namespace tonequill

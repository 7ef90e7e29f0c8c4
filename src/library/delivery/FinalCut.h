#pragma once

#include "base/Clock.h"
#include "platform/desktop/OtherApps.h"

#include <QList>
#include <QString>

// Hands sounds to Final Cut Pro: a small FCPXML document names the files and
// lists them in one event, and the application opens it. Without state.
namespace tonequill::FinalCut {

// One exported audio file; its figures are measured from the file.
struct Clip {
    QString name; // as the application shows it
    QString file; // absolute path
    qint64 frames = 0;
    double sampleRate = 0;
    int channels = 0;

    // A clip whose name holds only what XML 1.0 can: anything else is left out.
    static Clip make(const QString& name, const QString& file, qint64 frames, double sampleRate, int channels);
};

bool isInstalled(const OtherApps& apps);

// The document: assets of the clips in their order, and an event that lists them.
// REQUIRES: the names come from Clip::make(), and eventName can stand in XML.
QString fcpxml(const QList<Clip>& clips, const QString& eventName);

// Writes the document into `folder`, named by the second, and gives its path.
// Throws FileError. Any thread.
QString write(const QList<Clip>& clips, const QString& folder, const QString& eventName, const Clock& clock);

// Opens a document with the application; true then. Where the application isn't
// there, or not any more, the document is shown to the user and the result is false.
bool send(const QString& document, OtherApps& apps);

} // namespace tonequill::FinalCut

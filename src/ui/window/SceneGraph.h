#pragma once

#include <QString>

// How the window's pictures come about.
namespace tonequill::SceneGraph {

// Whether there is graphics hardware that this user may draw with, by the devices
// that the system shows. OpenGL itself is not asked: where it has no hardware it
// brings a compiler along, to compute on the processor what the hardware would do.
bool hasHardware(const QString& devices = QStringLiteral("/dev"));

// Without hardware Qt Quick draws by itself, which looks the same: only what has
// changed, where OpenGL would compute the whole window for each picture, and in
// half the memory. What the environment asks for goes first. REQUIRES: no window yet.
void choose();

} // namespace tonequill::SceneGraph

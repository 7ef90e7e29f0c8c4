#pragma once

#include <QJsonObject>
#include <QStringList>

namespace tonequill {

class AppModel;
class LibraryLock;

// Work that a second program hands to the one that owns the library.
namespace HandedOver {

// What a second start sends: its files, or none to bring the window to the front.
QJsonObject addMessage(const QStringList& files);

// Does what the message asks: {"add": [absolute paths]}, {"delete": [ids]} or
// {"name": [ids]}, for smart names. Answers {"ok": true}, or {"ok": false} for anything
// else, and for what could not be deleted, with "error" as the sentence then.
QJsonObject carryOut(AppModel& model, const QJsonObject& message);

// Sends the message to the owner of the library; while the owner is still
// starting it is asked again, for up to `patienceMs`. False if it never took it.
bool sendToOwner(const LibraryLock& lock, const QJsonObject& message, int patienceMs);

} // namespace HandedOver
} // namespace tonequill

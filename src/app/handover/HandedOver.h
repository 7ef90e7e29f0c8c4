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
// {"name": [ids]}, for smart names. Answers {"ok": true}, or {"ok": false} for anything else.
QJsonObject carryOut(AppModel& model, const QJsonObject& message);

// How long a second program waits for an owner that neither listens nor goes, and
// how long for the answer of one that listens: the answer comes once its window stands.
constexpr int kPatienceForOwnerMs = 10000;
constexpr int kPatienceForAnswerMs = 60000;

// Sends the message to the owner of the library and waits for its answer. False if
// it doesn't take it; then it will not do so later either. Blocks.
bool sendToOwner(const LibraryLock& lock, const QJsonObject& message, int patienceMs = kPatienceForAnswerMs);

} // namespace HandedOver
} // namespace tonequill

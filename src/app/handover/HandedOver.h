#pragma once

#include <QJsonObject>
#include <QStringList>

#include <optional>

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

// How long a second program waits for an owner that neither listens nor goes, and
// how long for the answer of one that listens: the answer comes once its window stands.
constexpr int kPatienceForOwnerMs = 10000;
constexpr int kPatienceForAnswerMs = 60000;

// Sends the message to the owner of the library and gives its answer; none if it doesn't
// take it. Blocks.
std::optional<QJsonObject> answerOfOwner(const LibraryLock& lock, const QJsonObject& message,
                                         int patienceMs = kPatienceForAnswerMs);

// The same, for whoever needs no more than whether it was taken. False if
// it doesn't take it; then it will not do so later either. Blocks.
bool sendToOwner(const LibraryLock& lock, const QJsonObject& message, int patienceMs = kPatienceForAnswerMs);

} // namespace HandedOver
} // namespace tonequill

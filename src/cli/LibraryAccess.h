#pragma once

#include "base/Clock.h"
#include "library/store/LibraryStore.h"
#include "platform/process/LibraryLock.h"

#include <QJsonObject>

#include <functional>
#include <memory>
#include <optional>

namespace tonequill::cli {

// A library opened for changes, together with the lock that makes this program
// its only writer.
struct OwnLibrary {
    SystemClock clock;
    Workers workers;
    std::unique_ptr<LibraryLock> lock;
    std::unique_ptr<LibraryStore> store;
};

// Opens the library for changes, with what a killed program left swept away.
// None while another program owns it: one that listens, or one that took longer
// than ten seconds to start or to finish.
std::unique_ptr<OwnLibrary> ownLibrary(const QString& folder);

// Gives a change to the program that owns the library. None if it was taken; else
// says on stderr what went wrong, and returns the exit code to end with.
std::optional<int> handToOwner(const QString& folder, const QJsonObject& message);

// The sound that a word of the command line means: its identity, the beginning
// of one (8 characters and more), or its name in any case. None, and a sentence
// on stderr, unless it is exactly one.
std::optional<SoundItem> soundMeant(const QList<SoundItem>& items, const QString& word);
// The same for several words; none unless all of them are found.
std::optional<QList<SoundItem>> soundsMeant(const QList<SoundItem>& items, const QStringList& words);

} // namespace tonequill::cli

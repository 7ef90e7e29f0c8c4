#pragma once

#include <QStringList>

#include <span>

namespace tonequill::cli {

// How a command ended; the process' exit status.
enum ExitCode : int {
    kDone = 0,
    kFailed = 1,      // something, or some of it, could not be done; the sentence is on stderr
    kUsage = 2,       // the command line was wrong
    kLibraryBusy = 3, // another program is writing to the library
};

// One word after "tonequill-cli".
struct Command {
    const char* name;
    const char* arguments; // as the help shows them
    const char* summary;   // one line
    int (*run)(const QStringList& arguments);
};

// In the order of the help.
std::span<const Command> commands();

int add(const QStringList& arguments);
int list(const QStringList& arguments);
int search(const QStringList& arguments);
int find(const QStringList& arguments);
int show(const QStringList& arguments);
int deleteSounds(const QStringList& arguments);
int credits(const QStringList& arguments);
int name(const QStringList& arguments);
int analyze(const QStringList& arguments);
int peaks(const QStringList& arguments);
int listen(const QStringList& arguments);
int parts(const QStringList& arguments);
int exportPart(const QStringList& arguments);
int render(const QStringList& arguments);
int mix(const QStringList& arguments);
int save(const QStringList& arguments);
int fcpxml(const QStringList& arguments);
int sync(const QStringList& arguments);

} // namespace tonequill::cli

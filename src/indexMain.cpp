// tonequill-index: makes catalogues of free sounds, and looks into them.

#include "base/UserError.h"
#include "indexing/Commands.h"

#include <QCoreApplication>

using namespace Qt::StringLiterals;
using namespace tonequill;

namespace {

const auto kHelp = uR"(tonequill-index makes the catalogue of free sounds that Tonequill searches offline.

Usage: tonequill-index build [--output FILE | --install] SOURCE…
       tonequill-index build [--output FILE | --install] --api [--tags LIST] [--pages N] [--pace SECONDS] [--url ADDRESS]
       tonequill-index merge OUTPUT CATALOGUE…
       tonequill-index check [FILE] [--json]
       tonequill-index stats [FILE] [--json]

build takes JSON Lines (.jsonl), CSV with a header (.csv) and catalogues (.bin), or walks the public search
  for free sounds by the tags of all topics, or of --tags, separated by commas: up to --pages (12) of each, one
  request in --pace (3.5) seconds. A walk that was ended goes on where it was. --output is sound-index.bin
  unless given; --install writes where the program looks.
merge puts catalogues together; of sounds with one identifier the first counts.
check tells what the program would load and skip; without FILE, of the catalogue that it finds.
stats tells what is in it.

Exit status: 0 done, 1 failed or not all of it done, 2 wrong use.)"_s;

int run(const QString& command, const QStringList& arguments)
{
    if (command == u"build")
        return indexing::build(arguments);
    if (command == u"merge")
        return indexing::merge(arguments);
    if (command == u"check")
        return indexing::check(arguments);
    if (command == u"stats")
        return indexing::stats(arguments);
    indexing::complain(command.isEmpty() ? u"Try: tonequill-index --help"_s
                                         : u"There is no command “%1”. Try: tonequill-index --help"_s.arg(command));
    return 2;
}

} // namespace

int main(int argc, char** argv)
{
    const QCoreApplication application(argc, argv);
    const QStringList arguments = QCoreApplication::arguments().sliced(1);
    if (arguments.contains(u"--help"_s) || arguments.contains(u"-h"_s)) {
        for (const QString& line : QString(kHelp).split(u'\n'))
            indexing::print(line);
        return 0;
    }
    if (arguments.contains(u"--version"_s)) {
        indexing::print(u"tonequill-index " TONEQUILL_VERSION ""_s);
        return 0;
    }
    try {
        return run(arguments.value(0), arguments.mid(1));
    } catch (const std::exception& error) {
        indexing::complain(messageOf(error));
        return 1;
    }
}

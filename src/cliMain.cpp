// tonequill-cli: the library and its sounds in a terminal.

#include "cli/Command.h"
#include "cli/Terminal.h"
#include "platform/files/ScratchFile.h"

#include <QCoreApplication>

using namespace Qt::StringLiterals;
using namespace tonequill;

namespace {

QString helpText()
{
    QString text = u"tonequill-cli keeps the library of Tonequill from a terminal.\n\nUsage: tonequill-cli COMMAND …\n\n"_s;
    for (const cli::Command& command : cli::commands()) {
        const QString call = QString::fromUtf8(command.name) + u' ' + QString::fromUtf8(command.arguments);
        text += u"  %1 %2\n"_s.arg(call, -16).arg(QString::fromUtf8(command.summary));
    }
    text += u"\nEach has --help. add, delete and name change the library, and sync the Auto Folder and its settings; the "
            "others leave both alone.\n"
            "Exit status: 0 done, 1 failed, 2 wrong use, 3 another program is writing to the library."_s;
    return text;
}

} // namespace

int main(int argc, char** argv)
{
    const QCoreApplication application(argc, argv);
    QCoreApplication::setApplicationName(u"tonequill-cli"_s);
    QCoreApplication::setApplicationVersion(u"" TONEQUILL_VERSION ""_s);

    ScratchFile::sweepStrays();
    const QStringList arguments = QCoreApplication::arguments().sliced(1);
    const QString word = arguments.value(0);
    if (word == u"--version") {
        cli::terminal::print(u"tonequill-cli "_s + QCoreApplication::applicationVersion());
        return cli::kDone;
    }
    if (word == u"--help" || word == u"-h" || word == u"help") {
        cli::terminal::print(helpText());
        return cli::kDone;
    }
    for (const cli::Command& command : cli::commands()) {
        if (word == QLatin1StringView(command.name))
            return command.run(arguments.sliced(1));
    }
    cli::terminal::complain(word.isEmpty() ? helpText() : u"There is no command “%1”. Try: tonequill-cli --help"_s.arg(word));
    return cli::kUsage;
}

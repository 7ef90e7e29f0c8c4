// tonequill: the window. Puts the pieces together and owns the library.

#include "app/delivery/AutoFolderSync.h"
#include "app/handover/HandedOver.h"
#include "app/library/ImportFlows.h"
#include "app/model/AppModel.h"
#include "app/online/CatalogueFlows.h"
#include "app/smart/NamingFlows.h"
#include "audio/effects/EffectRenderer.h"
#include "base/Background.h"
#include "discovery/catalogue/SoundIndex.h"
#include "library/delivery/DragStaging.h"
#include "platform/desktop/DesktopApps.h"
#include "platform/desktop/SystemAppearance.h"
#include "platform/files/ScratchFile.h"
#include "platform/network/LocalLanguageModel.h"
#include "platform/playback/SdlAudioOutput.h"
#include "platform/process/ExitDeadline.h"
#include "platform/process/HandOver.h"
#include "platform/process/LibraryLock.h"
#include "platform/process/TerminationSignals.h"
#include "ui/window/MainWindow.h"
#include "understanding/listening/SoundClassifier.h"

#include <QApplication>
#include <QCommandLineParser>
#include <QFileInfo>

#include <algorithm>
#include <cstdio>
#include <string_view>
#include <vector>

using namespace Qt::StringLiterals;
using namespace tonequill;

namespace {

constexpr std::chrono::milliseconds kTimeToEnd(1800); // people take two seconds for a hang

// With --help or --version the parser tells it and ends the program.
QStringList filesFrom(const QCoreApplication& application)
{
    QCommandLineParser parser;
    parser.setApplicationDescription(u"Keeps a library of short sounds. FILES are added to it."_s);
    parser.addHelpOption();
    parser.addVersionOption();
    parser.addPositionalArgument(u"files"_s, u"Sounds and videos to add."_s, u"[FILES…]"_s);
    parser.process(application);
    QStringList files;
    for (const QString& file : parser.positionalArguments())
        files << QFileInfo(file).absoluteFilePath();
    return files;
}

// Which needs no screen.
bool asksAboutProgram(const std::vector<std::string_view>& arguments)
{
    return std::any_of(arguments.begin(), arguments.end(), [](std::string_view argument) {
        return argument == "-h" || argument == "--help" || argument == "--help-all" || argument == "-v" ||
               argument == "--version";
    });
}

// A second start: the first one takes the files and comes to the front.
int handToFirst(const LibraryLock& lock, const QStringList& files)
{
    if (HandedOver::sendToOwner(lock, HandedOver::addMessage(files)))
        return 0;
    std::fputs("Another program is changing the library. Try again when it has finished.\n", stderr);
    return 3;
}

int runWindow(LibraryLock& lock, const QStringList& files)
{
    std::optional<ExitDeadline> deadline; // outlives whatever may take its time to go
    HandOver server;                      // early, so that who comes while this one starts is heard
    if (const auto address = server.listen(LibraryStore::defaultFolder()))
        lock.publish(*address);
    const SystemAppearance system; // early, so that the desktop has answered when the window opens
    SystemClock clock;
    Defaults defaults;
    Workers workers;
    auto library = std::make_unique<LibraryStore>(clock, workers);
    library->sweepUnfinished();
    EffectRenderer::sweepStrays();
    ScratchFile::sweepStrays();
    DragStaging::clean(); // here alone: the terminal may be used while the window's files are on their way
    const SoundClassifier classifier(ClassifierChoice::from(defaults, ClassifierChoice::IfBroken::useBuiltIn));
    SdlAudioOutput output;
    BackgroundEditorWork work(classifier, output, workers);
    DesktopApps apps;
    LocalLanguageModel languageModel(LocalLanguageModel::Settings::from(defaults));
    AppModel model({defaults, clock, workers, work, apps, languageModel, SoundIndex::shared()}, std::move(library));
    MainWindow window(model, defaults);
    QObject::connect(&system, &SystemAppearance::changed, &window.themes(), &ThemeStore::setSystemIsDark);
    followTheEar(model);
    watchAutoFolder(model);
    startFlow(loadCatalogue(model));

    server.serve([&](const QJsonObject& message) {
        const QJsonObject answer = HandedOver::carryOut(model, message);
        if (message.contains(u"add"_s))
            window.bringToFront();
        return answer;
    });
    if (!files.isEmpty())
        startFlow(importURLs(model, files));

    // Everything ends with the window, while the event loop still runs.
    const TerminationSignals signals;
    QObject::connect(&signals, &TerminationSignals::received, qApp, &QApplication::quit);
    QObject::connect(qApp, &QApplication::aboutToQuit, &model, [&] {
        deadline.emplace(kTimeToEnd);
        model.close();
    });
    return QApplication::exec();
}

} // namespace

int main(int argc, char** argv)
{
    QCoreApplication::setApplicationName(u"tonequill"_s);
    QCoreApplication::setApplicationVersion(u"" TONEQUILL_VERSION ""_s);
    if (asksAboutProgram({argv + 1, argv + argc})) {
        const QCoreApplication withoutScreen(argc, argv);
        filesFrom(withoutScreen);
    }
    QApplication application(argc, argv);
    QApplication::setApplicationDisplayName(u"Tonequill"_s);
    QGuiApplication::setDesktopFileName(u"com.tonequill.app"_s);

    const QStringList files = filesFrom(application);
    LibraryLock lock(LibraryStore::defaultFolder());
    if (!lock.acquireSoon(HandedOver::kPatienceForOwnerMs))
        return handToFirst(lock, files);
    return runWindow(lock, files);
}

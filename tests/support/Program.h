#pragma once

#include "app/model/AppModel.h"
#include "app/smart/NamingFlows.h"
#include "discovery/catalogue/SoundIndex.h"
#include "fakes/FakeClock.h"
#include "fakes/FakeEditorWork.h"
#include "fakes/FakeLanguageModel.h"
#include "fakes/FakeOtherApps.h"

#include <QCoreApplication>
#include <QTemporaryDir>

namespace tonequill::test {

// What a whole program without its window stands on: settings of its own, time,
// background work and a language model that are turned by hand.
class Machine {
public:
    QTemporaryDir settingsFolder;
    Workers workers;
    FakeClock clock;
    FakeEditorWork work;
    FakeOtherApps apps;
    FakeLanguageModel languageModel;
    SoundIndex soundIndex;
    Defaults defaults{settingsFolder.filePath(QStringLiteral("tonequill.ini"))};

    Services services() { return services(work); }
    Services services(EditorWork& editorWork) { return {defaults, clock, workers, editorWork, apps, languageModel, soundIndex}; }

    std::unique_ptr<LibraryStore> library(const QString& folder)
    {
        return std::make_unique<LibraryStore>(clock, workers, folder);
    }
    std::unique_ptr<AppModel> program(const QString& folder)
    {
        auto model = std::make_unique<AppModel>(services(), library(folder));
        followTheEar(*model);
        return model;
    }
    // Lets what has been answered by hand come home.
    static void settle()
    {
        for (int i = 0; i < 10; ++i)
            QCoreApplication::processEvents();
    }
    // The same, and what has been changed reach the disk.
    static void settle(const AppModel& model)
    {
        settle();
        model.library().isSaved();
        settle();
    }
};

// The program over a fresh, empty library.
class Program : public Machine {
public:
    Program() { followTheEar(model); }

    AppModel model{services(), library(settingsFolder.filePath(QStringLiteral("Library")))};
};

} // namespace tonequill::test

#include "app/delivery/AutoFolderSync.h"

#include "app/model/AppModel.h"
#include "base/Background.h"

using namespace std::chrono_literals;

namespace tonequill {

namespace {

constexpr auto kDebounce = 1000ms; // a burst of changes makes one run
using State = AutoFolderWatch::State;

void wake(AppModel& model);

QCoro::Task<> run(AppModel& model)
{
    AutoFolderWatch& watch = model.autoFolderWatch();
    watch = {State::running, false};
    co_await syncAutoFolder(model);
    watch.state = State::resting;
    if (watch.changedDuringRun)
        wake(model);
}

QCoro::Task<> runLater(AppModel& model)
{
    co_await model.flows().pause(model.services().clock, kDebounce);
    co_await run(model);
}

void wake(AppModel& model)
{
    AutoFolderWatch& watch = model.autoFolderWatch();
    if (watch.state == State::running)
        watch.changedDuringRun = true; // the next run catches it
    if (watch.state != State::resting)
        return;
    watch.state = State::waking;
    startFlow(runLater(model));
}

} // namespace

QCoro::Task<int> syncAutoFolder(AppModel& model)
{
    QList<AutoFolder::Sound> sounds;
    for (const SoundItem& item : model.library().items())
        sounds.append({item.id, item.name, model.library().path(item), item.duration});
    const int copied = co_await model.autoFolder().sync(sounds);
    if (copied >= 1)
        model.say(model.autoFolder().copiedText(copied));
    co_return int(copied);
}

void watchAutoFolder(AppModel& model)
{
    if (model.autoFolderWatch().state != State::off)
        return;
    const auto changed = [&model] { wake(model); };
    QObject::connect(&model.library(), &LibraryStore::itemInserted, &model, changed);
    QObject::connect(&model.library(), &LibraryStore::itemChanged, &model, changed);
    QObject::connect(&model.library(), &LibraryStore::itemRemoved, &model, changed);
    QObject::connect(&model.autoFolder(), &AutoFolder::settingsChanged, &model, changed);
    startFlow(run(model));
}

} // namespace tonequill

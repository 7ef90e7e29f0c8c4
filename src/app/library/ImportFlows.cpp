#include "app/library/ImportFlows.h"

#include "app/model/AppModel.h"
#include "base/UserError.h"

#include <QScopeGuard>

using namespace Qt::StringLiterals;

namespace tonequill {

namespace {

// What came in last and is still there: it may have been deleted while others came.
std::optional<QUuid> lastThere(const AppModel& model, const QList<QUuid>& added)
{
    const auto last =
        std::find_if(added.rbegin(), added.rend(), [&model](const QUuid& id) { return model.library().find(id) != nullptr; });
    return last == added.rend() ? std::nullopt : std::optional(*last);
}

} // namespace

QCoro::Task<ImportOutcome> importURLs(AppModel& model, QStringList paths)
{
    const auto working = model.work().begin(FlowsAtWork::Kind::importing);
    const QList<IncomingFile> files = model.incoming().add(paths);
    const auto away = qScopeGuard([&incoming = model.incoming(), files] {
        for (const IncomingFile& file : files)
            incoming.remove(file.id);
    });
    ImportOutcome outcome;
    for (qsizetype i = 0; i < paths.size(); ++i) {
        co_await model.incoming().turn(model.flows(), files[i].id);
        try {
            const SoundItem item =
                co_await model.library().importFile(paths[i], SoundOrigin::imported, {}, {}, files[i].progress);
            outcome.added << item.id;
        } catch (const ImportError& error) {
            outcome.failed.append({paths[i], error.message(), error.cause().isEmpty() ? error.message() : error.cause()});
        } catch (const std::exception& error) {
            outcome.failed.append({paths[i], messageOf(error), messageOf(error)});
        }
        model.incoming().remove(files[i].id);
    }
    if (const auto last = lastThere(model, outcome.added)) {
        model.setSection(AppSection::library);
        model.setSelection(last);
    }
    // The count keeps the plural: one of two files gives "1 sounds".
    if (!outcome.added.isEmpty())
        model.say(paths.size() == 1 ? u"Found the best part. Check it, then add it."_s
                                    : u"Added %1 sounds."_s.arg(paths.size() - outcome.failed.size()));
    if (!outcome.failed.isEmpty())
        model.say(outcome.failed.first().sentence, Tone::error);
    co_return std::move(outcome);
}

QCoro::Task<bool> deleteItems(AppModel& model, QList<SoundItem> items)
{
    QSet<QUuid> ids;
    for (const SoundItem& item : items)
        ids.insert(item.id);
    model.selection().letGo(ids);
    auto leaving = model.library().deleteItems(items); // the list has lost them already
    model.selection().openNewest();
    const bool isDone = co_await model.flows().until(std::move(leaving));
    if (!isDone) {
        model.selection().openNewest(); // they are back
        model.say(u"Nothing was deleted: the disk may be full or read-only."_s, Tone::error);
    }
    co_return bool(isDone);
}

} // namespace tonequill

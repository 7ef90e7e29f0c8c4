#include "app/smart/SmartActions.h"

#include "app/model/AppModel.h"
#include "library/records/NamePolicy.h"
#include "understanding/naming/SmartNamer.h"
#include "understanding/naming/SoundNamer.h"

using namespace Qt::StringLiterals;

namespace tonequill {

namespace {

constexpr int kMostWords = 3;
constexpr int kMostUnsaved = 50;      // names that a power cut may take back
constexpr double kWorthTelling = 0.1; // what is heard less surely would mislead the model

bool isOpen(const AppModel& model, const QUuid& id)
{
    return model.editor().item() && model.editor().item()->id == id;
}

QCoro::Task<QStringList> heardWords(AppModel& model, SoundItem item, Lane lane, ProgressPtr progress)
{
    const auto& heard = model.editor().heard();
    std::vector<HeardLabel> labels;
    // The user sees what the editor heard, whatever its confidence.
    if (isOpen(model, item.id) && heard && !heard->labels.empty()) {
        labels = heard->labels;
        labels.resize(std::min(labels.size(), std::size_t(kMostWords)));
    } else {
        const EditorWork::Question whole{model.library().path(item), 0, item.duration, kMostWords};
        labels = co_await model.flows().until(model.services().editorWork.classify(whole, lane, progress));
        std::erase_if(labels, [](const HeardLabel& label) { return label.confidence < kWorthTelling; });
    }
    QStringList words;
    for (const HeardLabel& label : labels)
        words << SoundNamer::pretty(label.name);
    co_return std::move(words);
}

QCoro::Task<SoundNaming> smartNaming(AppModel& model, SoundItem item, Lane lane, ProgressPtr progress)
{
    LanguageModel& languageModel = model.services().languageModel;
    SoundFacts facts{item.name, {}, item.tags, item.duration, item.descriptors};
    facts.labels = co_await heardWords(model, item, lane, progress);
    const bool hasModel = co_await model.flows().until(languageModel.isAvailable());
    std::optional<SoundNaming> naming;
    if (hasModel)
        naming = co_await model.flows().until(SmartNamer::askModel(languageModel, facts));
    co_return naming ? std::move(*naming) : SmartNamer::fallback(facts);
}

void give(SoundItem& record, const SoundNaming& naming)
{
    record.name = naming.name;
    record.nameIsAuto = false; // what the editor hears later doesn't replace it
    record.addTags(naming.tags);
}

// None once nobody wants it.
QCoro::Task<std::optional<SoundNaming>> namingOf(AppModel& model, SoundItem item, ProgressPtr progress)
{
    const NamesBeingFound::Look look(model.names(), item.id);
    try {
        SoundNaming naming = co_await smartNaming(model, item, Lane::behind, progress);
        if (!progress->isCancelled())
            co_return std::move(naming);
    } catch (const Cancelled&) {
        if (!progress->isCancelled())
            throw; // the program ends
    }
    co_return std::nullopt;
}

// The record as it is, unless somebody named it meanwhile. What the editor's own ear
// calls it is no such name.
const SoundItem* stillNameless(const AppModel& model, const SoundItem& item)
{
    const SoundItem* stored = model.library().find(item.id);
    return stored && (stored->name == item.name || stored->nameIsAuto == true) ? stored : nullptr;
}

QSet<QUuid> idsOf(const QList<SoundItem>& items)
{
    QSet<QUuid> ids;
    for (const SoundItem& item : items)
        ids << item.id;
    return ids;
}

} // namespace

QCoro::Task<> suggestSmartName(AppModel& model, SoundItem item)
{
    if (!isOpen(model, item.id))
        co_return;
    model.editor().setThinking(true);
    const auto question = model.names().ask();
    const SoundNaming naming = co_await smartNaming(model, item, Lane::shown, question.progress);
    if (!question.ticket.isCurrent() || !isOpen(model, item.id))
        co_return;
    model.editor().setThinking(false);
    model.editor().setSmartSuggestion(EditorModel::SmartSuggestion{naming.name, naming.tags});
}

void useSmartSuggestion(AppModel& model, const SoundItem& item)
{
    const auto suggestion = model.editor().smartSuggestion();
    if (!suggestion || suggestion->name.isEmpty())
        return;
    model.library().update(item, [&suggestion](SoundItem& record) { give(record, {suggestion->name, suggestion->tags}); });
    model.editor().setSmartSuggestion({});
}

QCoro::Task<NamingOutcome> smartRename(AppModel& model, QList<SoundItem> items)
{
    NamingOutcome outcome;
    items.removeIf([](const SoundItem& item) { return !NamePolicy::isGeneric(item.name); });
    if (items.isEmpty()) {
        model.say(u"These sounds already have names you chose, so I left them alone."_s);
        co_return std::move(outcome);
    }
    const NamesBeingFound::Claim claim(model.names(), idsOf(items));
    if (claim.isEmpty()) {
        outcome.isAtWork = true;
        co_return std::move(outcome);
    }
    items.removeIf([&claim](const SoundItem& item) { return !claim.has(item.id); });
    auto working = std::make_optional(model.work().begin(FlowsAtWork::Kind::naming, u"Naming %1"_s.arg(items.size())));
    std::optional<LibraryStore::Changes> changes;
    for (const SoundItem& item : std::as_const(items)) {
        if (!changes || outcome.renamed.size() % kMostUnsaved == 0)
            changes.emplace(model.library()); // what was changed by the one before is saved
        const SoundItem* stored = stillNameless(model, item);
        if (!stored)
            continue;
        const SoundItem before = *stored;
        const std::optional<SoundNaming> naming = co_await namingOf(model, before, claim.progress());
        if (!naming)
            break;
        if (naming->name.isEmpty() || !stillNameless(model, before))
            continue;
        changes->update(before, [&naming](SoundItem& record) { give(record, *naming); });
        outcome.renamed << before.id;
    }
    changes.reset();
    co_await model.library().saved();
    working.reset();
    model.say(outcome.renamed.size() == 1 ? u"Named it and added tags."_s
                                          : u"Renamed %1 sounds and added tags."_s.arg(outcome.renamed.size()));
    co_return std::move(outcome);
}

} // namespace tonequill

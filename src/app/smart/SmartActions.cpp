// Smart names: suggested for the open sound, or given to many at once.

#include "app/model/AppModel.h"

#include "library/records/NamePolicy.h"
#include "understanding/naming/SoundNamer.h"

using namespace Qt::StringLiterals;

namespace tonequill {

namespace {

constexpr int kMostWords = 3;
constexpr double kWorthTelling = 0.1; // what is heard less surely would mislead the model

} // namespace

QCoro::Task<QStringList> AppModel::heardWords(SoundItem item, Lane lane)
{
    std::vector<HeardLabel> labels;
    // The user sees what the editor heard, whatever its confidence.
    if (m_editor.item() && m_editor.item()->id == item.id && m_editor.heard() && !m_editor.heard()->labels.empty()) {
        labels = m_editor.heard()->labels;
        labels.resize(std::min(labels.size(), std::size_t(kMostWords)));
    } else {
        const EditorWork::Question whole{m_library->path(item), 0, item.duration, kMostWords};
        const auto progress = std::make_shared<Progress>();
        labels = co_await m_flows.until(m_services.editorWork.classify(whole, lane, progress));
        std::erase_if(labels, [](const HeardLabel& label) { return label.confidence < kWorthTelling; });
    }
    QStringList words;
    for (const HeardLabel& label : labels)
        words << SoundNamer::pretty(label.name);
    co_return words;
}

QCoro::Task<SoundNaming> AppModel::smartNaming(SoundItem item, Lane lane)
{
    LanguageModel& languageModel = m_services.languageModel;
    SoundFacts facts{item.name, {}, item.tags, item.duration, item.descriptors};
    facts.labels = co_await heardWords(item, lane);
    const bool hasModel = co_await m_flows.until(languageModel.isAvailable());
    std::optional<SoundNaming> naming;
    if (hasModel)
        naming = co_await m_flows.until(SmartNamer::askModel(languageModel, facts));
    co_return naming ? std::move(*naming) : SmartNamer::fallback(facts);
}

QCoro::Task<> AppModel::suggestSmartName(SoundItem item)
{
    const auto isOpen = [this](const QUuid& id) { return m_editor.item() && m_editor.item()->id == id; };
    if (!isOpen(item.id))
        co_return;
    m_editor.setThinking(true);
    const Ticket ticket = m_suggestions.begin();
    const SoundNaming naming = co_await smartNaming(item, Lane::shown);
    if (!ticket.isCurrent() || !isOpen(item.id))
        co_return;
    m_editor.setThinking(false);
    m_editor.setSmartSuggestion(EditorModel::SmartSuggestion{naming.name, naming.tags});
}

void AppModel::useSmartSuggestion(const SoundItem& item)
{
    const auto suggestion = m_editor.smartSuggestion();
    if (!suggestion || suggestion->name.isEmpty())
        return;
    give(item, {suggestion->name, suggestion->tags});
    m_editor.setSmartSuggestion({});
}

QCoro::Task<> AppModel::smartRename(QList<SoundItem> items)
{
    items.removeIf([](const SoundItem& item) { return !NamePolicy::isGeneric(item.name); });
    if (items.isEmpty()) {
        say(u"These sounds already have names you chose, so I left them alone."_s);
        co_return;
    }
    auto working = std::make_optional<Working>(*this, u"Naming %1"_s.arg(items.size()));
    // The record as it is, unless somebody named it meanwhile. What the editor's own
    // ear calls it is no such name.
    const auto current = [this](const SoundItem& item) {
        const SoundItem* stored = m_library->find(item.id);
        return stored && (stored->name == item.name || stored->nameIsAuto == true) ? stored : nullptr;
    };
    qsizetype renamed = 0;
    for (qsizetype i = 0; i < items.size(); ++i) {
        const SoundItem* stored = current(items[i]);
        if (!stored)
            continue;
        const SoundItem before = *stored;
        m_beingNamed.insert(before.id);
        Q_EMIT beingNamedChanged(before.id);
        const SoundNaming naming = co_await smartNaming(before, Lane::behind);
        m_beingNamed.remove(before.id);
        Q_EMIT beingNamedChanged(before.id);
        stored = current(before);
        if (naming.name.isEmpty() || !stored)
            continue;
        give(before, naming);
        ++renamed;
    }
    working.reset();
    say(renamed == 1 ? u"Named it and added tags."_s : u"Renamed %1 sounds and added tags."_s.arg(renamed));
}

void AppModel::give(const SoundItem& item, const SoundNaming& naming)
{
    m_library->update(item, [&naming](SoundItem& record) {
        record.name = naming.name;
        record.nameIsAuto = false; // what the editor hears later doesn't replace it
        record.addTags(naming.tags);
    });
}

} // namespace tonequill

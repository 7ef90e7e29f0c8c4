#include "app/delivery/StagingFlows.h"

#include "app/delivery/PartExport.h"
#include "app/model/AppModel.h"
#include "library/delivery/DragStaging.h"
#include "platform/files/Files.h"

using namespace Qt::StringLiterals;

namespace tonequill {

StagedFiles stageSelectionFiles(const AppModel& model)
{
    const SoundItem* item = model.selectedItem();
    if (!item)
        return {};
    const std::vector<EditorModel::Part> parts = PartExport::usable(model.editor().parts());
    const QStringList names = PartExport::names(*item, parts);
    const EffectSettings effects = PartExport::effectsFor(model.editor(), *item);
    StagedFiles staged{{}, names.value(0, item->name)};
    for (std::size_t i = 0; i < parts.size(); ++i) {
        const auto path = DragStaging::reserve(names[qsizetype(i)], u"wav"_s);
        if (!path)
            continue;
        try {
            PartExport::exportWithEffects(model.library().path(*item), parts[i].start, parts[i].end, effects, *path);
            staged.paths << *path;
        } catch (const std::exception&) {
            // A part that fails is left out of the drag.
        }
    }
    return staged;
}

StagedFiles stageFiles(const AppModel& model, const QList<SoundItem>& items)
{
    StagedFiles staged{{}, items.isEmpty() ? QString() : items.first().name};
    for (const SoundItem& item : items) {
        if (const auto path = DragStaging::stage(model.library().path(item), item.name))
            staged.paths << *path;
    }
    return staged;
}

DragFile dragProvider(const AppModel& model, const SoundItem& item)
{
    const QString original = model.library().path(item);
    const QString path = DragStaging::stage(original, item.name).value_or(original);
    return {path, Files::stem(path)};
}

} // namespace tonequill

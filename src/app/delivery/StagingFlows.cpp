// Files for drags out of the window.

#include "app/delivery/PartExport.h"
#include "app/model/AppModel.h"
#include "library/delivery/DragStaging.h"
#include "platform/files/Files.h"

using namespace Qt::StringLiterals;

namespace tonequill {

AppModel::StagedFiles AppModel::stageSelectionFiles() const
{
    const SoundItem* item = selectedItem();
    if (!item)
        return {};
    const std::vector<EditorModel::Part> parts = PartExport::usable(m_editor.parts());
    const QStringList names = PartExport::names(*item, parts);
    const EffectSettings effects = effectsFor(*item);
    StagedFiles staged{{}, names.value(0, item->name)};
    for (std::size_t i = 0; i < parts.size(); ++i) {
        const auto path = DragStaging::reserve(names[qsizetype(i)], u"wav"_s);
        if (!path)
            continue;
        try {
            PartExport::exportWithEffects(m_library->path(*item), parts[i].start, parts[i].end, effects, *path);
            staged.paths << *path;
        } catch (const std::exception&) {
            // A part that fails is left out of the drag.
        }
    }
    return staged;
}

AppModel::StagedFiles AppModel::stageFiles(const QList<SoundItem>& items) const
{
    StagedFiles staged{{}, items.isEmpty() ? QString() : items.first().name};
    for (const SoundItem& item : items) {
        if (const auto path = DragStaging::stage(m_library->path(item), item.name))
            staged.paths << *path;
    }
    return staged;
}

AppModel::DragFile AppModel::dragProvider(const SoundItem& item) const
{
    const QString original = m_library->path(item);
    const QString path = DragStaging::stage(original, item.name).value_or(original);
    return {path, Files::stem(path)};
}

} // namespace tonequill

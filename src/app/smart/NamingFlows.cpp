#include "app/smart/NamingFlows.h"

#include "app/model/AppModel.h"
#include "understanding/naming/SoundNamer.h"

#include <algorithm>

namespace tonequill {

void applyHeard(AppModel& model, const SoundItem& item, const SoundHeard& heard)
{
    constexpr double kSure = 0.75; // a wrong name does more harm than none
    constexpr std::size_t kLabelsForTags = 2;

    const SoundItem* stored = model.library().find(item.id);
    if (heard.name.isEmpty() || !stored || stored->nameIsAuto != true)
        return;
    if (heard.labels.empty() || heard.labels.front().confidence < kSure || voiceAndMusic().contains(heard.labels.front().name))
        return;
    QStringList tags;
    for (std::size_t i = 0; i < std::min(heard.labels.size(), kLabelsForTags); ++i) {
        if (heard.labels[i].confidence >= kSure)
            tags << SoundNamer::pretty(heard.labels[i].name).toLower();
    }
    model.library().update(*stored, [&](SoundItem& record) {
        record.name = heard.name;
        record.addTags(tags);
    });
}

void followTheEar(AppModel& model)
{
    model.editor().setOnHeard([&model](const SoundItem& item, const SoundHeard& heard) { applyHeard(model, item, heard); });
}

} // namespace tonequill

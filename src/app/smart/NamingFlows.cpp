// What is heard gives a sound its name.

#include "app/model/AppModel.h"

#include "understanding/listening/SoundClassifier.h"
#include "understanding/naming/SoundNamer.h"

#include <algorithm>

namespace tonequill {

void AppModel::applyHeard(const SoundItem& item, const SoundHeard& heard)
{
    constexpr double kSure = 0.75; // a wrong name does more harm than none
    constexpr std::size_t kLabelsForTags = 2;

    const SoundItem* stored = m_library->find(item.id);
    if (heard.name.isEmpty() || !stored || stored->nameIsAuto != true)
        return;
    if (heard.labels.empty() || heard.labels.front().confidence < kSure ||
        SoundClassifier::voiceAndMusic().contains(heard.labels.front().name))
        return;
    QStringList tags;
    for (std::size_t i = 0; i < std::min(heard.labels.size(), kLabelsForTags); ++i) {
        if (heard.labels[i].confidence >= kSure)
            tags << SoundNamer::pretty(heard.labels[i].name).toLower();
    }
    m_library->update(*stored, [&](SoundItem& record) {
        record.name = heard.name;
        record.addTags(tags);
    });
}

} // namespace tonequill

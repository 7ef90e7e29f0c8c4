#include "discovery/planning/SoundRanker.h"

#include "base/Text.h"
#include "discovery/planning/TermScore.h"

#include <algorithm>

namespace tonequill::SoundRanker {

double score(const OnlineSound& sound, const QStringList& terms, const QStringList& primary, PreferShort preferShort)
{
    const QString title = text::lowercase(sound.title);
    const QStringList titleWords = text::words(title);
    QStringList tags;
    for (const QString& tag : sound.tags)
        tags << text::lowercase(tag);

    TermScore found;
    for (const QString& term : terms) {
        const bool isInTag = std::any_of(tags.begin(), tags.end(), [&](const QString& tag) { return tag.contains(term); });
        found.add({tags.contains(term), isInTag, titleWords.contains(term), title.contains(term), primary.contains(term)});
    }
    double total = found.total();
    if (preferShort == PreferShort::no)
        return total;
    total += TermScore::shortness(sound.duration);
    const bool isBackground =
        std::any_of(kBackgroundTags.begin(), kBackgroundTags.end(), [&](QStringView tag) { return tags.contains(tag); });
    return isBackground ? total - TermScore::kBackgroundCost : total;
}

QList<OnlineSound> rank(const QList<OnlineSound>& sounds, const QStringList& terms, const QStringList& primary,
                        PreferShort preferShort)
{
    struct Scored {
        double score;
        const OnlineSound* sound;
    };
    QList<Scored> all;
    for (const OnlineSound& sound : sounds)
        all.append({score(sound, terms, primary, preferShort), &sound});
    std::stable_sort(all.begin(), all.end(), [](const Scored& one, const Scored& other) { return one.score > other.score; });
    QList<OnlineSound> ranked;
    for (const Scored& one : all)
        ranked << *one.sound;
    return ranked;
}

} // namespace tonequill::SoundRanker

#include "discovery/records/OnlineSound.h"

#include "base/Text.h"

#include <QHash>

using namespace Qt::StringLiterals;

namespace tonequill {

namespace {

constexpr qsizetype kMostTags = 8; // of those that go into the library

size_t hashOptional(const std::optional<QString>& value, size_t seed)
{
    return value ? qHash(*value, seed) : seed;
}

} // namespace

QString OnlineSound::licenseName() const
{
    const QString code = text::lowercase(license);
    if (code == u"pdm")
        return u"Public domain"_s;
    if (code == u"by")
        return u"CC BY"_s;
    if (code == u"by-sa")
        return u"CC BY-SA"_s;
    return u"CC0"_s;
}

SoundInfo OnlineSound::info() const
{
    SoundInfo facts;
    facts.name = title;
    for (const QString& tag : tags.first(std::min(tags.size(), kMostTags)))
        facts.tags << text::lowercase(tag);
    facts.sourceID = id;
    facts.license = licenseName();
    facts.credit = creator;
    facts.pageURL = pageURL;
    return facts;
}

size_t qHash(const OnlineSound& sound, size_t seed)
{
    seed = qHashMulti(seed, sound.id, sound.title, sound.url, sound.duration, sound.license, sound.tags, sound.source,
                      sound.isArabic, sound.popularity);
    return hashOptional(sound.pageURL, hashOptional(sound.creator, seed) + 1);
}

} // namespace tonequill

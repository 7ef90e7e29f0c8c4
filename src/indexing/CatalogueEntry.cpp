#include "indexing/CatalogueEntry.h"

namespace tonequill {

namespace {

QString textOf(std::string_view text)
{
    return QString::fromUtf8(text.data(), qsizetype(text.size()));
}

std::optional<QString> textOf(const std::optional<std::string_view>& text)
{
    return text ? std::optional(textOf(*text)) : std::nullopt;
}

} // namespace

std::optional<CatalogueEntry> entryOf(const CatalogueItem& item)
{
    if (item.fate == CatalogueItem::Fate::unusable)
        return std::nullopt;
    CatalogueEntry entry;
    OnlineSound& sound = entry.sound;
    sound.id = textOf(item.id);
    sound.title = textOf(item.title);
    sound.url = textOf(item.url);
    sound.duration = item.duration;
    sound.license = textOf(item.license);
    sound.creator = textOf(item.creator);
    sound.pageURL = textOf(item.page);
    for (const std::string_view tag : item.tags)
        sound.tags << textOf(tag);
    sound.source = (item.isFromWikimedia ? OnlineSound::kWikimedia : OnlineSound::kFreesound).toString();
    sound.popularity = item.popularity;
    entry.isMarked = item.fate == CatalogueItem::Fate::marked;
    return entry;
}

} // namespace tonequill

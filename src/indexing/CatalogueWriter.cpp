#include "indexing/CatalogueWriter.h"

#include "base/JsonWriter.h"
#include "discovery/catalogue/Inflater.h"

namespace tonequill {

QByteArray CatalogueWriter::json(const CatalogueEntry& entry)
{
    const OnlineSound& sound = entry.sound;
    JsonWriter json;
    json.beginObject();
    json.key("i").text(sound.id).key("t").text(sound.title).key("u").text(sound.url);
    json.key("g").list(sound.tags);
    if (entry.isMarked)
        json.key("a").number(qint64(1));
    json.key("d").number(sound.duration);
    if (sound.license != u"cc0")
        json.key("l").text(sound.license);
    if (sound.creator)
        json.key("c").text(*sound.creator);
    if (sound.pageURL)
        json.key("p").text(*sound.pageURL);
    if (sound.source == OnlineSound::kWikimedia)
        json.key("s").text(QStringLiteral("w"));
    if (sound.popularity != 0)
        json.key("r").number(sound.popularity);
    return json.endObject().bytes();
}

void CatalogueWriter::add(const CatalogueEntry& entry)
{
    if (m_ids.contains(entry.sound.id)) {
        ++m_repeats;
        return;
    }
    m_ids.insert(entry.sound.id);
    if (!m_items.empty())
        m_items += ',';
    const QByteArray text = json(entry);
    m_items.append(text.constData(), std::size_t(text.size()));
}

QByteArray CatalogueWriter::file() const
{
    return QByteArray::fromStdString(Inflater::deflate("{\"items\":[" + m_items + "]}"));
}

} // namespace tonequill

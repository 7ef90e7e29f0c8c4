#include "library/records/SoundItem.h"

#include <QHash>

#include <array>

using namespace Qt::StringLiterals;

namespace tonequill {

namespace {

constexpr std::array kOrigins{SoundOrigin::imported, SoundOrigin::generated, SoundOrigin::cut};

template <typename T>
size_t hashOptional(const std::optional<T>& value, size_t seed)
{
    return value ? qHash(*value, seed) : seed;
}

} // namespace

QString originText(SoundOrigin origin)
{
    switch (origin) {
    case SoundOrigin::imported:
        return u"imported"_s;
    case SoundOrigin::generated:
        return u"generated"_s;
    case SoundOrigin::cut:
        return u"cut"_s;
    }
    Q_UNREACHABLE();
}

std::optional<SoundOrigin> originFromText(QStringView text)
{
    for (const SoundOrigin origin : kOrigins) {
        if (originText(origin) == text)
            return origin;
    }
    return std::nullopt;
}

QString SoundItem::creditLine() const
{
    QStringList parts{u"“%1”"_s.arg(name)};
    if (credit && !credit->isEmpty())
        parts << u"by "_s + *credit;
    if (license)
        parts << u"(%1)"_s.arg(*license);
    if (pageURL)
        parts << *pageURL;
    return parts.join(u' ');
}

void SoundItem::addTags(const QStringList& more)
{
    for (const QString& tag : more) {
        if (!tags.contains(tag))
            tags << tag;
    }
}

size_t qHash(const SoundItem& item, size_t seed)
{
    seed = qHashMulti(seed, item.id, item.name, item.fileName, item.duration, item.tags, item.descriptors, int(item.origin),
                      item.createdAt, item.nameIsAuto.has_value(), item.nameIsAuto.value_or(false));
    for (const auto* text : {&item.sourceID, &item.license, &item.credit, &item.pageURL})
        seed = hashOptional(*text, seed + 1);
    return item.thumbnail ? qHashRange(item.thumbnail->begin(), item.thumbnail->end(), seed) : seed;
}

} // namespace tonequill

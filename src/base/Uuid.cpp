#include "base/Uuid.h"

namespace tonequill {

std::optional<QUuid> uuidFromText(QStringView text)
{
    constexpr qsizetype kCanonicalLength = 36; // 8-4-4-4-12 and four dashes
    if (text.size() != kCanonicalLength)
        return std::nullopt; // QUuid would take braces and other shapes, too
    const QUuid id = QUuid::fromString(text);
    if (id.isNull() && text != u"00000000-0000-0000-0000-000000000000")
        return std::nullopt; // what is no identity reads as null, too
    return id;
}

} // namespace tonequill

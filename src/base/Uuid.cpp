#include "base/Uuid.h"

namespace tonequill {

std::optional<QUuid> uuidFromText(QStringView text)
{
    constexpr qsizetype kCanonicalLength = 36; // 8-4-4-4-12 and four dashes
    if (text.size() != kCanonicalLength)
        return std::nullopt; // QUuid would take braces and other shapes, too
    const QUuid id = QUuid::fromString(text);
    if (id.isNull())
        return std::nullopt;
    return id;
}

} // namespace tonequill

#include "discovery/planning/ArabicLabels.h"

#include "base/Text.h"
#include "discovery/planning/TableFile.h"
#include "terms/SearchTerms.h"

using namespace Qt::StringLiterals;

namespace tonequill::ArabicLabels {

const QHash<QString, QString>& names()
{
    static const QHash<QString, QString> table = [] {
        QHash<QString, QString> all;
        for (const QStringList& row : TableFile::rows(u"captions"_s)) {
            if (!all.contains(row.first()))
                all.insert(row.first(), row.last());
        }
        return all;
    }();
    return table;
}

std::optional<QString> label(const OnlineSound& sound, const QStringList& terms)
{
    if (sound.isArabic && SearchTerms::containsArabic(sound.title))
        return std::nullopt;
    QStringList tags;
    for (const QString& tag : sound.tags)
        tags << text::lowercase(tag);
    const QString title = text::lowercase(sound.title);
    for (const QString& term : terms) {
        const auto caption = names().find(term);
        if (caption != names().end() && (tags.contains(term) || title.contains(term)))
            return *caption;
    }
    for (const QString& tag : tags) {
        if (const auto caption = names().find(tag); caption != names().end())
            return *caption;
    }
    return std::nullopt;
}

} // namespace tonequill::ArabicLabels

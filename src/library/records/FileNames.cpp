#include "library/records/FileNames.h"

#include "base/Text.h"

using namespace Qt::StringLiterals;

namespace tonequill::FileNames {

QString safe(const QString& name)
{
    constexpr qsizetype kMostRead = 4096; // code units; enough for 80 characters, however many marks each has
    QString result = text::withoutControls(name.left(kMostRead));
    for (QChar& character : result) {
        if (u"/:\\?*\"<>|"_s.contains(character))
            character = u'-';
    }
    result = text::trimmed(result);
    if (result.isEmpty())
        return u"Sound"_s;
    constexpr qsizetype kLongest = 80; // characters
    return text::firstCharacters(result, kLongest);
}

} // namespace tonequill::FileNames

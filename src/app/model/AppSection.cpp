#include "app/model/AppSection.h"

using namespace Qt::StringLiterals;

namespace tonequill {

QString sectionText(AppSection section)
{
    switch (section) {
    case AppSection::library:
        return u"library"_s;
    case AppSection::find:
        return u"find"_s;
    case AppSection::studio:
        return u"studio"_s;
    case AppSection::generate:
        return u"generate"_s;
    }
    Q_UNREACHABLE();
}

std::optional<AppSection> sectionFromText(QStringView text)
{
    for (const AppSection section : kAppSections) {
        if (sectionText(section) == text)
            return section;
    }
    return std::nullopt;
}

} // namespace tonequill

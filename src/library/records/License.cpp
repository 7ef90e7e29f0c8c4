#include "library/records/License.h"

namespace tonequill {

using namespace Qt::StringLiterals;

bool License::needsCredit(const std::optional<QString>& label)
{
    return label && label->startsWith(u"CC BY"_s, Qt::CaseInsensitive);
}

} // namespace tonequill

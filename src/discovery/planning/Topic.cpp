#include "discovery/planning/Topic.h"

#include "discovery/planning/TableFile.h"

#include <QHash>

using namespace Qt::StringLiterals;

namespace tonequill {

const QList<Topic>& Topic::all()
{
    static const QList<Topic> topics = [] {
        QList<Topic> read;
        for (const QStringList& row : TableFile::rows(u"topics"_s))
            read.append({row.value(0), row.value(1), TableFile::entries(row.value(2)), row.value(3) == u"any length"});
        return read;
    }();
    return topics;
}

size_t qHash(const Topic& topic, size_t seed)
{
    return qHashMulti(seed, topic.title, topic.symbol, topic.terms, topic.anyLength);
}

} // namespace tonequill

#include "platform/process/Memory.h"

#include <QByteArray>
#include <QByteArrayList>
#include <QFile>
#include <QString>

#include <algorithm>
#include <limits>
#include <optional>

namespace tonequill {

using namespace Qt::StringLiterals;

namespace {

constexpr qint64 kUnlimited = std::numeric_limits<qint64>::max();

// A file of the proc or cgroup file system; these have no size to go by.
QByteArray contentOf(const QString& path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

std::optional<qint64> numberIn(const QString& path)
{
    bool isNumber = false;
    const qint64 value = contentOf(path).trimmed().toLongLong(&isNumber); // "max" is none
    return isNumber ? std::optional(value) : std::nullopt;
}

// The number after `key` at the start of a line.
std::optional<qint64> numberAfter(const QByteArray& text, const QByteArray& key)
{
    for (const QByteArray& line : text.split('\n'))
        if (line.startsWith(key))
            return line.mid(key.size()).simplified().split(' ').constFirst().toLongLong();
    return std::nullopt;
}

// What a control group and those around it have left.
qint64 leftIn(const QString& root, QString group, const QString& limitName, const QString& usageName)
{
    qint64 left = kUnlimited;
    while (true) {
        const QString folder = root + group + u'/';
        const auto limit = numberIn(folder + limitName);
        const auto usage = numberIn(folder + usageName);
        if (limit && usage) {
            // Pages of files that were read are counted as used, but are given back on demand.
            const qint64 cached = numberAfter(contentOf(folder + u"memory.stat"_s), "inactive_file ").value_or(0);
            left = std::min(left, std::max<qint64>(0, *limit - *usage + cached));
        }
        if (group.isEmpty())
            return left;
        group.truncate(group.lastIndexOf(u'/'));
    }
}

qint64 leftInControlGroups()
{
    qint64 left = kUnlimited;
    for (const QByteArray& line : contentOf(u"/proc/self/cgroup"_s).split('\n')) {
        const QByteArrayList fields = line.split(':'); // number, controllers, group
        if (fields.size() < 3)
            continue;
        const QString group = QString::fromUtf8(fields[2] == "/" ? QByteArray() : fields[2]);
        if (fields[0] == "0")
            left = std::min(left, leftIn(u"/sys/fs/cgroup"_s, group, u"memory.max"_s, u"memory.current"_s));
        else if (fields[1].split(',').contains("memory"))
            left =
                std::min(left, leftIn(u"/sys/fs/cgroup/memory"_s, group, u"memory.limit_in_bytes"_s, u"memory.usage_in_bytes"_s));
    }
    return left;
}

} // namespace

qint64 availableMemoryBytes()
{
    constexpr qint64 kKibibyte = 1024;
    const auto machine = numberAfter(contentOf(u"/proc/meminfo"_s), "MemAvailable:");
    return std::min(machine ? *machine * kKibibyte : kUnlimited, leftInControlGroups());
}

} // namespace tonequill

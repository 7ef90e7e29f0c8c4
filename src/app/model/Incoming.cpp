#include "app/model/Incoming.h"

#include "platform/files/Files.h"

namespace tonequill {

QList<IncomingFile> Incoming::add(const QStringList& paths)
{
    QList<IncomingFile> files;
    for (const QString& path : paths)
        files.append({QUuid::createUuid(), Files::stem(path), std::make_shared<Progress>()});
    m_files += files;
    Q_EMIT added(int(files.size()));
    Q_EMIT changed();
    return files;
}

void Incoming::remove(const QUuid& id)
{
    const auto file = std::find_if(m_files.cbegin(), m_files.cend(), [&id](const auto& other) { return other.id == id; });
    if (file == m_files.cend())
        return;
    const auto index = int(file - m_files.cbegin());
    m_files.removeAt(index);
    Q_EMIT removed(index);
    Q_EMIT changed();
}

QCoro::Task<> Incoming::turn(FlowGroup& flows, QUuid id) const
{
    while (m_files.first().id != id)
        co_await flows.signal(this, &Incoming::changed);
}

} // namespace tonequill

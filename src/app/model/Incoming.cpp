#include "app/model/Incoming.h"

#include "platform/files/Files.h"

namespace tonequill {

QList<IncomingFile> Incoming::add(const QStringList& paths)
{
    QList<IncomingFile> files;
    for (const QString& path : paths)
        files.append({QUuid::createUuid(), Files::stem(path), std::make_shared<Progress>()});
    m_files += files;
    Q_EMIT changed();
    return files;
}

void Incoming::remove(const QUuid& id)
{
    if (m_files.removeIf([&id](const IncomingFile& file) { return file.id == id; }) > 0)
        Q_EMIT changed();
}

QCoro::Task<> Incoming::turn(FlowGroup& flows, QUuid id) const
{
    while (m_files.first().id != id)
        co_await flows.signal(this, &Incoming::changed);
}

} // namespace tonequill

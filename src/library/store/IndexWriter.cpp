#include "library/store/IndexWriter.h"

#include "base/Background.h"
#include "platform/files/Files.h"

#include <QFile>
#include <QStringList>

#include <mutex>

namespace tonequill {

struct IndexWriter::Shared {
    QString path;
    std::mutex mutex; // guards what follows
    std::optional<std::vector<QByteArray>> newest;
    QStringList unneeded;
    bool isWritten = true;
    int writeCount = 0;

    void writeNewest()
    {
        std::vector<QByteArray> pieces;
        QStringList toRemove;
        {
            const std::scoped_lock lock(mutex);
            if (!newest)
                return; // an earlier job has written it
            pieces = std::move(*newest);
            newest.reset();
            toRemove = unneeded;
            ++writeCount;
        }
        const bool isDone = write(pieces);
        if (isDone) {
            for (const QString& file : std::as_const(toRemove))
                QFile::remove(file);
        }
        const std::scoped_lock lock(mutex);
        isWritten = isDone;
        if (isDone)
            unneeded.removeIf([&toRemove](const QString& file) { return toRemove.contains(file); });
    }

    bool write(const std::vector<QByteArray>& pieces) const
    {
        try {
            Files::writeDurably(path, pieces);
        } catch (const FileError&) {
            return false;
        }
        return true;
    }
};

IndexWriter::IndexWriter(const QString& path) : m_shared(std::make_shared<Shared>())
{
    m_shared->path = path;
}

IndexWriter::~IndexWriter() = default;

void IndexWriter::write(std::vector<QByteArray> pieces, const QStringList& thenRemove)
{
    {
        const std::scoped_lock lock(m_shared->mutex);
        m_shared->newest = std::move(pieces);
        m_shared->unneeded += thenRemove;
    }
    m_sequence.run([shared = m_shared] { shared->writeNewest(); });
}

QCoro::Task<> IndexWriter::written(FlowGroup& flows)
{
    const auto everything = [] {};
    return background(flows, m_sequence, everything);
}

bool IndexWriter::finish() const
{
    m_sequence.finish();
    const std::scoped_lock lock(m_shared->mutex);
    return m_shared->isWritten;
}

int IndexWriter::writeCount() const
{
    m_sequence.finish();
    const std::scoped_lock lock(m_shared->mutex);
    return m_shared->writeCount;
}

} // namespace tonequill

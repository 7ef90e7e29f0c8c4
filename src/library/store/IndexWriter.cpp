#include "library/store/IndexWriter.h"

#include "base/Background.h"
#include "platform/files/Files.h"

#include <QFile>
#include <QSet>

#include <mutex>

namespace tonequill {

namespace {

void mark(const QList<IndexWriter::Leaving>& leaving)
{
    for (const IndexWriter::Leaving& one : leaving)
        QFile(one.mark).open(QIODevice::WriteOnly | QIODevice::NewOnly); // without one, a kill leaves the file
}

// A file that can't be removed keeps its mark: the next start tries again.
void remove(const QList<IndexWriter::Leaving>& leaving)
{
    for (const IndexWriter::Leaving& one : leaving) {
        if (QFile::remove(one.file) || !QFile::exists(one.file))
            QFile::remove(one.mark);
    }
}

void unmark(const QList<IndexWriter::Leaving>& leaving)
{
    for (const IndexWriter::Leaving& one : leaving)
        QFile::remove(one.mark);
}

} // namespace

struct IndexWriter::Shared {
    QString path;
    std::mutex mutex; // guards what follows
    std::optional<std::vector<QByteArray>> newest;
    int newestState = 0;
    int writtenState = 0;
    QStringList marks;
    QList<Leaving> leaving;
    bool isWritten = true;
    int writeCount = 0;

    void writeNewest()
    {
        std::vector<QByteArray> pieces;
        QStringList itsMarks;
        QList<Leaving> itsLeaving;
        int state = 0;
        {
            const std::scoped_lock lock(mutex);
            if (!newest)
                return; // an earlier job has written it
            pieces = std::move(*newest);
            newest.reset();
            itsMarks = marks;
            itsLeaving = leaving;
            state = newestState;
            ++writeCount;
        }
        mark(itsLeaving);
        const bool isDone = write(pieces);
        if (isDone) {
            for (const QString& file : std::as_const(itsMarks))
                QFile::remove(file);
            remove(itsLeaving);
        } else {
            unmark(itsLeaving);
        }
        const std::scoped_lock lock(mutex);
        isWritten = isDone;
        if (!isDone)
            return;
        writtenState = state;
        marks.remove(0, itsMarks.size()); // what came meanwhile stands behind them
        leaving.remove(0, itsLeaving.size());
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

int IndexWriter::write(std::vector<QByteArray> pieces, const QStringList& marks, const QList<Leaving>& leaving)
{
    {
        const std::scoped_lock lock(m_shared->mutex);
        m_shared->newest = std::move(pieces);
        m_shared->newestState = ++m_newest;
        m_shared->marks += marks;
        m_shared->leaving += leaving;
    }
    m_sequence.run([shared = m_shared] { shared->writeNewest(); });
    return m_newest;
}

bool IndexWriter::hasWritten(int state) const
{
    const std::scoped_lock lock(m_shared->mutex);
    return m_shared->writtenState >= state;
}

void IndexWriter::keep(const QList<Leaving>& leaving)
{
    QSet<QString> files;
    for (const Leaving& one : leaving)
        files << one.file;
    const std::scoped_lock lock(m_shared->mutex);
    m_shared->leaving.removeIf([&files](const Leaving& one) { return files.contains(one.file); });
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

#pragma once

#include "base/FlowGroup.h"
#include "base/Workers.h"

#include <QByteArray>
#include <QList>
#include <QString>
#include <QStringList>

#include <memory>
#include <vector>

namespace tonequill {

// Writes a file durably on a thread of its own, so that nobody waits for a disk. Of
// states that are handed over faster than they can be written only the newest is;
// they reach the disk in their order. One thread uses it.
class IndexWriter {
public:
    explicit IndexWriter(const QString& path);
    // What was handed over is written first.
    ~IndexWriter();
    IndexWriter(const IndexWriter&) = delete;
    IndexWriter& operator=(const IndexWriter&) = delete;

    // A file that goes once the bytes that no longer name it are on the disk. Its mark
    // stands beside it from before they are written until it has gone, so that a killed
    // program leaves no file that nobody knows.
    struct Leaving {
        QString file;
        QString mark;
    };

    // Hands over the file's bytes, in pieces, with the marks that are no longer needed
    // and the files that go once they are on the disk. The number of this state.
    int write(std::vector<QByteArray> pieces, const QStringList& marks = {}, const QList<Leaving>& leaving = {});
    // Of the newest state.
    int newest() const { return m_newest; }
    // Whether that state, or a newer one, is on the disk.
    bool hasWritten(int state) const;
    // These files stay after all. REQUIRES: nothing that was handed over waits.
    void keep(const QList<Leaving>& leaving);

    // Until all that was handed over so far has been written, or couldn't be.
    QCoro::Task<> written(FlowGroup& flows);
    // The same; blocks. False if the newest state couldn't be written: the next one
    // tries again.
    bool finish() const;
    // How often the file was written, or that was tried.
    int writeCount() const;

private:
    struct Shared;
    std::shared_ptr<Shared> m_shared;
    int m_newest = 0;
    mutable Sequence m_sequence{"index"};
};

} // namespace tonequill

#pragma once

#include "base/FlowGroup.h"
#include "base/Workers.h"

#include <QByteArray>
#include <QString>

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

    // Hands over the file's bytes, in pieces, and files that are no longer needed
    // once they are on the disk.
    void write(std::vector<QByteArray> pieces, const QStringList& thenRemove = {});

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
    mutable Sequence m_sequence{"index"};
};

} // namespace tonequill

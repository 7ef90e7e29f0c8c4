#pragma once

#include "indexing/CatalogueEntry.h"

#include <QByteArray>
#include <QSet>

#include <string>

namespace tonequill {

// Makes the file of a catalogue, the same bytes for the same entries in the same order.
class CatalogueWriter {
public:
    // Of entries with one identifier the first one counts.
    void add(const CatalogueEntry& entry);
    qsizetype count() const { return m_ids.size(); }
    qsizetype repeats() const { return m_repeats; }
    // Whether it has become more than a reader takes.
    bool isTooLarge() const { return m_items.size() > CatalogueReader::kMostBytes - kAround; }

    QByteArray file() const;

    // One entry as it stands in the file.
    static QByteArray json(const CatalogueEntry& entry);

private:
    static constexpr std::size_t kAround = 64; // what stands around the items, and to spare

    QSet<QString> m_ids;
    qsizetype m_repeats = 0;
    std::string m_items;
};

} // namespace tonequill

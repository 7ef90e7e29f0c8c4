#pragma once

#include "base/FlowGroup.h"
#include "indexing/CatalogueEntry.h"
#include "platform/network/Http.h"

#include <QFile>
#include <QHash>
#include <QStringList>

#include <chrono>

namespace tonequill {

// Gathers sounds from the public API, tag by tag and page by page, no faster than is polite.
// What was fetched stands in a journal at once: a walk that was ended goes on where it was.
// One thread, which has an event loop.
class ApiWalk {
public:
    struct Settings {
        QUrl base;
        QStringList tags;
        qsizetype mostPages = 12;                  // of a tag
        std::chrono::milliseconds pace{3500};      // from one request to the next
        std::chrono::milliseconds firstRest{5000}; // after a failure; twice as long after each further one
        std::chrono::milliseconds longestRest{900000};
        int mostFailures = 6; // of one page, in a row
        QString journal;      // its path
    };
    struct Outcome {
        qsizetype requests = 0;
        qsizetype sounds = 0;
        bool isWhole = false; // false: it gave up, and goes on another time
        QString message;      // why it gave up
    };
    // How far it is: the tag, its page and how many there are, and the sounds so far.
    using Tell = std::function<void(const QString& tag, qsizetype page, qsizetype pages, qsizetype sounds)>;

    ApiWalk(const Http& http, Clock& clock, Settings settings) : m_http(http), m_clock(clock), m_settings(std::move(settings)) {}

    // Throws Cancelled, and FileError where the journal can't be written.
    QCoro::Task<Outcome> walk(FlowGroup& flows, Tell tell);

    // What a journal has of whole pages, in their order. `take` may be null.
    struct Progress {
        QHash<QString, qsizetype> next;  // the next page of each tag that was begun
        QHash<QString, qsizetype> pages; // how many there are
        qsizetype sounds = 0;
        qint64 goodBytes = 0; // of the journal; a page that was cut off stands behind
    };
    static Progress read(const QString& journal, const TakeEntry& take);

private:
    QCoro::Task<std::optional<SearchPage>> page(FlowGroup& flows, QString tag, qsizetype number, Outcome& outcome);
    void keep(const QString& tag, qsizetype number, const SearchPage& page) const;

    const Http& m_http;
    Clock& m_clock;
    Settings m_settings;
};

} // namespace tonequill

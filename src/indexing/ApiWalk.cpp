#include "indexing/ApiWalk.h"

#include "base/JsonWriter.h"
#include "discovery/online/Openverse.h"
#include "indexing/CatalogueSources.h"
#include "indexing/CatalogueWriter.h"
#include "platform/files/Files.h"

#include <QJsonDocument>
#include <QJsonObject>

#include <cerrno>

using namespace Qt::StringLiterals;

namespace tonequill {

namespace {

constexpr qint64 kLargestJournal = qint64(2) << 30; // bytes

QByteArray pageLine(const QString& tag, qsizetype number, qsizetype pages)
{
    JsonWriter json;
    json.beginObject().key("tag").text(tag).key("page").number(qint64(number)).key("pages").number(qint64(pages)).endObject();
    return json.bytes() + '\n';
}

} // namespace

// The items of a page, a line each, and then a line that says which page it was.
ApiWalk::Progress ApiWalk::read(const QString& journal, const TakeEntry& take)
{
    Progress progress;
    if (!QFile::exists(journal))
        return progress;
    const QByteArray text = Files::readAll(journal, kLargestJournal);
    qint64 pageStart = 0;
    for (qsizetype start = 0, end = text.indexOf('\n'); end >= 0; start = end + 1, end = text.indexOf('\n', start)) {
        const QJsonObject line = QJsonDocument::fromJson(text.mid(start, end - start)).object();
        if (!line.contains(u"tag"_s))
            continue;
        const QString tag = line[u"tag"_s].toString();
        progress.next[tag] = line[u"page"_s].toInteger() + 1;
        progress.pages[tag] = line[u"pages"_s].toInteger();
        const auto count = [&](CatalogueEntry entry) {
            ++progress.sounds;
            if (take)
                take(std::move(entry));
        };
        CatalogueSources::readJsonLines(text.mid(pageStart, start - pageStart), count, [](qsizetype, const QString&) {});
        pageStart = end + 1;
    }
    progress.goodBytes = pageStart;
    return progress;
}

void ApiWalk::keep(const QString& tag, qsizetype number, const SearchPage& page) const
{
    QByteArray lines;
    for (const OnlineSound& sound : page.sounds)
        lines += CatalogueWriter::json({sound, false}) + '\n';
    lines += pageLine(tag, number, page.pageCount);
    QFile journal(m_settings.journal);
    if (!journal.open(QIODevice::Append) || journal.write(lines) != lines.size() || !journal.flush())
        throw FileError(FileError::Action::write, m_settings.journal, errno);
    Files::syncFile(m_settings.journal);
}

// None when it was asked for too often in vain.
QCoro::Task<std::optional<SearchPage>> ApiWalk::page(FlowGroup& flows, QString tag, qsizetype number, Outcome& outcome)
{
    HttpRequest request;
    request.url = Openverse::pageUrl(m_settings.base, {}, {tag}, number);
    request.redirects = HttpRequest::Redirects::followed;
    std::chrono::milliseconds rest = m_settings.firstRest;
    for (int failures = 0; failures < m_settings.mostFailures; ++failures) {
        if (outcome.requests++ > 0)
            co_await flows.pause(m_clock, m_settings.pace);
        const HttpReply reply = co_await m_http.fetch(flows, request);
        if (reply.outcome == HttpReply::Outcome::answered && reply.status == 200) {
            if (auto decoded = Openverse::decode(reply.body))
                co_return std::optional<SearchPage>(*decoded);
        }
        // A page that isn't there ends its tag; everything else may pass.
        if (reply.status == 400 || reply.status == 401 || reply.status == 404)
            co_return std::optional<SearchPage>(SearchPage{{}, number, 0});
        outcome.message = reply.status == 429 ? u"The service asks for patience."_s
                          : reply.status != 0 ? u"The service answered with status %1."_s.arg(reply.status)
                                              : u"The service can't be reached."_s;
        const std::chrono::milliseconds asked = reply.retryAfter;
        co_await flows.pause(m_clock, std::min(std::max(rest, asked), m_settings.longestRest));
        rest *= 2;
    }
    co_return std::optional<SearchPage>();
}

QCoro::Task<ApiWalk::Outcome> ApiWalk::walk(FlowGroup& flows, Tell tell)
{
    Outcome outcome;
    const Progress before = read(m_settings.journal, nullptr);
    outcome.sounds = before.sounds;
    if (QFile::exists(m_settings.journal))
        QFile::resize(m_settings.journal, before.goodBytes); // without a page that was cut off
    for (const QString& tag : std::as_const(m_settings.tags)) {
        qsizetype pages = std::min(before.pages.value(tag, 1), m_settings.mostPages);
        for (qsizetype number = before.next.value(tag, 1); number <= pages; ++number) {
            const std::optional<SearchPage> got = co_await page(flows, tag, number, outcome);
            if (!got)
                co_return Outcome(outcome);
            keep(tag, number, *got);
            pages = std::min(got->pageCount, m_settings.mostPages);
            outcome.sounds += got->sounds.size();
            tell(tag, number, pages, outcome.sounds);
        }
    }
    outcome.isWhole = true;
    outcome.message.clear();
    co_return Outcome(outcome);
}

} // namespace tonequill

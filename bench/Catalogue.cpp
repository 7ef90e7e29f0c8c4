// The catalogue of free sounds, 300,000 of them: loading it against libdeflate and a plain
// simdjson walk (bar: 2 ×; memory 1.5 × the JSON), searching it against SQLite's FTS5 and
// Xapian over the same texts (bars: median 1 ms and a third of Xapian's; worst 5 ms over
// queries without the ten commonest tags). 500 queries of 1 to 12 terms, drawn by how
// common the tags are. Wall time, on one thread each.

#include "Measure.h"
#include "discovery/catalogue/Inflater.h"
#include "discovery/catalogue/SoundIndex.h"
#include "support/Catalogues.h"

#include <QDir>
#include <QFile>

#include <libdeflate.h>
#include <malloc.h>
#include <simdjson.h>
#include <sqlite3.h>
#include <xapian.h>

using namespace Qt::StringLiterals;
using namespace tonequill;

namespace {

constexpr std::size_t kSounds = 300000;
constexpr std::uint32_t kSeed = 15;
constexpr int kQueries = 500;
constexpr int kCommonest = 10;
constexpr int kLimit = 300;

double megabytes(double bytes)
{
    return bytes / (1 << 20);
}

// Of this process, as the kernel counts it: VmRSS or VmHWM.
double statusMegabytes(const char* field)
{
    QFile status(u"/proc/self/status"_s);
    if (!status.open(QIODevice::ReadOnly))
        return 0;
    for (const QByteArray& line : status.readAll().split('\n')) {
        if (line.startsWith(field))
            return line.mid(int(qstrlen(field)) + 1).trimmed().split(' ').first().toDouble() / 1024;
    }
    return 0;
}

// The peer of the load: unpack, and walk over every value that the loader reads.
std::size_t walkPlainly(const std::string& file, std::size_t size)
{
    std::vector<char> json(size + simdjson::SIMDJSON_PADDING);
    libdeflate_decompressor* inflater = libdeflate_alloc_decompressor();
    std::size_t inflated = 0;
    libdeflate_deflate_decompress(inflater, file.data(), file.size(), json.data(), size, &inflated);
    libdeflate_free_decompressor(inflater);
    simdjson::ondemand::parser parser;
    simdjson::ondemand::document document = parser.iterate(json.data(), size, json.size());
    std::size_t sum = 0;
    for (simdjson::ondemand::object item : document["items"]) {
        for (auto field : item) {
            simdjson::ondemand::value value = field.value();
            switch (value.type()) {
            case simdjson::ondemand::json_type::string:
                sum += std::string_view(value.get_string()).size();
                break;
            case simdjson::ondemand::json_type::number:
                sum += double(value.get_double()) > 1 ? 1 : 0;
                break;
            case simdjson::ondemand::json_type::array:
                for (std::string_view tag : value.get_array())
                    sum += tag.size();
                break;
            default:
                break;
            }
        }
    }
    return sum;
}

std::vector<QStringList> makeQueries(const std::vector<QString>& commonest, bool withCommonest)
{
    test::RandomCatalogue words(kSeed + 1);
    std::vector<QStringList> queries;
    while (queries.size() < kQueries) {
        QStringList terms;
        const std::size_t count = 1 + words.below(12);
        while (std::size_t(terms.size()) < count) {
            const QString term = QString::fromStdString(words.word(words.drawnRank()));
            const bool isCommon = std::find(commonest.begin(), commonest.end(), term) != commonest.end();
            if (withCommonest || !isCommon)
                terms << term;
        }
        queries.push_back(terms);
    }
    return queries;
}

struct Times {
    double median = 0;
    double worst = 0;
    std::size_t found = 0;
};

// Milliseconds. Each query is asked three times, and the best counts.
Times timesOf(const std::vector<QStringList>& queries, const std::function<std::size_t(const QStringList&)>& ask, int rounds = 3)
{
    std::vector<double> all;
    Times times;
    for (const QStringList& query : queries) {
        double best = 1e9;
        for (int round = 0; round < rounds; ++round) {
            const auto start = std::chrono::steady_clock::now();
            const std::size_t found = ask(query);
            best = std::min(best, std::chrono::duration<double, std::milli>(std::chrono::steady_clock::now() - start).count());
            times.found += round == 0 ? found : 0;
        }
        all.push_back(best);
    }
    std::sort(all.begin(), all.end());
    times.median = all[all.size() / 2];
    times.worst = all.back();
    return times;
}

void print(const char* what, const Times& times)
{
    std::printf("  %-34s median %8.3f ms   worst %8.3f ms   %zu found\n", what, times.median, times.worst, times.found);
}

// Both peers get the tags and the words of the title, and give back the best by their own rank.
class Fts5 {
public:
    explicit Fts5(const CatalogueTables& tables)
    {
        sqlite3_open(":memory:", &m_database);
        sqlite3_exec(m_database, "create virtual table sounds using fts5(title, tags, content='', tokenize='unicode61')", nullptr,
                     nullptr, nullptr);
        sqlite3_exec(m_database, "begin", nullptr, nullptr, nullptr);
        sqlite3_stmt* insert = nullptr;
        sqlite3_prepare_v2(m_database, "insert into sounds(rowid, title, tags) values(?, ?, ?)", -1, &insert, nullptr);
        for (std::int32_t i = 0; i < tables.soundCount(); ++i) {
            const std::string title(tables.lowerTitle(i));
            std::string tags;
            for (const auto tag : tables.tags(i))
                tags += std::string(tables.text(tables.lower(tag))) + ' ';
            sqlite3_bind_int(insert, 1, i + 1);
            sqlite3_bind_text(insert, 2, title.data(), int(title.size()), SQLITE_TRANSIENT);
            sqlite3_bind_text(insert, 3, tags.data(), int(tags.size()), SQLITE_TRANSIENT);
            sqlite3_step(insert);
            sqlite3_reset(insert);
        }
        sqlite3_finalize(insert);
        sqlite3_exec(m_database, "commit", nullptr, nullptr, nullptr);
        sqlite3_prepare_v2(m_database, "select rowid from sounds where sounds match ? order by rank limit 300", -1, &m_select,
                           nullptr);
    }
    ~Fts5()
    {
        sqlite3_finalize(m_select);
        sqlite3_close(m_database);
    }
    Fts5(const Fts5&) = delete;
    Fts5& operator=(const Fts5&) = delete;

    std::size_t ask(const QStringList& terms)
    {
        const QByteArray match = (u'"' + terms.join(u"\" OR \""_s) + u'"').toUtf8();
        sqlite3_bind_text(m_select, 1, match.constData(), int(match.size()), SQLITE_TRANSIENT);
        std::size_t found = 0;
        while (sqlite3_step(m_select) == SQLITE_ROW)
            ++found;
        sqlite3_reset(m_select);
        return found;
    }

private:
    sqlite3* m_database = nullptr;
    sqlite3_stmt* m_select = nullptr;
};

class XapianPeer {
public:
    explicit XapianPeer(const CatalogueTables& tables)
    {
        const QString path = bench::folder().filePath(u"catalogue.xapian"_s);
        Xapian::WritableDatabase database(path.toStdString(), Xapian::DB_CREATE_OR_OVERWRITE);
        for (std::int32_t i = 0; i < tables.soundCount(); ++i) {
            Xapian::Document document;
            for (const auto tag : tables.tags(i))
                addTerm(document, tables.text(tables.lower(tag)), 2);
            for (const auto word : tables.titleWords(i))
                addTerm(document, tables.text(word), 1);
            database.add_document(document);
        }
        database.commit();
        database.close();
        m_database = Xapian::Database(path.toStdString());
    }

    std::size_t ask(const QStringList& terms) const
    {
        std::vector<std::string> words;
        for (const QString& term : terms)
            words.push_back(term.toStdString());
        Xapian::Enquire enquire(m_database);
        enquire.set_query(Xapian::Query(Xapian::Query::OP_OR, words.begin(), words.end()));
        return enquire.get_mset(0, kLimit).size();
    }

private:
    static void addTerm(Xapian::Document& document, std::string_view term, unsigned weight)
    {
        constexpr std::size_t kLongestTerm = 200; // it takes 245 bytes
        if (!term.empty() && term.size() < kLongestTerm)
            document.add_term(std::string(term), weight);
    }

    Xapian::Database m_database;
};

IndexQuery planned(const QStringList& terms)
{
    // The first third are the person's own words, as in most plans.
    return {terms, terms.first((terms.size() + 2) / 3), {}, kLimit, false};
}

void measureLoad(const std::string& file, std::size_t size)
{
    std::size_t sum = 0;
    const auto [ours, peers] = bench::bestOfBoth(
        7,
        [&] {
            SoundIndex index;
            return bench::costOf([&] { index.install(file); });
        },
        [&] { return bench::costOf([&] { sum += walkPlainly(file, size); }); });
    bench::printRatio("load", ours.wallSeconds, peers.wallSeconds, 2, "libdeflate + simdjson walk");
    std::printf("  %-34s %9.4f s CPU %20s %9.4f s CPU   (%zu)\n", "", ours.cpuSeconds, "", peers.cpuSeconds, sum % 10);
}

void measureMemory(SoundIndex& index, const QString& path, std::size_t size)
{
    malloc_trim(0);
    const double before = statusMegabytes("VmRSS");
    {
        QFile file(path);
        if (!file.open(QIODevice::ReadOnly))
            qFatal("the catalogue is gone");
        const QByteArray bytes = file.readAll();
        index.install({bytes.constData(), std::size_t(bytes.size())});
    }
    const double after = statusMegabytes("VmRSS");
    const double most = megabytes(double(size)) * 1.5;
    std::printf("memory: %.1f MB resident after the load, %.1f more than before (bar %.1f: %s); peak of the process %.1f MB\n",
                after, after - before, most, bench::verdict(after <= most), statusMegabytes("VmHWM"));
}

} // namespace

int main(int argc, char** argv)
{
    const QString path = bench::folder().filePath(u"catalogue-300000.bin"_s);
    if (argc > 2) { // the process whose memory is measured
        SoundIndex index;
        measureMemory(index, path, QByteArray(argv[2]).toULongLong());
        return bench::exitCode();
    }
    std::size_t size = 0;
    std::string file;
    {
        const std::string json = test::RandomCatalogue(kSeed).json(kSounds);
        size = json.size();
        file = Inflater::deflate(json);
        QFile out(path);
        if (!out.open(QIODevice::WriteOnly) || out.write(file.data(), qint64(file.size())) != qint64(file.size()))
            qFatal("could not write the catalogue");
    }
    malloc_trim(0);
    std::printf("%zu sounds, %.1f MB of JSON, %.1f MB packed\n", kSounds, megabytes(double(size)),
                megabytes(double(file.size())));
    // In a process that has done nothing else, or its old memory would be counted.
    std::fflush(stdout);
    bench::verdict(QProcess::execute(QFile::symLinkTarget(u"/proc/self/exe"_s), {u"memory"_s, QString::number(size)}) == 0);
    measureLoad(file, size);

    SoundIndex index;
    index.install(file);
    const auto tables = index.tables();
    std::vector<std::pair<std::size_t, QString>> tags;
    for (std::uint32_t symbol = 0; symbol < tables->symbolCount(); ++symbol)
        tags.emplace_back(tables->tagPostings(symbol).size(), QString::fromStdString(std::string(tables->text(symbol))));
    std::partial_sort(tags.begin(), tags.begin() + kCommonest, tags.end(), std::greater<>());
    std::vector<QString> commonest;
    for (int i = 0; i < kCommonest; ++i)
        commonest.push_back(tags[std::size_t(i)].second);
    std::printf("%u symbols; the commonest tags have %zu to %zu sounds\n", tables->symbolCount(), tags[0].first,
                tags[kCommonest - 1].first);

    const std::vector<QStringList> all = makeQueries(commonest, true);
    const std::vector<QStringList> fewer = makeQueries(commonest, false);
    const auto ours = [&](const QStringList& terms) { return std::size_t(index.search(planned(terms)).size()); };
    const Times ownAll = timesOf(all, ours);
    const Times ownFewer = timesOf(fewer, ours);
    print("search, any terms", ownAll);
    print("search, without the ten commonest", ownFewer);
    const XapianPeer xapian(*tables);
    const Times xapianFewer = timesOf(fewer, [&](const QStringList& terms) { return xapian.ask(terms); });
    print("Xapian, any terms", timesOf(
                                   all, [&](const QStringList& terms) { return xapian.ask(terms); }, 1));
    print("Xapian, without the ten commonest", xapianFewer);
    Fts5 fts5(*tables);
    print("FTS5, without the ten commonest", timesOf(
                                                 fewer, [&](const QStringList& terms) { return fts5.ask(terms); }, 1));
    std::printf("median %.3f ms (bar 1: %s), worst %.3f ms (bar 5: %s), Xapian's median %.1f × ours (bar 3: %s)\n",
                ownFewer.median, bench::verdict(ownFewer.median <= 1), ownFewer.worst, bench::verdict(ownFewer.worst <= 5),
                xapianFewer.median / ownFewer.median, bench::verdict(xapianFewer.median >= 3 * ownFewer.median));
    return bench::exitCode();
}

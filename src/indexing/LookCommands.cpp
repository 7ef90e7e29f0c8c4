// check and stats: what the program would load of a catalogue, and what is in it.

#include "base/JsonWriter.h"
#include "discovery/catalogue/CatalogueTables.h"
#include "discovery/catalogue/SoundIndex.h"
#include "indexing/Commands.h"
#include "indexing/Outcomes.h"
#include "platform/files/Files.h"

#include <algorithm>
#include <map>

using namespace Qt::StringLiterals;

namespace tonequill::indexing {

namespace {

using Fate = CatalogueItem::Fate;

constexpr qint64 kLargestFile = qint64(CatalogueReader::kMostBytes) + (qint64(1) << 20);

// Counts what becomes of the items.
class Counter final : public CatalogueVisitor {
public:
    void take(const CatalogueItem& item) override
    {
        ++counts[item.fate];
        ++total;
        if (item.fate != Fate::kept && examples[item.fate].size() < kExamples)
            examples[item.fate] << u"%1 (%2)"_s.arg(total).arg(
                QString::fromUtf8(item.title.data(), qsizetype(item.title.size())));
    }
    void startAgain() override { *this = Counter(); }

    static constexpr qsizetype kExamples = 3;
    qsizetype total = 0;
    std::map<Fate, qsizetype> counts;
    std::map<Fate, QStringList> examples; // the item's number, from 1, and its title
};

struct Options {
    QString path;
    bool json = false;
};

// The file that is named, else the one that the program would load.
std::optional<Options> optionsIn(QStringList arguments)
{
    Options options;
    options.json = arguments.removeAll(u"--json"_s) > 0;
    if (arguments.size() > 1 || (!arguments.isEmpty() && arguments.first().startsWith(u'-'))) {
        complain(u"One file, or none. Try: tonequill-index --help"_s);
        return std::nullopt;
    }
    options.path = arguments.isEmpty() ? SoundIndex::locate().value_or(QString()) : arguments.first();
    return options;
}

constexpr std::pair<Fate, const char*> kSkipped[] = {{Fate::unusable, "without identifier, title or URL"},
                                                     {Fate::format, "in a format that isn't loaded"},
                                                     {Fate::marked, "marked by the file"}};

void printCheck(const QString& path, CatalogueReader::Outcome outcome, Counter& counter)
{
    print(path);
    print(sentenceFor(outcome));
    if (outcome != CatalogueReader::Outcome::done)
        return;
    print(u"%1 sounds would be loaded, %2 skipped"_s.arg(counter.counts[Fate::kept])
              .arg(counter.total - counter.counts[Fate::kept]));
    for (const auto& [fate, words] : kSkipped) {
        if (counter.counts[fate] > 0)
            print(
                u"  %1 %2: %3 …"_s.arg(counter.counts[fate]).arg(QString::fromUtf8(words), counter.examples[fate].join(u", "_s)));
    }
}

QByteArray checkJson(const QString& path, CatalogueReader::Outcome outcome, Counter& counter)
{
    const bool isGood = outcome == CatalogueReader::Outcome::done;
    const auto count = [&](Fate fate) { return qint64(isGood ? counter.counts[fate] : 0); };
    JsonWriter json;
    json.beginObject().key("file").text(path).key("message").text(sentenceFor(outcome));
    json.key("loaded").number(count(Fate::kept)).key("skipped").beginObject();
    json.key("unusable").number(count(Fate::unusable)).key("format").number(count(Fate::format));
    json.key("marked").number(count(Fate::marked)).endObject().endObject();
    return json.bytes();
}

// The most frequent ones, the first in the file of equals first.
template <typename CountOf>
std::vector<std::pair<qsizetype, std::uint32_t>> commonest(const CatalogueTables& tables, CountOf countOf)
{
    constexpr std::size_t kShown = 10;
    std::vector<std::pair<qsizetype, std::uint32_t>> all;
    for (std::uint32_t symbol = 0; symbol < tables.symbolCount(); ++symbol) {
        if (const qsizetype count = countOf(symbol); count > 0)
            all.emplace_back(-count, symbol);
    }
    std::sort(all.begin(), all.end());
    all.resize(std::min(all.size(), kShown));
    return all;
}

} // namespace

QString sentenceFor(CatalogueReader::Outcome outcome)
{
    using Outcome = CatalogueReader::Outcome;
    switch (outcome) {
    case Outcome::done:
        return u"This is a catalogue."_s;
    case Outcome::notDeflate:
        return u"This is no raw DEFLATE stream, or one that was cut off."_s;
    case Outcome::tooLarge:
        return u"There are more than 512 MiB in it."_s;
    case Outcome::goesOn:
        return u"Bytes follow after the end of the stream."_s;
    case Outcome::noMemory:
        return u"There is not enough memory to read it."_s;
    case Outcome::notJson:
        return u"What is in it is no sound JSON document in UTF-8, or one nested too deep."_s;
    case Outcome::noItems:
        return u"What is in it is no object with an array “items” of objects."_s;
    }
    Q_UNREACHABLE();
}

int check(const QStringList& arguments)
{
    const auto options = optionsIn(arguments);
    if (!options)
        return 2;
    if (options->path.isEmpty()) {
        complain(u"The program finds no catalogue."_s);
        return 1;
    }
    const QByteArray bytes = Files::readAll(options->path, kLargestFile);
    Counter counter;
    const auto outcome = CatalogueReader::read({bytes.constData(), std::size_t(bytes.size())}, counter);
    if (options->json)
        printJson(checkJson(options->path, outcome, counter));
    else
        printCheck(options->path, outcome, counter);
    return outcome == CatalogueReader::Outcome::done && counter.counts[Fate::kept] > 0 ? 0 : 1;
}

int stats(const QStringList& arguments)
{
    const auto options = optionsIn(arguments);
    if (!options)
        return 2;
    if (options->path.isEmpty()) {
        complain(u"The program finds no catalogue."_s);
        return 1;
    }
    const QByteArray bytes = Files::readAll(options->path, kLargestFile);
    SoundIndex index;
    const auto outcome = index.install({bytes.constData(), std::size_t(bytes.size())});
    if (outcome != CatalogueReader::Outcome::done) {
        complain(sentenceFor(outcome));
        return 1;
    }
    const auto tables = index.tables();
    qint64 tags = 0;
    qint64 shortOnes = 0;
    std::map<QString, qint64> licences;
    for (std::int32_t i = 0; i < tables->soundCount(); ++i) {
        tags += qint64(tables->tags(i).size());
        shortOnes += tables->duration(i) <= 15 ? 1 : 0;
        ++licences[tables->sound(i).licenseName()];
    }
    const auto common = commonest(*tables, [&](std::uint32_t symbol) { return qsizetype(tables->tagPostings(symbol).size()); });
    const auto nameOf = [&](std::uint32_t symbol) {
        const std::string_view text = tables->text(symbol);
        return QString::fromUtf8(text.data(), qsizetype(text.size()));
    };
    if (options->json) {
        JsonWriter json;
        json.beginObject().key("file").text(options->path).key("sounds").number(qint64(tables->soundCount()));
        json.key("tags").number(tags).key("upTo15Seconds").number(shortOnes).key("licenses").beginObject();
        for (const auto& [name, count] : licences)
            json.key(name.toUtf8().constData()).number(count);
        json.endObject().key("commonestTags").beginArray();
        for (const auto& [count, symbol] : common)
            json.beginObject().key("tag").text(nameOf(symbol)).key("sounds").number(qint64(-count)).endObject();
        printJson(json.endArray().endObject().bytes());
        return 0;
    }
    print(u"%1 sounds with %2 tags, %3 of them up to 15 seconds long"_s.arg(tables->soundCount()).arg(tags).arg(shortOnes));
    for (const auto& [name, count] : licences)
        print(u"  %1 %2"_s.arg(count, 8).arg(name));
    print(u"The commonest tags:"_s);
    for (const auto& [count, symbol] : common)
        print(u"  %1 "_s.arg(-count, 8) + nameOf(symbol));
    return 0;
}

} // namespace tonequill::indexing

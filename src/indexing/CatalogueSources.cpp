#include "indexing/CatalogueSources.h"

#include "base/Text.h"

#include <QHash>
#include <QUrl>

using namespace Qt::StringLiterals;

namespace tonequill::CatalogueSources {

namespace {

class Taker final : public CatalogueVisitor {
public:
    void take(const CatalogueItem& item) override
    {
        if (auto entry = entryOf(item))
            entries.push_back(std::move(*entry));
    }
    void startAgain() override { entries.clear(); }

    std::vector<CatalogueEntry> entries;
};

struct Row {
    qsizetype line = 1; // that it begins in
    QStringList fields;
};

// The rows of comma-separated values. A quoted field may go over several lines.
std::vector<Row> rowsOf(const QString& text)
{
    std::vector<Row> rows;
    Row row;
    QString field;
    bool isQuoted = false;
    qsizetype line = 1;
    const auto endField = [&] { row.fields << std::exchange(field, QString()); };
    const auto endRow = [&] {
        endField();
        if (row.fields != QStringList{QString()})
            rows.push_back(row);
        row = {line, {}};
    };
    for (qsizetype i = 0; i < text.size(); ++i) {
        const QChar c = text[i];
        line += c == u'\n' ? 1 : 0;
        if (c == u'"' && isQuoted && i + 1 < text.size() && text[i + 1] == u'"')
            field += text[++i];
        else if (c == u'"')
            isQuoted = !isQuoted;
        else if (isQuoted || (c != u',' && c != u'\n' && c != u'\r'))
            field += c;
        else if (c == u',')
            endField();
        else if (c == u'\n')
            endRow();
    }
    endRow();
    return rows;
}

// The letter of a column in the file of a catalogue.
QChar letterOf(const QString& heading)
{
    static const QHash<QString, QChar> words{{u"id"_s, u'i'},      {u"title"_s, u't'},      {u"url"_s, u'u'},
                                             {u"tags"_s, u'g'},    {u"duration"_s, u'd'},   {u"license"_s, u'l'},
                                             {u"creator"_s, u'c'}, {u"page"_s, u'p'},       {u"source"_s, u's'},
                                             {u"pageurl"_s, u'p'}, {u"popularity"_s, u'r'}, {u"marked"_s, u'a'}};
    const QString name = text::lowercase(text::trimmed(heading));
    return name.size() == 1 ? name[0] : words.value(name);
}

void put(CatalogueEntry& entry, QChar column, const QString& value)
{
    OnlineSound& sound = entry.sound;
    switch (column.unicode()) {
    case u'i':
        sound.id = value;
        break;
    case u't':
        sound.title = value;
        break;
    case u'u':
        sound.url = value;
        break;
    case u'g':
        for (const QString& tag : value.split(u';', Qt::SkipEmptyParts))
            sound.tags << text::trimmed(tag);
        break;
    case u'a':
        entry.isMarked = value == u"1";
        break;
    case u'd':
        sound.duration = value.toDouble();
        break;
    case u'l':
        sound.license = value.isEmpty() ? sound.license : value;
        break;
    case u'c':
        if (!value.isEmpty())
            sound.creator = value;
        break;
    case u'p':
        if (!value.isEmpty())
            sound.pageURL = value;
        break;
    case u's':
        if (value == u"w" || value == OnlineSound::kWikimedia)
            sound.source = OnlineSound::kWikimedia.toString();
        break;
    case u'r':
        sound.popularity = value.toDouble();
        break;
    default:
        break;
    }
}

} // namespace

void readJsonLines(const QByteArray& text, const TakeEntry& take, const TakeFault& fault)
{
    qsizetype number = 0;
    for (qsizetype start = 0; start < text.size();) {
        const qsizetype found = text.indexOf('\n', start);
        const qsizetype end = found < 0 ? text.size() : found;
        const std::string_view line(text.constData() + start, std::size_t(end - start));
        start = end + 1;
        ++number;
        if (line.find_first_not_of(" \t\r") == std::string_view::npos)
            continue;
        Taker taker;
        if (CatalogueReader::readItems(line, taker) != CatalogueReader::Outcome::done)
            fault(number, u"This is not one JSON object."_s);
        else if (taker.entries.size() != 1)
            fault(number, u"Identifier, title or URL is missing."_s);
        else
            take(std::move(taker.entries.front()));
    }
}

void readCsv(const QByteArray& text, const TakeEntry& take, const TakeFault& fault)
{
    const std::vector<Row> rows = rowsOf(QString::fromUtf8(text.startsWith("\xEF\xBB\xBF") ? text.mid(3) : text));
    if (rows.empty())
        return;
    QList<QChar> columns;
    for (const QString& heading : rows.front().fields)
        columns << letterOf(heading);
    for (auto row = rows.begin() + 1; row != rows.end(); ++row) {
        CatalogueEntry entry;
        entry.sound.license = u"cc0"_s;
        entry.sound.source = OnlineSound::kFreesound.toString();
        for (qsizetype i = 0; i < std::min(columns.size(), row->fields.size()); ++i)
            put(entry, columns[i], row->fields[i]);
        if (entry.sound.id.isEmpty() || entry.sound.title.isEmpty() || !QUrl(entry.sound.url).isValid())
            fault(row->line, u"Identifier, title or URL is missing."_s);
        else
            take(std::move(entry));
    }
}

CatalogueReader::Outcome readCatalogue(const QByteArray& file, const TakeEntry& take)
{
    Taker taker;
    const auto outcome = CatalogueReader::read({file.constData(), std::size_t(file.size())}, taker);
    if (outcome == CatalogueReader::Outcome::done) {
        for (CatalogueEntry& entry : taker.entries)
            take(std::move(entry));
    }
    return outcome;
}

} // namespace tonequill::CatalogueSources

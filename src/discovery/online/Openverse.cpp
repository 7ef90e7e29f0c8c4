#include "discovery/online/Openverse.h"

#include "base/Text.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QUrlQuery>

#include <algorithm>
#include <array>
#include <cmath>

using namespace Qt::StringLiterals;

namespace tonequill::Openverse {

namespace {

constexpr std::array<QStringView, 7> kExtensions{u".wav", u".mp3", u".aiff", u".aif", u".flac", u".ogg", u".m4a"};
constexpr double kMillisecondsInASecond = 1000;

// An integer; none for anything else.
std::optional<qsizetype> integerIn(const QJsonValue& value)
{
    constexpr double kMost = 1e15; // what a double holds exactly
    const double number = value.toDouble();
    if (!value.isDouble() || std::trunc(number) != number || std::abs(number) > kMost)
        return std::nullopt;
    return qsizetype(number);
}

std::optional<QString> textIn(const QJsonValue& value)
{
    return value.isString() ? std::optional(value.toString()) : std::nullopt;
}

QStringList tagsIn(const QJsonValue& value)
{
    QStringList tags;
    const QJsonArray entries = value.toArray();
    const bool areObjects = std::all_of(entries.begin(), entries.end(), [](const QJsonValue& one) { return one.isObject(); });
    for (const QJsonValue& entry : areObjects ? entries : QJsonArray()) {
        if (const auto name = textIn(entry[u"name"_s]))
            tags << *name;
    }
    return tags;
}

std::optional<OnlineSound> soundIn(const QJsonValue& result)
{
    const auto id = textIn(result[u"id"_s]);
    const auto title = textIn(result[u"title"_s]);
    const auto url = textIn(result[u"url"_s]);
    if (!id || !title || !url || !QUrl(*url).isValid())
        return std::nullopt;
    OnlineSound sound;
    sound.id = *id;
    sound.title = cleaned(*title);
    sound.url = *url;
    sound.duration = result[u"duration"_s].toDouble() / kMillisecondsInASecond;
    sound.license = textIn(result[u"license"_s]).value_or(u"cc0"_s);
    sound.creator = textIn(result[u"creator"_s]);
    const auto page = textIn(result[u"foreign_landing_url"_s]);
    if (page && QUrl(*page).isValid())
        sound.pageURL = page;
    sound.tags = tagsIn(result[u"tags"_s]);
    sound.source = OnlineSound::kFreesound.toString();
    return sound;
}

} // namespace

QUrl base()
{
    const QString own = qEnvironmentVariable("TONEQUILL_OPENVERSE_URL");
    return QUrl(own.isEmpty() ? u"https://api.openverse.org"_s : own);
}

QUrl pageUrl(const QUrl& base, const std::optional<QString>& query, const QStringList& tags, qsizetype number)
{
    const auto encoded = [](const QString& text) { return QString::fromLatin1(QUrl::toPercentEncoding(text)); };
    QUrlQuery items;
    if (!tags.isEmpty())
        items.addQueryItem(u"tags"_s, encoded(tags.join(u',')));
    else if (query)
        items.addQueryItem(u"q"_s, encoded(*query));
    items.addQueryItem(u"license"_s, u"cc0,pdm"_s);
    items.addQueryItem(u"source"_s, u"freesound"_s);
    items.addQueryItem(u"page_size"_s, u"20"_s);
    items.addQueryItem(u"page"_s, QString::number(number));
    QUrl url = base;
    url.setPath(u"/v1/audio/"_s);
    url.setQuery(items);
    return url;
}

QString cleaned(const QString& title)
{
    QString rest = title;
    for (const QStringView extension : kExtensions) {
        if (rest.endsWith(extension, Qt::CaseInsensitive))
            rest.chop(extension.size());
    }
    return text::trimmed(rest);
}

std::optional<SearchPage> decode(const QByteArray& json, std::optional<double> maxSeconds)
{
    const QJsonObject root = QJsonDocument::fromJson(json).object();
    const QJsonValue results = root[u"results"_s];
    const QJsonArray list = results.toArray();
    if (!results.isArray() || !std::all_of(list.begin(), list.end(), [](const QJsonValue& one) { return one.isObject(); }))
        return std::nullopt;
    SearchPage page;
    for (const QJsonValue& result : list) {
        const auto sound = soundIn(result);
        if (sound && !(maxSeconds && sound->duration > *maxSeconds))
            page.sounds << *sound;
    }
    page.pageCount = std::min(integerIn(root[u"page_count"_s]).value_or(1), SearchPage::kMostPages);
    page.total = integerIn(root[u"result_count"_s]).value_or(page.sounds.size());
    return page;
}

} // namespace tonequill::Openverse

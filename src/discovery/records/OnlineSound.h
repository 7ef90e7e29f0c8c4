#pragma once

#include "library/records/SoundItem.h"

#include <QList>
#include <QString>
#include <QStringList>

#include <optional>

namespace tonequill {

// One free sound, of the offline catalogue or from the network: a plain value,
// identified by `id`. Nothing in it is believed: it comes from outside.
struct OnlineSound {
    QString id;                     // at the source; unique among results
    QString title;                  // as shown, without the extension of an audio file
    QString url;                    // of the audio file, as the source writes it; QUrl takes it
    double duration = 0;            // seconds
    QString license;                // a code, such as "cc0", "pdm", "by", "by-sa"
    std::optional<QString> creator; // the person to credit
    std::optional<QString> pageURL; // where it is shown; QUrl takes it
    QStringList tags;               // in the order of the source
    QString source;                 // kFreesound or kWikimedia
    bool isArabic = false;
    double popularity = 0;

    static constexpr QStringView kFreesound = u"freesound";
    static constexpr QStringView kWikimedia = u"wikimedia_audio";

    bool operator==(const OnlineSound&) const = default;

    // The licence as people know it; a code that is unknown counts as CC0.
    QString licenseName() const;

    // What it takes into the library: its first 8 tags in lower case.
    SoundInfo info() const;
};

// Over all fields, as equality is.
size_t qHash(const OnlineSound& sound, size_t seed = 0);

// One page of what a search of the network found.
struct SearchPage {
    QList<OnlineSound> sounds;
    qsizetype pageCount = 1; // at most kMostPages
    qsizetype total = 0;     // what the service says that it has

    static constexpr qsizetype kMostPages = 12;

    bool operator==(const SearchPage&) const = default;
};

} // namespace tonequill

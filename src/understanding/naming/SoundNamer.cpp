#include "understanding/naming/SoundNamer.h"

#include "base/Text.h"

#include <QHash>
#include <QSet>

#include <cmath>

namespace tonequill::SoundNamer {

using namespace Qt::StringLiterals;

namespace {

constexpr double kSure = 0.7;
constexpr double kProbable = 0.4;
constexpr double kPossible = 0.15; // below it nothing is claimed
constexpr double kShortSeconds = 1;
constexpr qsizetype kMostWords = 3;

// Labels that read badly by the rule.
const QHash<QString, QString>& friendly()
{
    static const QHash<QString, QString> table = {
        {u"whoosh_swoosh_swish"_s, u"Whoosh"_s},
        {u"thump_thud"_s, u"Thud"_s},
        {u"gunshot_gunfire"_s, u"Gunshot"_s},
        {u"glass_breaking"_s, u"Glass Break"_s},
        {u"crumpling_crinkling"_s, u"Crinkle"_s},
        {u"liquid_splashing"_s, u"Splash"_s},
        {u"finger_snapping"_s, u"Finger Snap"_s},
        {u"typing_computer_keyboard"_s, u"Keyboard Typing"_s},
        {u"wind_noise_microphone"_s, u"Wind Rumble"_s},
        {u"belly_laugh"_s, u"Big Laugh"_s},
        {u"baby_laughter"_s, u"Baby Laugh"_s},
        {u"chuckle_chortle"_s, u"Chuckle"_s},
        {u"slap_smack"_s, u"Slap"_s},
        {u"tick_tock"_s, u"Tick Tock"_s},
    };
    return table;
}

// Label words that carry no meaning.
bool isFiller(const QString& word)
{
    static const QSet<QString> words = {u"noise"_s, u"sound"_s, u"sounds"_s, u"general"_s, u"other"_s};
    return words.contains(word);
}

QString certainty(double confidence)
{
    if (confidence >= kSure)
        return u"Sounds like"_s;
    return confidence >= kProbable ? u"Probably"_s : u"Maybe"_s;
}

} // namespace

QString pretty(const QString& label)
{
    if (const auto name = friendly().find(label); name != friendly().end())
        return *name;
    QStringList all;
    for (const QString& word : label.split(u'_', Qt::SkipEmptyParts))
        all << text::lowercase(word);
    QStringList words;
    std::copy_if(all.begin(), all.end(), std::back_inserter(words), [](const QString& word) { return !isFiller(word); });
    if (words.isEmpty())
        words = all;
    words = words.first(std::min(words.size(), kMostWords));
    for (QString& word : words)
        word = text::capitalized(word);
    return words.join(u' ');
}

SoundHeard ruleBased(const std::vector<HeardLabel>& labels, const QStringList& /*descriptors*/, double duration)
{
    if (labels.empty() || labels.front().confidence < kPossible)
        return {QString(), u"I couldn't tell what this is. Listen and rename it if you like."_s, u"Not sure what this is"_s,
                labels};
    const double confidence = labels.front().confidence;
    const QString name = pretty(labels.front().name);
    const QString low = text::lowercase(name);
    const QString headline = u"%1 %2 (%3% sure)"_s.arg(certainty(confidence), low).arg(std::lround(confidence * 100));
    const QString summary = labels.size() > 1 ? u"%1, with a hint of %2."_s.arg(name, text::lowercase(pretty(labels[1].name)))
                                              : u"A %1 %2."_s.arg(duration < kShortSeconds ? u"short"_s : u"longer"_s, low);
    return {name, summary, headline, labels};
}

} // namespace tonequill::SoundNamer

#include "library/records/NamePolicy.h"

#include "base/Text.h"

#include <QRegularExpression>

#include <algorithm>
#include <array>

using namespace Qt::StringLiterals;

namespace tonequill::NamePolicy {

namespace {

// What cameras, recorders and editors call a file that nobody named.
constexpr std::array kGenericWords{
    "img"_L1,        "vid"_L1,       "mov"_L1,           "dsc"_L1,   "mvi"_L1,      "screen recording"_L1,
    "screenshot"_L1, "recording"_L1, "new recording"_L1, "audio"_L1, "untitled"_L1, "track"_L1,
    "voice"_L1,      "clip"_L1,      "sound"_L1,         "video"_L1, "capture"_L1,  "output"_L1,
    "export"_L1,     "final"_L1,
};

} // namespace

bool isGeneric(const QString& name)
{
    QString rest = text::trimmed(text::lowercase(text::shownPart(name))); // of megabytes the beginning tells enough
    constexpr qsizetype kShortestTellingName = 3;                         // characters
    if (text::characterCount(rest) < kShortestTellingName)
        return true;

    const qsizetype letters = text::letterCount(rest);
    const qsizetype digits = text::numberCount(rest);
    constexpr double kMostlyNumbers = 0.4; // share of numbers among letters and numbers
    if (digits > 0 && double(digits) / double(std::max<qsizetype>(letters + digits, 1)) >= kMostlyNumbers)
        return true;

    static const QRegularExpression fillers(u"[0-9 _\\-.()]+"_s);
    rest = rest.replace(fillers, u" "_s);
    while (rest.startsWith(u' '))
        rest.remove(0, 1);
    while (rest.endsWith(u' '))
        rest.chop(1);
    return std::find(kGenericWords.begin(), kGenericWords.end(), rest) != kGenericWords.end();
}

} // namespace tonequill::NamePolicy

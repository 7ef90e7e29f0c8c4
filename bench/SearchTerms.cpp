// How long an Arabic word takes to become English. The walk over the whole
// dictionary for an unknown word may take 50 µs. Then every word of the
// dictionary with every prefix and suffix before and after it, as people write.

#include "terms/SearchTerms.h"
#include "Bar.h"

#include <algorithm>
#include <chrono>
#include <cstdio>

using namespace Qt::StringLiterals;
using namespace tonequill;

namespace {

constexpr double kWalkBar = 50; // µs

// Microseconds for one word: the best of many rounds.
double microseconds(const QString& word, SearchTerms::Fuzzy fuzzy)
{
    double best = 1e9;
    for (int round = 0; round < 200; ++round) {
        const auto start = std::chrono::steady_clock::now();
        const QStringList found = SearchTerms::english(word, fuzzy);
        const auto end = std::chrono::steady_clock::now();
        best = std::min(best, std::chrono::duration<double, std::micro>(end - start).count());
    }
    return best;
}

void measureWalks()
{
    std::printf("the fuzzy walk over %lld keys (bar %.0f µs)\n", qint64(SearchTerms::dictionary().size()), kWalkBar);
    for (const QString& unknown : {u"ظظظظ"_s, u"ظظظظظ"_s, u"مستحيلات"_s, u"ابواب"_s, u"بالمستشفيات"_s, QString(10000, u'ظ')}) {
        const double walk = microseconds(unknown, SearchTerms::Fuzzy::yes);
        const bool isOneWord = unknown.size() < 100;
        std::printf("  %5lld letters  %9.2f µs   %s\n", qint64(unknown.size()), walk,
                    isOneWord ? bench::verdict(walk <= kWalkBar) : "(no word; no bar)");
    }
}

void measureWholeDictionary()
{
    const QStringList prefixes{u""_s,    u"ال"_s, u"عال"_s, u"بال"_s, u"لل"_s, u"وال"_s, u"فال"_s,
                               u"كال"_s, u"و"_s,  u"ف"_s,   u"ب"_s,   u"ل"_s,  u"ك"_s,   u"س"_s};
    const QStringList suffixes{u""_s, u"ات"_s, u"ون"_s, u"ين"_s, u"ان"_s, u"ه"_s, u"ي"_s, u"ك"_s, u"نا"_s, u"ها"_s, u"هم"_s};
    QStringList words;
    for (const QString& key : SearchTerms::dictionary().keys())
        for (const QString& prefix : prefixes)
            for (const QString& suffix : suffixes)
                words << prefix + key + suffix;
    for (const auto fuzzy : {SearchTerms::Fuzzy::no, SearchTerms::Fuzzy::yes}) {
        qint64 known = 0;
        const auto start = std::chrono::steady_clock::now();
        for (const QString& word : words)
            known += SearchTerms::english(word, fuzzy).isEmpty() ? 0 : 1;
        const double total = std::chrono::duration<double, std::micro>(std::chrono::steady_clock::now() - start).count();
        std::printf("%s: %lld of %lld forms known, %.2f µs each, %.1f ms in all\n",
                    fuzzy == SearchTerms::Fuzzy::yes ? "fuzzy" : "exact", known, qint64(words.size()),
                    total / double(words.size()), total / 1000);
    }
}

} // namespace

int main()
{
    measureWalks();
    measureWholeDictionary();
    return bench::exitCode();
}

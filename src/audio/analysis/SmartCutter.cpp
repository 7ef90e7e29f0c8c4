#include "audio/analysis/SmartCutter.h"

#include <algorithm>
#include <cmath>
#include <span>

// Positions are hops of about 10 ms, levels are dB of the hops' RMS. The numbers
// are tuned together.

namespace tonequill {

namespace {

using Index = std::ptrdiff_t;

constexpr Index kMinHops = 3;
constexpr float kAudibleRms = 0.0001F;
constexpr float kQuietestRms = 0.000001F; // -120 dB
constexpr float kQuietestPeak = 0.00001F; // below it, a part counts as -100 dB
constexpr float kNoPeakDb = -100;

constexpr float kPeakRangeDb = 40;  // a peak this far below the loudest is none
constexpr Index kPeakReach = 8;     // hops to both sides that a peak must lead
constexpr float kValleyDb = 10;     // a dip that deep parts two events
constexpr float kAttackDb = 30;     // where an event begins
constexpr float kDecayDb = 42;      // where it has died away: tails matter more
constexpr Index kDecayHops = 5;     // and how long it has to stay there
constexpr Index kLeadHops = 2;      // kept before an event
constexpr Index kTailHops = 4;      // kept after it
constexpr Index kShortestHops = 4;  // a shorter part is no candidate
constexpr double kLongSeconds = 2;  // no gain for being longer
constexpr float kContrastDb = 40;   // no gain for standing out further
constexpr float kWholeRangeDb = 35; // what belongs to the whole sound
constexpr Index kWholeTailHops = 6; // exclusive
constexpr float kWholePenaltyDb = 6;
constexpr double kNearlyWhole = 0.9;

// One stretch of hops that may become a candidate; `last` is exclusive.
struct Part {
    Index first = 0;
    Index last = 0;
    float peakDb = 0;
    float score = 0;
};

float decibels(float amplitude)
{
    return 20 * std::log10(amplitude);
}

std::vector<float> levels(const std::vector<float>& rms)
{
    std::vector<float> db(rms.size());
    std::transform(rms.begin(), rms.end(), db.begin(), [](float value) { return decibels(std::max(value, kQuietestRms)); });
    return db;
}

// The earliest lowest hop of first…last, both included.
Index lowest(std::span<const float> db, Index first, Index last)
{
    return std::min_element(db.begin() + first, db.begin() + last + 1) - db.begin();
}

float lowestLevel(std::span<const float> db, Index first, Index last)
{
    float level = db[std::size_t(first)];
    for (Index i = first + 1; i <= last; ++i)
        level = std::min(level, db[std::size_t(i)]);
    return level;
}

bool leadsItsNeighbours(std::span<const float> db, Index i)
{
    const Index first = std::max<Index>(0, i - kPeakReach);
    const Index last = std::min(std::ssize(db) - 1, i + kPeakReach);
    return std::none_of(db.begin() + first, db.begin() + last + 1, [&](float level) { return level > db[std::size_t(i)]; });
}

std::vector<Index> findPeaks(std::span<const float> db)
{
    const float floor = *std::max_element(db.begin(), db.end()) - kPeakRangeDb;
    std::vector<Index> peaks;
    for (Index i = 0; i < std::ssize(db); ++i) {
        if (db[std::size_t(i)] >= floor && leadsItsNeighbours(db, i)) {
            peaks.push_back(i);
            i += kPeakReach; // the next one is at least 9 hops away
        }
    }
    return peaks;
}

// Takes peaks together that no deep dip parts.
std::vector<Index> mergeIntoEvents(std::span<const float> db, const std::vector<Index>& peaks)
{
    std::vector<Index> events;
    float valley = 0;   // lowest level from the last event on…
    Index lookedAt = 0; // …up to this hop, so that no hop is looked at twice
    for (const Index peak : peaks) {
        const float level = db[std::size_t(peak)];
        if (events.empty()) {
            events.push_back(peak);
        } else {
            valley = std::min(valley, lowestLevel(db, lookedAt, peak));
            const float lastLevel = db[std::size_t(events.back())];
            if (valley <= std::min(lastLevel, level) - kValleyDb) {
                events.push_back(peak);
            } else if (lastLevel < level) {
                events.back() = peak;
            } else {
                lookedAt = peak;
                continue;
            }
        }
        valley = level;
        lookedAt = peak;
    }
    return events;
}

// The largest peak of first up to but excluding last; 0 for an empty range.
float largestPeak(const AudioAnalysis& a, Index first, Index last)
{
    float largest = 0;
    for (Index i = first; i < last; ++i)
        largest = std::max(largest, a.peak[std::size_t(i)]);
    return largest;
}

// The part around the event at `peak`, which owns the hops lo…hi.
std::optional<Part> partAround(Index peak, Index lo, Index hi, std::span<const float> db, const AudioAnalysis& a)
{
    const Index n = std::ssize(db);
    const float level = db[std::size_t(peak)];
    Index start = peak;
    while (start > lo && db[std::size_t(start - 1)] > level - kAttackDb)
        --start;
    Index stop = peak;
    while (stop < hi) {
        const auto next = db.begin() + stop + 1;
        const auto end = db.begin() + std::min(stop + kDecayHops, n - 1) + 1;
        if (std::all_of(next, end, [&](float later) { return later < level - kDecayDb; }))
            break;
        ++stop;
    }

    Part part;
    part.first = std::max<Index>(0, start - kLeadHops);
    part.last = std::min(stop + kTailHops, n);
    if (part.last - part.first < kShortestHops)
        return std::nullopt;
    const float loudest = largestPeak(a, part.first, part.last);
    part.peakDb = loudest > kQuietestPeak ? decibels(loudest) : kNoPeakDb;
    const float contrast = level - lowestLevel(db, lo, hi);
    const double seconds = a.hopSeconds * static_cast<double>(part.last - part.first);
    part.score = 2 * static_cast<float>(std::min(seconds, kLongSeconds)) + part.peakDb + 0.25F * std::min(contrast, kContrastDb);
    return part;
}

std::vector<Part> partsOf(const std::vector<Index>& events, std::span<const float> db, const AudioAnalysis& a)
{
    std::vector<Part> parts;
    Index lo = 0;
    for (std::size_t k = 0; k < events.size(); ++k) {
        const bool isLast = k + 1 == events.size();
        const Index hi = isLast ? std::ssize(db) - 1 : lowest(db, events[k], events[k + 1]);
        if (const auto part = partAround(events[k], lo, hi, db, a))
            parts.push_back(*part);
        lo = hi;
    }
    return parts;
}

CutCandidate candidateOf(const Part& part, const AudioAnalysis& a)
{
    CutCandidate candidate;
    candidate.id = QUuid::createUuid();
    candidate.start = a.hopSeconds * static_cast<double>(part.first);
    candidate.end = std::min(a.hopSeconds * static_cast<double>(part.last), a.duration);
    candidate.peakDb = part.peakDb;
    candidate.score = part.score;
    return candidate;
}

// The sound without its silent ends.
std::optional<CutCandidate> trimmedWhole(std::span<const float> db, const AudioAnalysis& a)
{
    if (db.empty())
        return std::nullopt;
    const float floor = *std::max_element(db.begin(), db.end()) - kWholeRangeDb;
    const auto isAudible = [floor](float level) { return level >= floor; };
    const Index i = std::find_if(db.begin(), db.end(), isAudible) - db.begin();
    const Index j = std::ssize(db) - 1 - (std::find_if(db.rbegin(), db.rend(), isAudible) - db.rbegin());
    if (i >= j)
        return std::nullopt;
    Part part;
    part.first = std::max<Index>(0, i - kLeadHops);
    part.last = std::min(j + kWholeTailHops, std::ssize(db));
    const float loudest = largestPeak(a, part.first, part.last);
    part.peakDb = loudest > kQuietestPeak ? decibels(loudest) : kNoPeakDb;
    part.score = decibels(std::max(loudest, kQuietestPeak)) - kWholePenaltyDb;
    CutCandidate whole = candidateOf(part, a);
    whole.isWhole = true;
    return whole;
}

// The plain full length; not a trimmed whole, and so not marked as one.
std::vector<CutCandidate> fallback(const AudioAnalysis& a)
{
    CutCandidate candidate;
    candidate.id = QUuid::createUuid();
    candidate.end = a.duration;
    candidate.isBest = true;
    return {candidate};
}

} // namespace

std::vector<CutCandidate> SmartCutter::candidates(const AudioAnalysis& a, int maxCount)
{
    Q_ASSERT(maxCount >= 1 && a.rms.size() == a.peak.size());
    if (std::ssize(a.rms) < kMinHops || !(*std::max_element(a.rms.begin(), a.rms.end()) > kAudibleRms))
        return fallback(a);
    const std::vector<float> db = levels(a.rms);
    std::vector<Part> parts = partsOf(mergeIntoEvents(db, findPeaks(db)), db, a);
    if (parts.empty())
        return fallback(a);
    std::stable_sort(parts.begin(), parts.end(), [](const Part& left, const Part& right) { return left.score > right.score; });
    parts.resize(std::min(parts.size(), static_cast<std::size_t>(maxCount)));

    std::vector<CutCandidate> list;
    std::transform(parts.begin(), parts.end(), std::back_inserter(list), [&](const Part& part) { return candidateOf(part, a); });
    if (list.size() >= 2) {
        if (auto whole = trimmedWhole(db, a)) {
            const double enough = kNearlyWhole * (whole->end - whole->start);
            if (std::none_of(list.begin(), list.end(), [&](const CutCandidate& part) { return part.end - part.start >= enough; }))
                list.push_back(*std::move(whole));
        }
    }
    return ranked(std::move(list), static_cast<int>(std::min(std::ssize(list), Index(maxCount) + 1)));
}

std::vector<CutCandidate> SmartCutter::ranked(std::vector<CutCandidate> list, int maxCount)
{
    Q_ASSERT(maxCount >= 0);
    std::stable_sort(list.begin(), list.end(),
                     [](const CutCandidate& left, const CutCandidate& right) { return left.score > right.score; });
    if (list.size() > static_cast<std::size_t>(maxCount))
        list.erase(list.begin() + maxCount, list.end());
    for (CutCandidate& candidate : list)
        candidate.isBest = false;
    if (!list.empty())
        list.front().isBest = true;
    return list;
}

} // namespace tonequill

#pragma once

#include "discovery/records/OnlineSound.h"

#include <QList>
#include <QStringList>
#include <QStringView>

#include <array>

// Scores and orders sounds from the network by the terms of a plan, as the offline
// catalogue does with its own; the relevance that a service gives is not used.
// Terms and primary are in lower case. Pure; any thread.
namespace tonequill::SoundRanker {

enum class PreferShort { no, yes };

// Sounds with one of these tags lie under others: they are no short effects.
inline constexpr std::array<QStringView, 7> kBackgroundTags{u"loop",    u"music", u"song", u"ambience",
                                                            u"ambient", u"test",  u"demo"};

// Zero and below: no useful match.
double score(const OnlineSound& sound, const QStringList& terms, const QStringList& primary, PreferShort preferShort);

// The same sounds, the best first; equal ones keep their order.
QList<OnlineSound> rank(const QList<OnlineSound>& sounds, const QStringList& terms, const QStringList& primary,
                        PreferShort preferShort);

} // namespace tonequill::SoundRanker

#pragma once

#include "discovery/records/OnlineSound.h"

#include <QByteArray>
#include <QUrl>

#include <optional>

// The language of the public search for free sounds: what is asked, and what an answer says.
// Pure; any thread.
namespace tonequill::Openverse {

// Its public address, unless TONEQUILL_OPENVERSE_URL names another one.
QUrl base();

// The address of one page of results, from 1. Tags win over a query; with neither, all
// sounds are asked for.
QUrl pageUrl(const QUrl& base, const std::optional<QString>& query, const QStringList& tags, qsizetype number);

// A page; none if the answer isn't one. A result that can't be used is left out, and so is one
// that is longer than `maxSeconds`.
std::optional<SearchPage> decode(const QByteArray& json, std::optional<double> maxSeconds = {});

// A title without the extensions of audio files, and without white space at its ends.
QString cleaned(const QString& title);

} // namespace tonequill::Openverse

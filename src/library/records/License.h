#pragma once

#include <QString>

#include <optional>

// What the licence of a sound asks of whoever uses it. Pure functions.
namespace tonequill::License {

// Whether the sound's maker must be named: true for "CC BY" and what begins so
// ("CC BY-SA"), in any case; not for "CC0", "Public domain" or no licence at all.
bool needsCredit(const std::optional<QString>& label);

} // namespace tonequill::License

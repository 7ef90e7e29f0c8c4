#pragma once

#include "library/records/SoundItem.h"

#include <QByteArray>
#include <QList>

#include <optional>

namespace tonequill::LibraryIndex {

// The text of "index.json" (docs/formats/index-json.md). Pure; any thread.

// One record as a compact JSON object: keys in declared order, optional fields
// left out while they hold none, numbers in their shortest exact form.
QByteArray encode(const SoundItem& item);

// The whole index; none if it isn't valid JSON of valid records. Unknown keys
// are skipped and null counts as absent. Any bytes may be given.
std::optional<QList<SoundItem>> decode(const QByteArray& json);

} // namespace tonequill::LibraryIndex

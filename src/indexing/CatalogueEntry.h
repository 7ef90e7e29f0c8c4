#pragma once

#include "discovery/catalogue/CatalogueReader.h"
#include "discovery/records/OnlineSound.h"

#include <functional>

namespace tonequill {

// What a catalogue's file says of one sound.
struct CatalogueEntry {
    OnlineSound sound;
    bool isMarked = false; // it stands in the file and is not loaded
};

// None for an item without identifier, title or URL.
std::optional<CatalogueEntry> entryOf(const CatalogueItem& item);

// Takes entries as they are read.
using TakeEntry = std::function<void(CatalogueEntry)>;

} // namespace tonequill

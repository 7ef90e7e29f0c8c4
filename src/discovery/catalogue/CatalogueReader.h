#pragma once

#include "base/Progress.h"

#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>
#include <string_view>
#include <vector>

namespace tonequill {

// One sound as it stands in the file of a catalogue (docs/formats/sound-index.md).
// The texts are UTF-8, and views: they hold while the reader shows it.
struct CatalogueItem {
    // What becomes of an item; the first that applies.
    enum class Fate : std::uint8_t {
        kept,
        unusable, // no identifier, title or URL
        format,   // the URL's extension is one that isn't loaded
        marked,   // by the file itself
    };

    Fate fate = Fate::kept;
    std::string_view id;
    std::string_view title;
    std::string_view url;
    std::optional<std::string_view> page;
    std::vector<std::string_view> tags;
    double duration = 0; // seconds
    std::string_view license;
    std::optional<std::string_view> creator;
    bool isFromWikimedia = false;
    double popularity = 0;
};

// Takes what a reader finds.
class CatalogueVisitor {
public:
    virtual ~CatalogueVisitor() = default;
    // How long the document is, before its first item.
    virtual void begin(std::size_t) {}
    // Item after item, in the order of the file, those that aren't kept among them.
    virtual void take(const CatalogueItem& item) = 0;
    // What was taken counts no more: the file says the same thing again.
    virtual void startAgain() = 0;
};

// Reads the file of a catalogue. Nothing in it is believed. Pure; any thread.
struct CatalogueReader {
    enum class Outcome : std::uint8_t {
        done,
        notDeflate, // no such stream, or one that was cut off
        tooLarge,   // more than kMostBytes in it
        goesOn,     // bytes follow after its end
        noMemory,
        notJson, // not one document of UTF-8 JSON, or one nested deeper than kDeepest
        noItems, // its root isn't an object with an array "items" of objects
    };

    static constexpr std::size_t kMostBytes = std::size_t(512) << 20;
    static constexpr int kDeepest = 512;

    // A whole file. A visitor that was shown items must forget them unless the outcome
    // is `done`. Throws Cancelled, within 50 ms but for the time of the inflation.
    static Outcome read(std::span<const char> file, CatalogueVisitor& visitor, Progress* progress = nullptr);

    // Items as they stand in the document, separated by commas, without what is around them.
    static Outcome readItems(std::string_view items, CatalogueVisitor& visitor);
};

} // namespace tonequill

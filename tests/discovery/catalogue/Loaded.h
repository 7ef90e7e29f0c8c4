#pragma once

#include "discovery/catalogue/Inflater.h"
#include "discovery/catalogue/SoundIndex.h"

#include <memory>
#include <string>

namespace tonequill::test {

// A document as a file has it.
inline std::string packed(const std::string& json)
{
    return Inflater::deflate(json, Inflater::Effort::quick);
}

// What the loader makes of a document.
inline CatalogueReader::Outcome install(SoundIndex& index, const std::string& json)
{
    return index.install(packed(json));
}

inline std::shared_ptr<const CatalogueTables> loaded(const std::string& json)
{
    SoundIndex index;
    install(index, json);
    return index.tables();
}

// A document of items.
inline std::string document(const std::string& items)
{
    return "{\"items\":[" + items + "]}";
}

// An item with what every item needs, and more fields.
inline std::string item(const std::string& more = {})
{
    return R"({"i":"1","t":"Door Slam","u":"https://example.org/door.mp3")" + (more.empty() ? "" : "," + more) + "}";
}

} // namespace tonequill::test

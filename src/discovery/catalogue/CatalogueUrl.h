#pragma once

#include <string_view>

// What the loader asks of the addresses in a catalogue, 600,000 of them: QUrl
// answers, but for the plain ones, which are nearly all. UTF-8. Pure; any thread.
namespace tonequill::CatalogueUrl {

// Whether it can be read as a URL; one without a scheme can.
bool isUrl(std::string_view text);

// Whether the extension of its path is one that isn't loaded: ogg, oga, opus or webm,
// in any case. REQUIRES: isUrl(text).
bool hasUnloadedFormat(std::string_view text);

} // namespace tonequill::CatalogueUrl

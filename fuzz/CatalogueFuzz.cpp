// Any bytes as a catalogue: the bytes as a file, and the same bytes packed as the document.
// What is loaded is searched for, and every sound given back.

#include "discovery/catalogue/Inflater.h"
#include "discovery/catalogue/SoundIndex.h"

#include <cstdlib>

using namespace tonequill;

namespace {

void loadAndSearch(std::span<const char> file)
{
    SoundIndex index;
    if (index.install(file) != CatalogueReader::Outcome::done)
        return;
    const auto tables = index.tables();
    IndexQuery query;
    query.terms = {QStringLiteral("door"), QStringLiteral("a"), QString()};
    query.primary = {QStringLiteral("door")};
    for (std::int32_t i = 0; i < tables->soundCount(); ++i) {
        const OnlineSound sound = tables->sound(i);
        if (i < 4)
            query.terms << sound.title.toLower() << sound.tags.value(0).toLower();
    }
    const auto first = index.search(query);
    query.maxSeconds = 6;
    index.search(query);
    query.maxSeconds.reset();
    if (index.search(query) != first || first.size() > query.limit)
        std::abort(); // a search leaves nothing behind
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    const std::span bytes(reinterpret_cast<const char*>(data), size);
    loadAndSearch(bytes);
    loadAndSearch(Inflater::deflate({bytes.data(), size}, Inflater::Effort::quick));
    return 0;
}

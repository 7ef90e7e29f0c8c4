// Any bytes as an index: refused or read, and what is read is written and read
// back the same.

#include "library/store/LibraryIndex.h"

#include <cstdlib>

using namespace tonequill;

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    const auto items = LibraryIndex::decode(QByteArray(reinterpret_cast<const char*>(data), qsizetype(size)));
    if (!items)
        return 0;
    QByteArrayList records;
    for (const SoundItem& item : *items)
        records << LibraryIndex::encode(item);
    const auto again = LibraryIndex::decode('[' + records.join(',') + ']');
    if (!again || *again != *items)
        std::abort();
    return 0;
}

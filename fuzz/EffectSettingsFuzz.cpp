// Any bytes as effect settings: refused or read, and what is read is written and
// read back the same.

#include "audio/effects/EffectSettings.h"

#include <cstdlib>

using namespace tonequill;

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    const QByteArray bytes(reinterpret_cast<const char*>(data), static_cast<qsizetype>(size));
    const auto settings = EffectSettings::fromJson(bytes);
    if (!settings)
        return 0;
    const auto again = EffectSettings::fromJson(settings->toJson());
    if (!again || *again != *settings)
        std::abort();
    if (settings->isNeutral() && settings->needsEngine())
        std::abort();
    if (settings->totalPitch() < -24 || settings->totalPitch() > 24)
        std::abort();
    return 0;
}

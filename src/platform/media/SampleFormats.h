#pragma once

#include <QtGlobal>

#include <cstddef>

namespace tonequill {

// How plain samples lie in a file or in a decoder's frame.
enum class SampleFormat {
    u8,
    s8,
    s16le,
    s16be,
    s24le,
    s24be,
    s32le,
    s32be,
    f32le,
    f32be,
    f64le,
    f64be,
    alaw,
    mulaw,
};

// Bytes of one sample.
int bytesOf(SampleFormat format);

// Converts `frames` samples, one in every `stride` samples from `from` on, to
// floats in −1…1 (integers by their full scale; floats as they are, with what is
// not finite made 0). `from` needs no alignment.
void toFloat(SampleFormat format, const std::byte* from, int stride, float* into, qint64 frames);

} // namespace tonequill

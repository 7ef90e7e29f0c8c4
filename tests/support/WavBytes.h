#pragma once

#include <QByteArray>
#include <QtEndian>

#include <cstdint>
#include <optional>
#include <span>

namespace tonequill::test {

// A WAV file made by hand, so that its header can say anything.
struct WavBytes {
    std::uint16_t kind = 1; // 1 integer PCM, 3 float
    std::uint16_t channels = 1;
    std::uint32_t sampleRate = 48'000;
    std::uint16_t bits = 16;
    std::optional<std::uint32_t> toldBytes = std::nullopt; // of the data; what is there without it

    template <typename Sample>
    QByteArray with(std::span<const Sample> samples) const
    {
        QByteArray bytes;
        const auto put = [&bytes](auto number) {
            const auto little = qToLittleEndian(number);
            bytes.append(reinterpret_cast<const char*>(&little), sizeof little);
        };
        const auto dataBytes = static_cast<std::uint32_t>(samples.size_bytes());
        const auto frameBytes = static_cast<std::uint16_t>(channels * bits / 8);
        bytes += "RIFF";
        put(36 + toldBytes.value_or(dataBytes));
        bytes += "WAVEfmt ";
        put(std::uint32_t(16));
        put(kind);
        put(channels);
        put(sampleRate);
        put(sampleRate * frameBytes);
        put(frameBytes);
        put(bits);
        bytes += "data";
        put(toldBytes.value_or(dataBytes));
        bytes.append(reinterpret_cast<const char*>(samples.data()), static_cast<qsizetype>(samples.size_bytes()));
        return bytes;
    }

    QByteArray withSilence(std::size_t frames) const
    {
        const std::vector<char> zeros(frames * channels * bits / 8);
        return with(std::span<const char>(zeros));
    }
};

} // namespace tonequill::test

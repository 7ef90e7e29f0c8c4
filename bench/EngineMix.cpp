// What does it cost to mix 200 rendered pieces of 10 s? The peer is a plain copy
// of the same bytes; the bar is three times the peer.

#include "Measure.h"
#include "audio/effects/Mixer.h"

#include <cstdlib>
#include <cstring>

using namespace tonequill;

namespace {

constexpr int kPieces = 200;
constexpr qint64 kFrames = 480'000;

constexpr std::size_t kPieceBytes = std::size_t(kFrames) * 2 * sizeof(float);

// The copies go to as many bytes as the mix has, in a whole number of pieces.
void compare(const char* what, const std::vector<Mixer::Piece>& pieces, std::size_t outputPieces)
{
    const std::size_t outputBytes = outputPieces * kPieceBytes;
    const auto mix = bench::best(5, [&] {
        return bench::costOf([&] {
            if (!Mixer::mix(pieces))
                qFatal("nothing was mixed");
        });
    });
    // Into memory that is new, as that of the mix is; a malloc of this size comes
    // from the system and goes back to it.
    const auto peer = bench::best(5, [&] {
        return bench::costOf([&] {
            auto* const copy = static_cast<char*>(std::malloc(outputBytes));
            for (std::size_t i = 0; i < pieces.size(); ++i)
                std::memcpy(copy + i * kPieceBytes % outputBytes, pieces[i].buffer->channel(0).data(), kPieceBytes);
            std::free(copy);
        });
    });
    bench::printRatio(what, mix.cpuSeconds, peer.cpuSeconds, 3, "memcpy");
}

} // namespace

int main()
{
    std::vector<Mixer::Piece> pieces;
    for (int i = 0; i < kPieces; ++i) {
        auto buffer = std::make_shared<AudioBuffer>(AudioFormat{48'000, 2}, kFrames);
        buffer->setFrameLength(kFrames);
        for (int channel = 0; channel < 2; ++channel)
            std::fill(buffer->channel(channel).begin(), buffer->channel(channel).end(), 0.001F * float(i % 7 + 1));
        pieces.push_back({buffer, i * 0.9, 0.7F});
    }
    compare("200 pieces of 10 s over 3 minutes", pieces, 19);
    for (Mixer::Piece& piece : pieces)
        piece.offset = 0;
    compare("200 pieces of 10 s at one place", pieces, 1);
    for (int i = 0; i < kPieces; ++i)
        pieces[std::size_t(i)].offset = i * 10;
    compare("200 pieces of 10 s in a row", pieces, kPieces);
    return bench::exitCode();
}

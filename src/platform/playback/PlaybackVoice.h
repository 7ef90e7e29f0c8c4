#pragma once

#include "platform/playback/PlaybackStream.h"

#include <array>
#include <condition_variable>
#include <mutex>
#include <vector>

namespace tonequill {

// What the device takes: one sample for each side.
struct StereoFrame {
    float left = 0;
    float right = 0;
};

// One sound on its way from its file to the device. Three threads meet here: the
// player's commands it, a decoder's reads ahead, the device's takes what it
// plays. Their lock is only held for copies of a few thousand samples: neither
// while a file is read nor while memory is asked for or given back.
//
// Positions "of the device" count the frames that it has ever taken.
class PlaybackVoice {
public:
    explicit PlaybackVoice(PlaybackStream stream);

    // --- The player's thread ---------------------------------------------------

    // `heard` is the frame of the device that is heard now.
    void play(double heard);
    void pause(); // any thread
    void stop();  // as pause(), and gives the memory back
    void seek(qint64 frame, double heard);
    void setLoops(int count); // AudioPlayer::kEndless for ever
    void setVolume(float volume);

    bool isPlaying(double heard) const;
    // Frames of the file. Never runs backwards between two seeks but in a loop.
    double position(double heard) const;
    // Mean squares of both sides over the last tenth of a second before `heard`.
    std::array<double, 2> meanSquares(double heard) const;

    // True if there is something to read and nobody who does: the caller now owes a
    // call of decode() on a thread of its own.
    bool claimDecoding();

    // --- A decoder's thread ----------------------------------------------------

    // Reads ahead until nothing is wanted any more. REQUIRES: claimDecoding().
    void decode();

    // --- The device's thread ---------------------------------------------------

    // Adds what is to be heard to a block that starts at this frame of the device.
    void mixInto(std::span<StereoFrame> block, qint64 deviceFrame);

    // False if mixInto() will add nothing until the next command. Any thread.
    bool isActive() const;

private:
    struct Power {
        qint64 end = 0; // of the device
        int frames = 0;
        double left = 0; // sums of squares
        double right = 0;
    };

    bool wantsReading() const;
    bool hasRoom() const;
    bool mayRepeat(int repeats) const { return m_loops < 0 || repeats < m_loops; }
    double told(double heard) const;
    bool isHeardPlaying(double heard) const;
    double frameInFile(double streamFrames) const;
    double framesLeft() const;
    void startRun(qint64 frame);
    void store(PlaybackStream::Block& block);
    void add(std::span<StereoFrame> block, qint64 deviceFrame);

    const double m_ratio;
    PlaybackStream m_stream;      // only of the one who decodes
    PlaybackStream::Block m_rest; // the same: what found no room

    mutable std::mutex m_mutex; // guards all below
    std::condition_variable m_wake;
    bool m_isPlaying = false;
    bool m_isDecoding = false;
    int m_loops = 0;
    float m_volume = 1;
    float m_gain = 1; // on its way to the volume

    // A run is what is played from one seek to the next.
    unsigned m_run = 1;
    unsigned m_decodedRun = 0; // the one that the stream is in
    qint64 m_start = 0;        // frame of the file it starts with
    qint64 m_length;           // frames of the file
    int m_repeats = 0;         // of what was read
    qint64 m_taken = 0;        // frames of the stream that the device took
    qint64 m_takenAt = 0;      // frame of the device at which it had
    mutable double m_told = 0; // of them, the most that were told to be heard
    bool m_isReadToEnd = false;
    bool m_isExhausted = false; // nothing more can be read, whatever is wanted
    bool m_isReady = false;     // enough is read ahead to start
    bool m_hasEnded = false;

    std::vector<StereoFrame> m_ring; // empty while nothing is read ahead
    std::size_t m_first = 0;
    std::size_t m_count = 0;

    std::array<Power, 64> m_powers; // of the last blocks, oldest overwritten first
    std::size_t m_nextPower = 0;
};

} // namespace tonequill

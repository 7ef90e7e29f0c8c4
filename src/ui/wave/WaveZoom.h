#pragma once

namespace tonequill {

// Which stretch of a sound a wave shows, and where things lie on it. A plain
// value; times are seconds, positions pixels at scale 1. A position in the
// content counts from the sound's start, one in the view from its left edge.
struct WaveZoom {
    static constexpr double kLargest = 64;
    static constexpr double kStepIn = 1.6;
    static constexpr double kStepOut = 0.625;

    double duration = 0;
    double viewport = 0; // the visible width
    double zoom = 1;     // 1 shows the whole sound
    double scrollX = 0;  // the position in the content of the view's left edge

    bool operator==(const WaveZoom&) const = default;

    double span() const; // the duration, at least a millisecond
    double contentWidth() const { return viewport * zoom; }
    double contentX(double seconds) const; // of a time in the content
    double viewX(double seconds) const { return contentX(seconds) - scrollX; }
    double secondsAt(double viewX) const; // within the sound
    // Whether there is enough beside the view for a scroll bar.
    bool isScrollable() const { return zoom > 1.01; }

    // Multiplies the zoom, within 1…kLargest; the content under `contentX` stays
    // where it is in the view. False, and nothing changes, for no real difference.
    bool zoomBy(double factor, double contentX);
    // The same about the middle of the view.
    bool zoomAtMiddle(double factor) { return zoomBy(factor, scrollX + viewport / 2); }
    // Lets the part fill four fifths of the view.
    void zoomTo(double startSeconds, double endSeconds);
    void showWhole();
    // Turns to the page on which the playhead runs. True if it turned.
    bool follow(double seconds);
    // Brings a part to the middle if nothing of it is in the view.
    void reveal(double startSeconds, double endSeconds);
    void scrollTo(double x); // held within the content
    // A change of the window keeps what is shown.
    void resize(double newViewport);
};

} // namespace tonequill

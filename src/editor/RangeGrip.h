#pragma once

namespace tonequill {

// What a pointer does on the ground of the open sound: it takes hold of an edge
// of the range and drags it, it sweeps over a stretch that becomes the range, or it
// clicks. A plain value; positions are pixels of the view.
struct RangeGrip {
    enum class Edge { none, start, end };
    static constexpr double kHit = 32; // how wide an edge can be hit

    Edge edge = Edge::none; // what is dragged
    bool isClick = false;   // nothing is dragged, and the pointer hasn't left its place
    bool isSweep = false;   // it has left the place of the press, and holds no edge

    // The edge that a pointer can take hold of: the nearer one within half of kHit.
    static Edge edgeAt(double x, double startX, double endX);

    // The button goes down: takes hold of the edge that is there, if the range may be changed.
    enum class Range { canBeTaken, cannot };
    void press(double x, double startX, double endX, Range range);
    // The pointer moves; `clickReach` is how far a click may stray.
    void move(double x, double clickReach);
    // Where the dragged edge lies with the pointer at `x`: it keeps the distance
    // at which it was taken hold of.
    double edgeX(double x) const { return x - m_offset; }
    // True if the range was changed: an edge was held, or a stretch swept over.
    bool release();

    // The left edge of the pill that tells the range's length: inside the range at
    // its end, or beside the range where it is too narrow; always within the view.
    static double pillX(double startX, double endX, double viewWidth, double pillWidth);

private:
    double m_offset = 0; // of the pointer from the edge
    double m_pressX = 0;
    bool m_maySweep = false;
};

} // namespace tonequill

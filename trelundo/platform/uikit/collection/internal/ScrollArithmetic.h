#pragma once

namespace trelundo::scroll {

/// The offsets of one axis at which the content's edges meet the view's, in points.
struct Range {
    double minimum;
    double maximum;
    bool contains(double offset) const { return offset >= minimum && offset <= maximum; }
    double clamped(double offset) const;
    /// `offset` moved by `distance` but not past an edge; from beyond an edge it is not pulled back.
    double movedWithin(double offset, double distance) const;
};

/// How far content is shown beyond an edge when the finger is `distance` points past it, in a view of
/// `length`.
double rubberBand(double distance, double length);
/// The finger distance that shows `overshoot`; overshoots that no distance reaches count as the largest one.
double rubberBandInverse(double overshoot, double length);

/// The shown offset for one that a finger asks for, and the way back.
double banded(double offset, Range range, double length);
double unbanded(double offset, Range range, double length);

/// Points that a movement of `velocity` points a second runs on when each millisecond keeps `rate` of its
/// speed.
double decelerationDistance(double velocity, double rate);
/// The velocity that runs on for `distance`.
double velocityForDistance(double distance, double rate);

/// One axis that moves by itself: slowing down inside its range, springing back (critically damped) outside.
struct AxisMotion {
    double velocity = 0; // points a second

    /// The offset after `seconds`. Beyond an edge without bouncing the movement ends at the edge.
    double advance(double offset, double seconds, Range range, double rate, bool bounces);
    /// At rest, or so slow that no pixel would show the remainder.
    bool isFinished(double offset, Range range) const;
    /// Where the remainder ends.
    double restingOffset(double offset, Range range, double rate) const;

private:
    double spring(double offset, double edge, double seconds);
};

} // namespace trelundo::scroll

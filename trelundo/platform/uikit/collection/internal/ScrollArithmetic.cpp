#include "trelundo/platform/uikit/collection/internal/ScrollArithmetic.h"

#include <algorithm>
#include <cmath>

namespace trelundo::scroll {

namespace {

constexpr double rubberCoefficient = 0.55;
constexpr double largestShownFraction = 0.99; // the rubber band only approaches the view's length
constexpr double springFrequency = 20;        // 1/s; the last quarter point is gone after about 0.4 s
constexpr double restingSpeed = 1;            // points a second
constexpr double restingDistance = 0.25;      // points

// Rates outside 0...1 would never come to rest.
double usableRate(double rate) { return std::clamp(rate, 0.001, 0.9999); }

} // namespace

double Range::clamped(double offset) const { return std::clamp(offset, minimum, std::max(minimum, maximum)); }

double Range::movedWithin(double offset, double distance) const {
    if (distance > 0) return std::max(offset, std::min(maximum, offset + distance));
    return std::min(offset, std::max(minimum, offset + distance));
}

double rubberBand(double distance, double length) {
    if (length <= 0 || distance <= 0) return 0;
    return (1 - 1 / (distance * rubberCoefficient / length + 1)) * length;
}

double rubberBandInverse(double overshoot, double length) {
    if (length <= 0 || overshoot <= 0) return 0;
    double const shown = std::min(overshoot / length, largestShownFraction);
    return length / rubberCoefficient * (1 / (1 - shown) - 1);
}

double banded(double offset, Range range, double length) {
    double const edge = range.clamped(offset);
    if (offset < edge) return edge - rubberBand(edge - offset, length);
    if (offset > edge) return edge + rubberBand(offset - edge, length);
    return offset;
}

double unbanded(double offset, Range range, double length) {
    double const edge = range.clamped(offset);
    if (offset < edge) return edge - rubberBandInverse(edge - offset, length);
    if (offset > edge) return edge + rubberBandInverse(offset - edge, length);
    return offset;
}

double decelerationDistance(double velocity, double rate) {
    rate = usableRate(rate);
    return velocity / 1000 * rate / (1 - rate);
}

double velocityForDistance(double distance, double rate) {
    rate = usableRate(rate);
    return distance * 1000 * (1 - rate) / rate;
}

double AxisMotion::advance(double offset, double seconds, Range range, double rate, bool bounces) {
    if (!range.contains(offset)) {
        if (bounces) return spring(offset, range.clamped(offset), seconds);
        velocity = 0;
        return range.clamped(offset);
    }
    rate = usableRate(rate);
    double const kept = std::pow(rate, seconds * 1000);
    double const moved = offset + decelerationDistance(velocity, rate) * (1 - kept);
    if (range.contains(moved)) {
        velocity *= kept;
        return moved;
    }
    // The edge is met inside this step: slow down up to it, spring for the rest of the time.
    double const edge = range.clamped(moved);
    double const keptAtEdge = 1 - (edge - offset) / decelerationDistance(velocity, rate);
    double const secondsToEdge = std::log(keptAtEdge) / std::log(rate) / 1000;
    velocity = bounces ? velocity * keptAtEdge : 0;
    return bounces ? spring(edge, edge, seconds - secondsToEdge) : edge;
}

double AxisMotion::spring(double offset, double edge, double seconds) {
    double const displacement = offset - edge;
    double const slope = velocity + springFrequency * displacement;
    double const decay = std::exp(-springFrequency * seconds);
    velocity = (slope - springFrequency * (displacement + slope * seconds)) * decay;
    return edge + (displacement + slope * seconds) * decay;
}

bool AxisMotion::isFinished(double offset, Range range) const {
    if (range.contains(offset)) return std::abs(velocity) < restingSpeed;
    return std::abs(offset - range.clamped(offset)) < restingDistance &&
           std::abs(velocity) < 2 * springFrequency * restingDistance;
}

double AxisMotion::restingOffset(double offset, Range range, double rate) const {
    return range.clamped(range.contains(offset) ? offset + decelerationDistance(velocity, rate) : offset);
}

} // namespace trelundo::scroll

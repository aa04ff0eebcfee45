#pragma once

#include "trelundo/platform/coreanimation/CALayer.h"

namespace trelundo {

/// Fills its shape with a linear gradient above the background colour. Without colours only the background
/// shows.
class CAGradientLayer : public CALayer {
public:
    std::optional<std::vector<CGColor>> const& colors() const { return colors_; }
    void setColors(std::optional<std::vector<CGColor>> colors);
    /// Absent: the stops are spread evenly. Kept as set; for drawing each is clamped to 0...1 and to at least
    /// its predecessor.
    std::optional<std::vector<double>> const& locations() const { return locations_; }
    void setLocations(std::optional<std::vector<double>> locations);
    /// In the unit square of the bounds; (0, 0) is the top left corner.
    CGPoint startPoint() const { return startPoint_; }
    void setStartPoint(CGPoint point);
    CGPoint endPoint() const { return endPoint_; }
    void setEndPoint(CGPoint point);

    /// The stops as drawn.
    std::vector<GradientStop> stops() const;

    void drawContents(Canvas& canvas) override;
    bool hasContents() const override { return (colors_ && !colors_->empty()) || CALayer::hasContents(); }
    CGRect contentsRect() const override { return bounds(); }

private:
    std::optional<std::vector<CGColor>> colors_;
    std::optional<std::vector<double>> locations_;
    CGPoint startPoint_{0.5, 0};
    CGPoint endPoint_{0.5, 1};
};

} // namespace trelundo

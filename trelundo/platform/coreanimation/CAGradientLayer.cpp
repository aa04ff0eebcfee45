#include "trelundo/platform/coreanimation/CAGradientLayer.h"

#include "trelundo/platform/coreanimation/internal/LayerCorners.h"

#include <algorithm>

namespace trelundo {

namespace {

/// The place of stop `index` of `count`, made usable: within 0...1 and not before its predecessor.
double locationOf(std::optional<std::vector<double>> const& locations, std::size_t index, std::size_t count,
                  double previous) {
    if (!locations || index >= locations->size()) {
        auto const even = count > 1 ? static_cast<double>(index) / static_cast<double>(count - 1) : 0;
        return std::max(previous, even);
    }
    auto const location = (*locations)[index];
    return std::isnan(location) ? previous : std::max(previous, std::clamp(location, 0.0, 1.0));
}

} // namespace

void CAGradientLayer::setColors(std::optional<std::vector<CGColor>> colors) {
    colors_ = std::move(colors);
    contentChanged();
}

void CAGradientLayer::setLocations(std::optional<std::vector<double>> locations) {
    locations_ = std::move(locations);
    contentChanged();
}

void CAGradientLayer::setStartPoint(CGPoint point) {
    startPoint_ = point;
    contentChanged();
}

void CAGradientLayer::setEndPoint(CGPoint point) {
    endPoint_ = point;
    contentChanged();
}

std::vector<GradientStop> CAGradientLayer::stops() const {
    std::vector<GradientStop> stops;
    if (!colors_) return stops;
    double previous = 0;
    for (std::size_t index = 0; index < colors_->size(); ++index) {
        previous = locationOf(locations_, index, colors_->size(), previous);
        stops.push_back({previous, (*colors_)[index]});
    }
    return stops;
}

void CAGradientLayer::drawContents(Canvas& canvas) {
    if (hasContents()) {
        auto const radii = cornerRadii(presentationValues().cornerRadius, maskedCorners());
        canvas.fillGradient(bounds(), radii, stops(), startPoint_, endPoint_);
    }
    CALayer::drawContents(canvas);
}

} // namespace trelundo

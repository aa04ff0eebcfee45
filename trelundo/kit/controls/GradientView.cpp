#include "trelundo/kit/controls/GradientView.h"

namespace trelundo {

GradientView::GradientView(CGRect frame)
    : UIView(frame, make<CAGradientLayer>()) {}

void GradientView::setStartColor(UIColor color) {
    startColor_ = std::move(color);
    updateColors();
}

void GradientView::setEndColor(UIColor color) {
    endColor_ = std::move(color);
    updateColors();
}

void GradientView::setStartLocation(double location) {
    startLocation_ = location;
    updateLocations();
}

void GradientView::setEndLocation(double location) {
    endLocation_ = location;
    updateLocations();
}

void GradientView::setHorizontalMode(bool horizontal) {
    horizontalMode_ = horizontal;
    updatePoints();
}

void GradientView::updateColors() {
    gradientLayer().setColors(
        std::vector{startColor_.cgColor(traitCollection()), endColor_.cgColor(traitCollection())});
}

void GradientView::updateLocations() {
    gradientLayer().setLocations(std::vector{startLocation_, endLocation_});
}

void GradientView::updatePoints() {
    gradientLayer().setStartPoint(horizontalMode_ ? CGPoint{0, 0.5} : CGPoint{0.5, 0});
    gradientLayer().setEndPoint(horizontalMode_ ? CGPoint{1, 0.5} : CGPoint{0.5, 1});
}

void GradientView::traitCollectionDidChange(UITraitCollection const* previous) {
    UIView::traitCollectionDidChange(previous);
    updatePoints();
    updateLocations();
    updateColors();
}

} // namespace trelundo

#include "trelundo/platform/uikit/controls/UIActivityIndicatorView.h"

#include "trelundo/platform/coreanimation/CADisplayLink.h"
#include "trelundo/platform/foundation/Clock.h"
#include "trelundo/platform/uikit/accessibility/ActivityChanges.h"

#include <array>
#include <cmath>
#include <numbers>
#include <utility>

namespace trelundo {

namespace {

constexpr int bladeCount = 8;
constexpr double turnDuration = 1; // seconds
constexpr double faintestBlade = 0.25;

bool isLarge(UIActivityIndicatorViewStyle style) {
    return style == UIActivityIndicatorViewStyle::large || style == UIActivityIndicatorViewStyle::whiteLarge;
}

double sideOf(UIActivityIndicatorViewStyle style) { return isLarge(style) ? 37 : 20; }

UIColor grayOfAppearance() {
    static auto const color = UIColor::dynamic([](UITraitCollection const& traits) {
        bool const dark = traits.userInterfaceStyle == UIUserInterfaceStyle::dark;
        return UIColor::gray(dark ? 0.68 : 0.52, 1);
    });
    return color;
}

UIColor defaultColor(UIActivityIndicatorViewStyle style) {
    switch (style) {
    case UIActivityIndicatorViewStyle::whiteLarge:
    case UIActivityIndicatorViewStyle::white:
        return UIColor::white();
    case UIActivityIndicatorViewStyle::gray:
        return UIColor::gray();
    case UIActivityIndicatorViewStyle::medium:
    case UIActivityIndicatorViewStyle::large:
        break;
    }
    return grayOfAppearance();
}

constexpr int capPoints = 7; // along each rounded end of a blade

/// A round-ended bar that points up, from `inner` to `outer` above the origin.
std::array<CGPoint, 2 * capPoints> uprightBlade(double inner, double outer, double width) {
    std::array<CGPoint, 2 * capPoints> points;
    double const radius = width / 2;
    for (std::size_t i = 0; i < capPoints; ++i) {
        double const angle = std::numbers::pi * static_cast<double>(i) / (capPoints - 1);
        double const x = radius * std::cos(angle);
        double const y = radius * std::sin(angle);
        points[i] = {-x, -(outer - radius) - y};
        points[capPoints + i] = {x, -(inner + radius) + y};
    }
    return points;
}

} // namespace

UIActivityIndicatorView::UIActivityIndicatorView(UIActivityIndicatorViewStyle style)
    : UIView({0, 0, sideOf(style), sideOf(style)})
    , style_(style) {
    setContentHuggingPriority(UILayoutPriority::defaultHigh, NSLayoutConstraintAxis::horizontal);
    setContentHuggingPriority(UILayoutPriority::defaultHigh, NSLayoutConstraintAxis::vertical);
    setHidden(true);
}

UIActivityIndicatorView::~UIActivityIndicatorView() {
    if (displayLink_ != 0) CADisplayLink::remove(displayLink_);
}

UIColor UIActivityIndicatorView::color() const { return color_.value_or(defaultColor(style_)); }

void UIActivityIndicatorView::setColor(UIColor color) {
    color_ = color;
    setNeedsDisplay();
}

void UIActivityIndicatorView::setHidesWhenStopped(bool hides) {
    hidesWhenStopped_ = hides;
    if (!isAnimating_) setHidden(hides);
}

void UIActivityIndicatorView::startAnimating() {
    if (isAnimating_) return;
    isAnimating_ = true;
    setHidden(false);
    updateDisplayLink();
    activityDidChange(*this, true);
}

void UIActivityIndicatorView::stopAnimating() {
    if (!isAnimating_) return;
    isAnimating_ = false;
    if (hidesWhenStopped_) setHidden(true);
    updateDisplayLink();
    activityDidChange(*this, false);
}

void UIActivityIndicatorView::didMoveToWindow() {
    UIView::didMoveToWindow();
    updateDisplayLink();
}

void UIActivityIndicatorView::updateDisplayLink() {
    bool const turns = isAnimating_ && window();
    if (turns == (displayLink_ != 0)) return;
    if (turns) {
        startTime_ = Clock::current().now();
        displayLink_ = CADisplayLink::add([this](double timestamp) { turnTo(timestamp); });
    } else {
        CADisplayLink::remove(std::exchange(displayLink_, 0));
    }
}

void UIActivityIndicatorView::turnTo(double timestamp) {
    double const turns = (timestamp - startTime_) / turnDuration;
    // Frame times are sums of fractions: a step that is due by all but rounding is taken.
    int const step =
        static_cast<int>(std::floor((turns - std::floor(turns)) * bladeCount + 1e-6)) % bladeCount;
    if (step == step_) return;
    step_ = step;
    setNeedsDisplay();
}

CGSize UIActivityIndicatorView::intrinsicContentSize() const { return {sideOf(style_), sideOf(style_)}; }

void UIActivityIndicatorView::draw(CGRect /*rect*/, Canvas& canvas) {
    auto const area = bounds();
    double const radius = sideOf(style_) / 2;
    auto const upright = uprightBlade(radius * 0.48, radius * 0.98, radius * 0.2);
    auto const color = this->color().cgColor(traitCollection());
    for (int blade = 0; blade < bladeCount; ++blade) {
        auto const place = CGAffineTransform::rotation(2 * std::numbers::pi * blade / bladeCount)
                               .concatenating(CGAffineTransform::translation(area.midX(), area.midY()));
        auto points = upright;
        for (auto& point : points) point = place.apply(point);
        // The leading blade is opaque, the one that it will reach last the faintest.
        int const age = (step_ - blade + bladeCount) % bladeCount;
        auto bladeColor = color;
        bladeColor.alpha *= 1 - (1 - faintestBlade) * age / (bladeCount - 1);
        canvas.fillPolygon(points, bladeColor);
    }
}

} // namespace trelundo

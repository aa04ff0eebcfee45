#include "trelundo/platform/uikit/collection/internal/ScrollIndicators.h"

#include "trelundo/platform/coreanimation/CATransaction.h"

#include <algorithm>

namespace trelundo {

namespace {

constexpr double thickness = 3;
constexpr double margin = 3;
constexpr double shortest = 24;
constexpr double aboveEverything = 10'000; // zPosition
constexpr double fadeDelay = 0.3;
constexpr double fadeDuration = 0.25;
constexpr CGColor barColor{0.5, 0.5, 0.5, 0.7};

struct Span {
    double start;
    double length;
};

// The bar's part of a track that begins at `origin`; beyond an edge the bar is squeezed against it.
Span barSpan(double origin, double visible, double contentStart, double contentLength) {
    double const track = visible - 2 * margin;
    double const before = origin - contentStart;
    double const after = contentStart + contentLength - origin - visible;
    double const overshoot = std::max({0.0, -before, -after});
    double const length = std::clamp(track * visible / std::max(contentLength, visible) - overshoot,
                                     std::min(shortest / 3, track), track);
    double const travel = std::max(contentLength - visible, 1.0);
    double const fraction = std::clamp(before / travel, 0.0, 1.0);
    return {origin + margin + fraction * (track - length), length};
}

Ref<CALayer> makeBar(CALayer& host) {
    auto bar = make<CALayer>();
    bar->setBackgroundColor(barColor);
    bar->setCornerRadius(thickness / 2);
    bar->setZPosition(aboveEverything);
    host.addSublayer(bar);
    return bar;
}

// A bar that was shown again meanwhile stays.
void hideFaded(Ref<CALayer> const& bar) {
    if (bar && bar->opacity() == 0) bar->setHidden(true);
}

void fadeBar(Ref<CALayer> const& bar) {
    if (bar && !bar->isHidden()) bar->setOpacity(0);
}

} // namespace

void ScrollIndicators::show(Extent const& extent) {
    isShown_ = true;
    for (auto const& bar : {horizontal_, vertical_}) {
        if (!bar) continue;
        bar->removeAllAnimations();
        bar->setOpacity(1);
    }
    update(extent);
}

void ScrollIndicators::update(Extent const& extent) {
    if (!isShown_ && !isFading()) return;
    CGRect const& b = extent.bounds;
    UIEdgeInsets const& insets = extent.insets;
    double const width = insets.left + extent.contentSize.width + insets.right;
    double const height = insets.top + extent.contentSize.height + insets.bottom;
    Span const across = barSpan(b.origin.x, b.size.width, -insets.left, width);
    Span const down = barSpan(b.origin.y, b.size.height, -insets.top, height);
    place(horizontal_, extent.horizontal && width > b.size.width,
          {across.start, b.origin.y + b.size.height - margin - thickness, across.length, thickness});
    place(vertical_, extent.vertical && height > b.size.height,
          {b.origin.x + b.size.width - margin - thickness, down.start, thickness, down.length});
}

void ScrollIndicators::place(Ref<CALayer>& bar, bool wanted, CGRect frame) {
    if (isShown_ && wanted && !bar) bar = makeBar(host_);
    if (!bar) return;
    if (isShown_) bar->setHidden(!wanted);
    if (!bar->isHidden()) bar->setFrame(frame);
}

bool ScrollIndicators::isFading() const {
    return (horizontal_ && !horizontal_->isHidden()) || (vertical_ && !vertical_->isHidden());
}

void ScrollIndicators::fade() {
    if (!isShown_) return;
    isShown_ = false;
    CATransaction::Settings settings;
    settings.duration = fadeDuration;
    settings.delay = fadeDelay;
    settings.timing = CAMediaTimingFunction::linear();
    settings.completion = [horizontal = Weak<CALayer>{horizontal_},
                           vertical = Weak<CALayer>{vertical_}](bool) {
        hideFaded(horizontal.lock());
        hideFaded(vertical.lock());
    };
    CATransaction::begin(settings);
    fadeBar(horizontal_);
    fadeBar(vertical_);
    CATransaction::commit();
}

} // namespace trelundo

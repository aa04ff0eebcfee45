#include "trelundo/platform/window/internal/AccessibleViews.h"

#include "trelundo/platform/uikit/controls/UIControl.h"

namespace trelundo {

namespace {

constexpr double leastAlpha = 0.01; // below it a view cannot be pressed either

bool has(UIAccessibilityTraits traits, UIAccessibilityTraits bit) {
    return (static_cast<unsigned>(traits) & static_cast<unsigned>(bit)) != 0;
}

bool isPressable(UIView const& view) {
    auto const traits = view.accessibilityTraits();
    return has(traits, UIAccessibilityTraits::button) || has(traits, UIAccessibilityTraits::link);
}

bool isElement(UIView const& view) { return isPressable(view) || !view.accessibilityLabel().empty(); }

void collect(UIView const& view, std::vector<UIView*>& views) {
    for (auto const& subview : view.subviews()) {
        if (subview->isHidden() || subview->alpha() < leastAlpha) continue;
        if (isElement(*subview)) views.push_back(subview.get());
        if (!isPressable(*subview)) collect(*subview, views);
    }
}

AccessibleView::Role roleOf(UIAccessibilityTraits traits) {
    if (has(traits, UIAccessibilityTraits::button)) return AccessibleView::Role::button;
    if (has(traits, UIAccessibilityTraits::link)) return AccessibleView::Role::link;
    if (has(traits, UIAccessibilityTraits::image)) return AccessibleView::Role::image;
    return AccessibleView::Role::text;
}

/// A button with nothing but a picture is known by its name in the code: better than silence.
std::string nameOf(UIView const& view) {
    auto label = view.accessibilityLabel();
    return label.empty() ? view.accessibilityIdentifier() : label;
}

CGRect zoomed(CGRect const& rect, double zoom) {
    return {rect.minX() * zoom, rect.minY() * zoom, rect.width() * zoom, rect.height() * zoom};
}

} // namespace

std::vector<UIView*> accessibleViews(UIWindow const& window) {
    std::vector<UIView*> views;
    collect(window, views);
    return views;
}

AccessibleView describeAccessible(UIView& view, double zoom) {
    auto const traits = view.accessibilityTraits();
    return {.view = &view,
            .role = roleOf(traits),
            .name = nameOf(view),
            .frame = zoomed(view.convertRectTo(view.bounds(), nullptr), zoom),
            .isEnabled = !has(traits, UIAccessibilityTraits::notEnabled),
            .isSelected = has(traits, UIAccessibilityTraits::selected),
            .isPressable = isPressable(view)};
}

void pressAccessible(UIView& view) {
    auto* const control = dynamic_cast<UIControl*>(&view);
    if (!control || !control->isEnabled()) return;
    auto const keep = strong(view);
    control->sendActions(UIControlEvents::touchUpInside);
}

} // namespace trelundo

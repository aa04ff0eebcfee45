#include "trelundo/platform/uikit/views/internal/UIWindowState.h"

#include <algorithm>

namespace trelundo {

namespace {

/// Enabled controls in reading order of the tree.
void collectControls(UIView const& view, std::vector<UIControl*>& controls) {
    for (auto const& child : view.subviews()) {
        if (child->isHidden() || !child->isUserInteractionEnabled() || child->alpha() < 0.01) continue;
        auto* control = dynamic_cast<UIControl*>(child.get());
        if (control && control->isEnabled()) controls.push_back(control);
        collectControls(*child, controls);
    }
}

} // namespace

void UIWindow::keyPressed(Key key) {
    auto const self = strong(*this);
    auto const top = topViewController();
    if (!top) return;
    // What a new screen or an alert has covered is out of the keyboard's reach.
    auto const focused = state_->focused.lock();
    if (focused && !focused->isDescendantOf(*top->view())) state_->focused = nullptr;
    placeFocusRing();
    switch (key) {
    case Key::returnKey:
        return state_->focused.lock() ? pressFocused() : top->performReturnKey();
    case Key::escape:
        return top->performEscapeKey();
    case Key::tab:
        return moveFocus(1);
    case Key::backtab:
        return moveFocus(-1);
    case Key::space:
        return pressFocused();
    }
}

void UIWindow::moveFocus(int step) {
    auto const top = topViewController();
    std::vector<UIControl*> controls;
    collectControls(*top->view(), controls);
    if (controls.empty()) return;
    auto const focused = state_->focused.lock();
    auto const found = std::ranges::find(controls, focused.get());
    auto const count = static_cast<int>(controls.size());
    int const start = step > 0 ? -1 : count;
    int const index = found == controls.end() ? start : static_cast<int>(found - controls.begin());
    state_->focused = controls[static_cast<std::size_t>((index + step + count) % count)];
    placeFocusRing();
}

void UIWindow::pressFocused() {
    auto const focused = state_->focused.lock();
    if (!focused || !focused->isEnabled() || focused->window() != this) return;
    focused->sendActions(UIControlEvents::touchUpInside);
}

/// The ring lies around the focused control, above all views.
void UIWindow::placeFocusRing() {
    auto const focused = state_->focused.lock();
    bool const isShown = focused && focused->window() == this;
    if (!isShown) {
        if (state_->focusRing) state_->focusRing->removeFromSuperlayer();
        state_->focusRing = nullptr;
        state_->focused = nullptr;
        return;
    }
    if (!state_->focusRing) {
        state_->focusRing = make<CALayer>();
        state_->focusRing->setZPosition(greatestFiniteMagnitude);
        state_->focusRing->setBorderWidth(2);
        layer().addSublayer(state_->focusRing);
    }
    state_->focusRing->setBorderColor(UIColor::systemBlue().cgColor(traits_));
    state_->focusRing->setCornerRadius(focused->layer().cornerRadius() + 3);
    state_->focusRing->setFrame(focused->convertRectTo(focused->bounds(), nullptr).insetBy(-3, -3));
}

} // namespace trelundo

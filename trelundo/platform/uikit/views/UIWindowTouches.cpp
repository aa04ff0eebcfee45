#include "trelundo/platform/foundation/Clock.h"
#include "trelundo/platform/uikit/views/internal/UIWindowState.h"

#include <algorithm>

namespace trelundo {

namespace {

void send(UIView& view, UITouch& touch) {
    switch (touch.phase()) {
    case UITouchPhase::began:
        return view.touchesBegan(touch);
    case UITouchPhase::moved:
        return view.touchesMoved(touch);
    case UITouchPhase::stationary:
        return;
    case UITouchPhase::ended:
        return view.touchesEnded(touch);
    case UITouchPhase::cancelled:
        return view.touchesCancelled(touch);
    }
}

std::vector<Weak<UIScrollView>> scrollViewsAround(UIView& view) {
    std::vector<Weak<UIScrollView>> found;
    for (auto* step = &view; step; step = step->superview()) {
        if (auto* scrollView = dynamic_cast<UIScrollView*>(step)) found.emplace_back(scrollView);
    }
    return found;
}

} // namespace

void UIWindow::touchBegan(int id, CGPoint location) {
    auto const self = strong(*this);
    touchCancelled(id);
    auto const hit = hitTest(location);
    if (!hit) return;
    bool const isHeld = std::ranges::any_of(
        state_->touches, [&hit](auto const& entry) { return entry.second->touch->view() == hit; });
    if (isHeld) return; // a view follows one finger at a time

    auto active = std::make_shared<ActiveTouch>();
    active->touch = make<UITouch>();
    active->touch->view_ = hit;
    active->touch->location_ = active->touch->previousLocation_ = location;
    active->scrollViews = scrollViewsAround(*hit);
    state_->touches[id] = active;
    deliver(*active, UITouchPhase::began);
}

void UIWindow::touchMoved(int id, CGPoint location) {
    auto const found = state_->touches.find(id);
    if (found == state_->touches.end()) return;
    auto const self = strong(*this);
    auto const active = found->second;
    active->touch->previousLocation_ = std::exchange(active->touch->location_, location);
    deliver(*active, UITouchPhase::moved);
}

void UIWindow::touchEnded(int id, CGPoint location) {
    auto const found = state_->touches.find(id);
    if (found == state_->touches.end()) return;
    auto const self = strong(*this);
    auto const active = found->second;
    state_->touches.erase(found);
    active->touch->previousLocation_ = std::exchange(active->touch->location_, location);
    deliver(*active, UITouchPhase::ended);
}

void UIWindow::touchCancelled(int id) {
    auto const found = state_->touches.find(id);
    if (found == state_->touches.end()) return;
    auto const self = strong(*this);
    auto const active = found->second;
    state_->touches.erase(found);
    deliver(*active, UITouchPhase::cancelled);
}

void UIWindow::deliver(ActiveTouch& active, UITouchPhase phase) {
    auto& touch = *active.touch;
    touch.phase_ = phase;
    touch.timestamp_ = Clock::current().now();
    if (active.isTaken) {
        if (auto taker = active.taker.lock()) taker->trackTouch(touch);
        return;
    }
    for (auto const& weak : active.scrollViews) {
        auto const scrollView = weak.lock();
        if (scrollView && scrollView->trackTouch(touch)) return takeOver(active, *scrollView);
    }
    if (auto view = touch.view()) send(*view, touch);
}

/// The touched view, if it knows of the touch, and the other scroll views lose it.
void UIWindow::takeOver(ActiveTouch& active, UIScrollView& taker) {
    auto& touch = *active.touch;
    bool const isKnown = touch.phase() != UITouchPhase::began;
    active.isTaken = true;
    active.taker = &taker;
    auto const phase = std::exchange(touch.phase_, UITouchPhase::cancelled);
    for (auto const& weak : active.scrollViews) {
        auto const other = weak.lock();
        if (other && other.get() != &taker) other->trackTouch(touch);
    }
    auto const view = touch.view();
    if (isKnown && view) view->touchesCancelled(touch);
    touch.phase_ = phase;
}

/// The views in the subtree lose their touches. A scroll view outside goes on with its own: what it scrolls
/// may come and go under the finger.
void UIWindow::cancelTouchesIn(UIView const& subtree) {
    if (state_->touches.empty()) return;
    auto const touches = state_->touches;
    for (auto const& [id, active] : touches) {
        auto const taker = active->taker.lock();
        if (taker && taker->isDescendantOf(subtree)) touchCancelled(id);
        if (active->isTaken) continue;
        auto const view = active->touch->view();
        if (!view || !view->isDescendantOf(subtree)) continue;
        auto const phase = std::exchange(active->touch->phase_, UITouchPhase::cancelled);
        view->touchesCancelled(*active->touch);
        std::erase_if(active->scrollViews, [&](Weak<UIScrollView> const& weak) {
            auto const scrollView = weak.lock();
            if (!scrollView || !scrollView->isDescendantOf(subtree)) return !scrollView;
            scrollView->trackTouch(*active->touch);
            return true;
        });
        active->touch->view_ = nullptr;
        active->touch->phase_ = phase;
        if (active->scrollViews.empty()) state_->touches.erase(id);
    }
}

} // namespace trelundo

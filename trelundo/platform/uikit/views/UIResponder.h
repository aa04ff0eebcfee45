#pragma once

#include "trelundo/platform/foundation/Ref.h"
#include "trelundo/platform/foundation/Weak.h"
#include "trelundo/platform/graphics/Geometry.h"
#include "trelundo/platform/uikit/Forward.h"

namespace trelundo {

enum class UITouchPhase : int { began = 0, moved = 1, stationary = 2, ended = 3, cancelled = 4 };

/// One finger or pointer press, from its beginning to its end; it stays with the view that it began in.
class UITouch : public NSObject {
public:
    UITouchPhase phase() const { return phase_; }
    /// Seconds of Clock::now().
    double timestamp() const { return timestamp_; }
    Ref<UIView> view() const { return view_.lock(); }
    CGPoint locationInWindow() const { return location_; }
    CGPoint previousLocationInWindow() const { return previousLocation_; }
    CGPoint locationIn(UIView const& view) const;

private:
    friend class UIWindow;
    UITouchPhase phase_ = UITouchPhase::began;
    double timestamp_ = 0;
    Weak<UIView> view_;
    CGPoint location_;
    CGPoint previousLocation_;
};

/// Receives events; unhandled ones go up the chain of next responders.
class UIResponder : public NSObject {
public:
    virtual UIResponder* nextResponder() const { return nullptr; }
    virtual void touchesBegan(UITouch& touch);
    virtual void touchesMoved(UITouch& touch);
    virtual void touchesEnded(UITouch& touch);
    virtual void touchesCancelled(UITouch& touch);
    /// The system took an environment change; `previous` is null at the first entry into a window. Overrides
    /// call the superclass.
    virtual void traitCollectionDidChange(UITraitCollection const* /*previous*/) {}
    virtual UITraitCollection const& traitCollection() const = 0;
};

} // namespace trelundo

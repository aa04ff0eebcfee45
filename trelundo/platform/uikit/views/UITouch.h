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

} // namespace trelundo

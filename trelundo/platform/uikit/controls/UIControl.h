#pragma once

#include "trelundo/platform/uikit/views/UIView.h"

#include <cstring>
#include <functional>
#include <typeinfo>

namespace trelundo {

/// Bits: events may be combined.
enum class UIControlEvents : unsigned {
    touchDown = 1,
    touchDragInside = 4,
    touchDragOutside = 8,
    touchDragEnter = 16,
    touchDragExit = 32,
    touchUpInside = 64,
    touchUpOutside = 128,
    touchCancel = 256,
    valueChanged = 4096,
    primaryActionTriggered = 8192,
    allTouchEvents = 0xFFF,
    allEvents = 0xFFFFFFFF,
};
constexpr UIControlEvents operator|(UIControlEvents a, UIControlEvents b) {
    return static_cast<UIControlEvents>(static_cast<unsigned>(a) | static_cast<unsigned>(b));
}

constexpr bool intersects(UIControlEvents a, UIControlEvents b) {
    return (static_cast<unsigned>(a) & static_cast<unsigned>(b)) != 0;
}

/// Bits: selected and highlighted together is a state of its own.
enum class UIControlState : unsigned { normal = 0, highlighted = 1, disabled = 2, selected = 4 };
constexpr UIControlState operator|(UIControlState a, UIControlState b) {
    return static_cast<UIControlState>(static_cast<unsigned>(a) | static_cast<unsigned>(b));
}
enum class UIControlContentHorizontalAlignment : int {
    center = 0,
    left = 1,
    right = 2,
    fill = 3,
    leading = 4,
    trailing = 5
};
enum class UIControlContentVerticalAlignment : int { center = 0, top = 1, bottom = 2, fill = 3 };

/// A view that turns touches into actions. Targets are held weakly.
class UIControl : public UIView {
public:
    explicit UIControl(CGRect frame = {});

    bool isEnabled() const { return isEnabled_; }
    virtual void setEnabled(bool enabled);
    bool isSelected() const { return isSelected_; }
    virtual void setSelected(bool selected);
    bool isHighlighted() const { return isHighlighted_; }
    virtual void setHighlighted(bool highlighted);
    UIControlState state() const;
    bool isTracking() const { return static_cast<bool>(trackedTouch_.lock()); }

    UIControlContentHorizontalAlignment contentHorizontalAlignment() const { return horizontalAlignment_; }
    void setContentHorizontalAlignment(UIControlContentHorizontalAlignment alignment);
    UIControlContentVerticalAlignment contentVerticalAlignment() const { return verticalAlignment_; }
    void setContentVerticalAlignment(UIControlContentVerticalAlignment alignment);
    /// Leading and trailing resolved by the layout direction.
    UIControlContentHorizontalAlignment effectiveContentHorizontalAlignment() const;

    /// Calls `action` of `target` for `events`, in the order of registration; the same triple counts once.
    /// The action takes nothing or the sender, as UIControl& or the sender's own class.
    template <class Target, class Class, class... Sender>
    requires(sizeof...(Sender) <= 1 && std::derived_from<Target, Class>) void addTarget(
        Target* target, void (Class::*action)(Sender...), UIControlEvents events) {
        Weak<Target> const weak{target};
        addAction(
            {Weak<NSObject>{target}, identity(action), events, false, [weak, action](UIControl& sender) {
                 auto strongTarget = weak.lock();
                 if (!strongTarget) return;
                 if constexpr (sizeof...(Sender) == 0)
                     ((*strongTarget).*action)();
                 else
                     ((*strongTarget).*action)(static_cast<Sender>(sender)...);
             }});
    }
    /// Drops every action of `target`; one that is about to be called is not called any more.
    void removeTarget(NSObject& target);
    /// Fires the targets by program, without touching the highlight.
    void sendActions(UIControlEvents events);

    Ref<UIView> hitTest(CGPoint point) override;
    void touchesBegan(UITouch& touch) override;
    void touchesMoved(UITouch& touch) override;
    void touchesEnded(UITouch& touch) override;
    void touchesCancelled(UITouch& touch) override;

protected:
    UIControl(CGRect frame, Ref<CALayer> layer);
    /// A state or content setting was assigned. Overrides call the superclass.
    virtual void stateDidChange();
    /// What a release inside the control sends, one event after the other from the lowest bit up.
    virtual UIControlEvents releaseInsideEvents() const { return UIControlEvents::touchUpInside; }

private:
    struct Action {
        Weak<NSObject> target;
        std::string identity; // of the action among all actions of all classes
        UIControlEvents events;
        bool isRemoved;
        std::function<void(UIControl&)> call;
    };
    template <class Member> static std::string identity(Member member) {
        std::string bytes(sizeof member, '\0');
        std::memcpy(bytes.data(), &member, sizeof member);
        return bytes + typeid(Member).name();
    }
    void addAction(Action action);
    bool tracks(UITouch const& touch) const;
    /// The highlight, the enter or exit event that goes with it.
    void setTouchInside(bool inside);
    void endTracking(UIControlEvents events);

    bool isEnabled_ = true;
    bool isSelected_ = false;
    bool isHighlighted_ = false;
    Weak<UITouch> trackedTouch_;
    bool isTouchInside_ = false;
    UIControlContentHorizontalAlignment horizontalAlignment_ = UIControlContentHorizontalAlignment::center;
    UIControlContentVerticalAlignment verticalAlignment_ = UIControlContentVerticalAlignment::center;
    std::vector<std::shared_ptr<Action>> actions_;
};

} // namespace trelundo

#pragma once

#include "trelundo/platform/coreanimation/CALayer.h"

namespace trelundo {

/// The thin bars that show which part of a scroll view's content is visible. They lie in the view's layer
/// above everything, appear with a movement of the user's and fade after it.
class ScrollIndicators {
public:
    explicit ScrollIndicators(CALayer& host)
        : host_(host) {}

    struct Extent {
        CGRect bounds; // the visible part, in content coordinates
        CGSize contentSize;
        UIEdgeInsets insets; // that enlarge the content
        bool horizontal;     // which bars are wanted
        bool vertical;
    };
    void show(Extent const& extent);
    /// Moves bars that are shown or still fading; does nothing without.
    void update(Extent const& extent);
    void fade();

private:
    bool isFading() const;
    void place(Ref<CALayer>& bar, bool wanted, CGRect frame);

    CALayer& host_;
    Ref<CALayer> horizontal_;
    Ref<CALayer> vertical_;
    bool isShown_ = false;
};

} // namespace trelundo

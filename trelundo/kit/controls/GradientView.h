#pragma once

#include "trelundo/platform/coreanimation/CAGradientLayer.h"
#include "trelundo/platform/foundation/NSCoder.h"
#include "trelundo/platform/uikit/views/UIView.h"

namespace trelundo {

/// A linear gradient of two colours, top to bottom or left to right. The layer hears of a value when it is
/// assigned, and of all when the appearance changes; a fresh view shows the layer's own defaults.
class GradientView : public UIView {
public:
    explicit GradientView(CGRect frame = {});
    explicit GradientView(NSCoder const& /*archive*/)
        : GradientView(CGRect{}) {}

    UIColor startColor() const { return startColor_; }
    void setStartColor(UIColor color);
    UIColor endColor() const { return endColor_; }
    void setEndColor(UIColor color);
    /// Fractions of the way, passed on unchecked.
    double startLocation() const { return startLocation_; }
    void setStartLocation(double location);
    double endLocation() const { return endLocation_; }
    void setEndLocation(double location);
    bool horizontalMode() const { return horizontalMode_; }
    void setHorizontalMode(bool horizontal);

    /// The view's own layer.
    CAGradientLayer& gradientLayer() const { return static_cast<CAGradientLayer&>(layer()); }
    void updateColors();
    void updateLocations();
    void updatePoints();

    void traitCollectionDidChange(UITraitCollection const* previous) override;

private:
    UIColor startColor_ = UIColor::black();
    UIColor endColor_ = UIColor::white();
    double startLocation_ = 0;
    double endLocation_ = 1;
    bool horizontalMode_ = false;
};

} // namespace trelundo

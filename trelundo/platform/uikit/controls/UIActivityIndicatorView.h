#pragma once

#include "trelundo/platform/uikit/views/UIView.h"

namespace trelundo {

enum class UIActivityIndicatorViewStyle : int {
    whiteLarge = 0,
    white = 1,
    gray = 2,
    medium = 100,
    large = 101
};

/// Eight fading blades that turn once a second while animating in a window. Medium 20 x 20, large 37 x 37
/// points.
class UIActivityIndicatorView : public UIView {
public:
    explicit UIActivityIndicatorView(
        UIActivityIndicatorViewStyle style = UIActivityIndicatorViewStyle::medium);
    ~UIActivityIndicatorView() override;

    UIActivityIndicatorViewStyle style() const { return style_; }
    UIColor color() const;
    void setColor(UIColor color);
    bool hidesWhenStopped() const { return hidesWhenStopped_; }
    void setHidesWhenStopped(bool hides);
    bool isAnimating() const { return isAnimating_; }
    void startAnimating();
    void stopAnimating();

    CGSize intrinsicContentSize() const override;
    void didMoveToWindow() override;
    bool drawsContents() const override { return true; }
    void draw(CGRect rect, Canvas& canvas) override;

private:
    void updateDisplayLink();
    void turnTo(double timestamp);

    UIActivityIndicatorViewStyle style_;
    std::optional<UIColor> color_;
    bool hidesWhenStopped_ = true;
    bool isAnimating_ = false;
    int displayLink_ = 0;  // 0: none
    double startTime_ = 0; // of the turning, Clock::now()
    int step_ = 0;         // the blade that leads, clockwise from the top
};

} // namespace trelundo

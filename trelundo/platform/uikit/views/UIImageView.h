#pragma once

#include "trelundo/platform/uikit/views/UIImage.h"
#include "trelundo/platform/uikit/views/UIView.h"

namespace trelundo {

/// Shows a picture by its content mode. Intrinsic size: the picture's, none without one. Takes no touches.
class UIImageView : public UIView {
public:
    explicit UIImageView(CGRect frame = {});
    /// With the picture's size as frame.
    explicit UIImageView(Ref<UIImage> image);

    Ref<UIImage> image() const { return image_; }
    void setImage(Ref<UIImage> image);

    CGSize intrinsicContentSize() const override;
    CGSize sizeThatFits(CGSize size) const override;
    bool drawsContents() const override { return static_cast<bool>(image_); }
    /// The canvas keeps scaled pictures already.
    bool retainsContents() const override { return true; }
    CGRect drawingRect(CALayer const& layer) const override;
    void draw(CGRect rect, Canvas& canvas) override;
    void tintColorDidChange() override;
    UIAccessibilityTraits accessibilityTraits() const override { return UIAccessibilityTraits::image; }

    /// Where a picture of `size` lies in `bounds` under a content mode.
    static CGRect contentRect(UIViewContentMode mode, CGSize size, CGRect bounds);

protected:
    void appearanceDidChange() override;

private:
    friend class UIButton;
    /// A pressed button's look: black laid over the picture's own shape.
    void setDarkened(bool darkened);
    bool isTemplate() const;
    void drawImage(Canvas& canvas, std::optional<CGColor> tint);

    Ref<UIImage> image_;
    bool isDarkened_ = false;
};

} // namespace trelundo

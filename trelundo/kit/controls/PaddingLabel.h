#pragma once

#include "trelundo/platform/foundation/NSCoder.h"
#include "trelundo/platform/uikit/text/UILabel.h"

namespace trelundo {

/// A label with a margin around its text, shaped as a capsule. Assign the margin before the first layout, and
/// ask for a redisplay after a later change; a background is cut to the capsule where the layer masks to its
/// bounds.
class PaddingLabel : public UILabel {
public:
    explicit PaddingLabel(CGRect frame = {})
        : UILabel(frame) {}
    explicit PaddingLabel(NSCoder const& /*archive*/) {}

    /// Points around the text; negative values shrink the label.
    UIEdgeInsets contentInset() const { return contentInset_; }
    void setContentInset(UIEdgeInsets inset) { contentInset_ = inset; }

    CGSize intrinsicContentSize() const override;
    void drawText(CGRect rect, Canvas& canvas) override;
    void layoutSubviews() override;

protected:
    CGRect textBounds(CGRect bounds) const override { return bounds.insetBy(contentInset_); }

private:
    UIEdgeInsets contentInset_;
};

} // namespace trelundo

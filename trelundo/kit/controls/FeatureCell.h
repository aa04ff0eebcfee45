#pragma once

#include "trelundo/platform/foundation/Lazy.h"
#include "trelundo/platform/foundation/NSCoder.h"
#include "trelundo/platform/uikit/collection/UICollectionViewCell.h"
#include "trelundo/platform/uikit/text/UILabel.h"
#include "trelundo/platform/uikit/views/UIImageView.h"

namespace trelundo {

/// A tile of a feature carousel: a picture that fills it, a dark veil and a white caption, whose font and
/// place are the subclass's. The hosting screen sets picture and text.
class FeatureCell : public UICollectionViewCell {
public:
    explicit FeatureCell(CGRect frame);
    /// Ends the program: tiles do not come from archives.
    [[noreturn]] explicit FeatureCell(NSCoder const& archive);

    Ref<UIImageView> const& imageView() const { return imageView_; }
    Ref<UIView> const& dimmView() const { return dimmView_; }
    virtual Ref<UILabel> const& label() = 0;

    /// Shows `text`, each word on a line of its own, over the picture.
    void setFeature(std::string const& text, Ref<UIImage> image);

protected:
    /// A caption as both generations have it.
    static Ref<UILabel> makeLabel(UIFont font);

private:
    Ref<UIImageView> const imageView_ = named("imageView", make<UIImageView>());
    Ref<UIView> const dimmView_ = named("dimmView", make<UIView>());
};

} // namespace trelundo

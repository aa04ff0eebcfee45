#pragma once

#include "trelundo/platform/uikit/controls/UIControl.h"
#include "trelundo/platform/uikit/text/AttributedText.h"
#include "trelundo/platform/uikit/text/UILabel.h"
#include "trelundo/platform/uikit/views/UIImageView.h"

#include <memory>
#include <optional>
#include <string>

namespace trelundo {

enum class UIButtonType : int { custom = 0, system = 1 };

/// A title and a picture that depend on the state. The value for exactly the current state counts, else the
/// one for normal; an attributed title beats a plain one.
class UIButton : public UIControl {
public:
    explicit UIButton(CGRect frame = {});
    explicit UIButton(UIButtonType type);
    ~UIButton() override;

    UIButtonType buttonType() const { return type_; }

    // Content by state. Setting none removes the value; getters fall back to normal.
    void setTitle(std::optional<std::string> title, UIControlState state);
    std::optional<std::string> title(UIControlState state) const;
    void setAttributedTitle(std::optional<NSAttributedString> title, UIControlState state);
    std::optional<NSAttributedString> attributedTitle(UIControlState state) const;
    void setTitleColor(std::optional<UIColor> color, UIControlState state);
    UIColor titleColor(UIControlState state) const;
    void setImage(Ref<UIImage> image, UIControlState state);
    Ref<UIImage> image(UIControlState state) const;
    void setBackgroundImage(Ref<UIImage> image, UIControlState state);
    Ref<UIImage> backgroundImage(UIControlState state) const;
    std::optional<std::string> currentTitle() const { return title(state()); }
    std::optional<NSAttributedString> currentAttributedTitle() const { return attributedTitle(state()); }
    Ref<UIImage> currentImage() const { return image(state()); }
    UIColor currentTitleColor() const { return titleColor(state()); }

    /// Made on first use; its font, number of lines and line break mode may be set, its text, colour and
    /// frame are the button's.
    Ref<UILabel> const& titleLabel();
    Ref<UIImageView> const& imageView();

    /// Whether a custom button's picture is darkened while pressed (unless it has a picture for that state).
    bool adjustsImageWhenHighlighted() const { return adjustsImageWhenHighlighted_; }
    void setAdjustsImageWhenHighlighted(bool adjusts);

    // In points. The content's insets are part of the intrinsic size, those of title and picture only move
    // them.
    UIEdgeInsets contentEdgeInsets() const { return contentEdgeInsets_; }
    void setContentEdgeInsets(UIEdgeInsets insets);
    UIEdgeInsets titleEdgeInsets() const { return titleEdgeInsets_; }
    void setTitleEdgeInsets(UIEdgeInsets insets);
    UIEdgeInsets imageEdgeInsets() const { return imageEdgeInsets_; }
    void setImageEdgeInsets(UIEdgeInsets insets);

    CGSize intrinsicContentSize() const override;
    CGSize sizeThatFits(CGSize size) const override;
    void layoutSubviews() override;
    void tintColorDidChange() override;
    std::optional<double> firstBaselineOffsetFromTop() const override;
    std::optional<double> lastBaselineOffsetFromBottom() const override;
    std::string accessibilityLabel() const override;
    UIAccessibilityTraits accessibilityTraits() const override;

protected:
    void stateDidChange() override;
    UIControlEvents releaseInsideEvents() const override {
        return UIControlEvents::touchUpInside | UIControlEvents::primaryActionTriggered;
    }

private:
    struct State;
    /// Where title and picture lie in `bounds`; zero sizes for what is not shown.
    struct Parts {
        CGRect image;
        CGRect title;
    };
    Parts parts(CGRect bounds) const;

    bool isSystem() const { return type_ != UIButtonType::custom; }
    bool hasZeroContentInsets() const { return contentEdgeInsets_ == UIEdgeInsets{}; }
    /// Brings title, pictures and their look in line with the state and the content.
    void contentDidChange();
    void updateTitle();
    void updateImage();
    void updateBackgroundImage();
    void updateHighlight();
    double partAlpha() const;
    void reportTitle();
    std::string shownTitle() const;
    UIColor attributedTitleColor() const;
    Ref<UIImage> shownImage() const;
    CGSize titleSize() const;
    CGSize imageSize() const;
    CGSize titleSizeWithin(CGSize available) const;
    CGSize emptySize() const;
    void sizeDidChange();
    void makeTitleLabel();
    void makeImageView();

    std::unique_ptr<State> state_;
    UIButtonType type_ = UIButtonType::custom;
    bool adjustsImageWhenHighlighted_ = true;
    UIEdgeInsets contentEdgeInsets_;
    UIEdgeInsets titleEdgeInsets_;
    UIEdgeInsets imageEdgeInsets_;
};

} // namespace trelundo

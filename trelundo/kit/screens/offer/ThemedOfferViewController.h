#pragma once

#include "trelundo/kit/controls/PaddingLabel.h"
#include "trelundo/kit/screens/offer/DiscountOfferViewController.h"
#include "trelundo/platform/uikit/layout/UIStackView.h"
#include "trelundo/platform/uikit/views/UIImageView.h"

namespace trelundo {

/// The full-screen offers in the host's theme: background and shadow pictures, a close button beside the
/// host's logo, the offer's texts and a continue button above the links. Theme and paymentDiscount are to be
/// set before the view loads. A subclass arranges the texts.
class ThemedOfferViewController : public DiscountOfferViewController {
public:
    UIColor backgroundColor() const { return theme_.backgroundColor; }
    void setBackgroundColor(UIColor color) { theme_.backgroundColor = std::move(color); }
    /// All texts, the close button's tint and the links.
    UIColor textColor() const { return theme_.textColor; }
    void setTextColor(UIColor color) { theme_.textColor = std::move(color); }
    UIColor buttonColor() const { return theme_.buttonColor; }
    void setButtonColor(UIColor color) { theme_.buttonColor = std::move(color); }
    // Names of the host's pictures; a missing one leaves its place empty.
    std::string const& backgroundImageName() const { return theme_.backgroundImageName; }
    void setBackgroundImageName(std::string name) { theme_.backgroundImageName = std::move(name); }
    std::string const& backgroundTopShadowName() const { return theme_.backgroundTopShadowName; }
    void setBackgroundTopShadowName(std::string name) { theme_.backgroundTopShadowName = std::move(name); }
    std::string const& backgroundBottomShadowName() const { return theme_.backgroundBottomShadowName; }
    void setBackgroundBottomShadowName(std::string name) {
        theme_.backgroundBottomShadowName = std::move(name);
    }
    std::string const& premiumImageName() const { return theme_.premiumImageName; }
    void setPremiumImageName(std::string name) { theme_.premiumImageName = std::move(name); }

    void viewDidLoad() override;

protected:
    struct Theme {
        UIColor backgroundColor;
        UIColor textColor;
        UIColor buttonColor;
        std::string backgroundImageName;
        std::string backgroundTopShadowName;
        std::string backgroundBottomShadowName;
        std::string premiumImageName;
    };
    explicit ThemedOfferViewController(Theme theme)
        : theme_(std::move(theme)) {}

    /// The offer's texts and the continue button, in their arrangement.
    virtual Ref<UIStackView> makeStack() = 0;
    virtual UIColor continueTitleColor() const { return UIColor::black(); }
    LinksStyle linksStyle() const override;

    Ref<UIButton> const& continueButton();
    /// The "Limited Time Offer" capsule.
    static Ref<PaddingLabel> makeBadge(bool isSmallScreen);
    /// Text attributes in the theme's text colour.
    TextAttributes attributes(UIFont font, double alpha = 1) const;

private:
    void addPictures();
    void addTopBar();
    /// Above `terms`.
    void addStack(UIView& terms);

    Ref<UIImageView> const& backgroundImageView();
    Ref<UIImageView> const& shadowTopImageView();
    Ref<UIImageView> const& shadowBottomImageView();
    Ref<UIButton> const& closeButton();
    Ref<UIImageView> const& premiumImageView();
    Ref<UIStackView> const& stackView();

    Theme theme_;
    Lazy<UIImageView> backgroundImageView_{"backgroundImageView"};
    Lazy<UIImageView> shadowTopImageView_{"shadowTopImageView"};
    Lazy<UIImageView> shadowBottomImageView_{"shadowBottomImageView"};
    Lazy<UIButton> closeButton_{"closeButton"};
    Lazy<UIImageView> premiumImageView_{"premiumImageView"};
    Lazy<UIButton> continueButton_{"continueButton"};
    Lazy<UIStackView> stackView_{"stackView"};
};

} // namespace trelundo

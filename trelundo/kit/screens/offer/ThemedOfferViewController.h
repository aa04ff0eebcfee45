#pragma once

#include "trelundo/kit/controls/PaddingLabel.h"
#include "trelundo/kit/controls/Palette.h"
#include "trelundo/kit/screens/offer/DiscountOfferViewController.h"
#include "trelundo/platform/uikit/layout/UIStackView.h"
#include "trelundo/platform/uikit/views/UIImageView.h"

namespace trelundo {

/// Who gives way on a screen too low for a whole offer, the lowest first. The prices, the links and the
/// continue button never do.
struct OfferResistance {
    static constexpr double sentence = 740;    // of offer 3: shrinks
    static constexpr double closeButton = 745; // stays clear of the texts
    static constexpr double badge = 746;
    static constexpr double leastSentence = 748;
    static constexpr double top = 749; // of the screen: the headline leaves it
    static constexpr double price = 999;
};

/// The full-screen offers in the host's theme: background and shadow pictures, a close button beside the
/// host's logo, the offer's texts and a continue button above the links. The text colour is also that of the
/// links and of the close button's tint. Theme and paymentDiscount are to be
/// set before the view loads. A subclass arranges the texts.
class ThemedOfferViewController : public DiscountOfferViewController,
                                  public BackgroundColored,
                                  public TextColored,
                                  public ButtonColored {
public:
    // Names of the host's pictures; a missing one leaves its place empty.
    std::string const& backgroundImageName() const { return pictures_.backgroundImageName; }
    void setBackgroundImageName(std::string name) { pictures_.backgroundImageName = std::move(name); }
    std::string const& backgroundTopShadowName() const { return pictures_.backgroundTopShadowName; }
    void setBackgroundTopShadowName(std::string name) { pictures_.backgroundTopShadowName = std::move(name); }
    std::string const& backgroundBottomShadowName() const { return pictures_.backgroundBottomShadowName; }
    void setBackgroundBottomShadowName(std::string name) {
        pictures_.backgroundBottomShadowName = std::move(name);
    }
    std::string const& premiumImageName() const { return pictures_.premiumImageName; }
    void setPremiumImageName(std::string name) { pictures_.premiumImageName = std::move(name); }

    void viewDidLoad() override;

protected:
    struct PictureNames {
        std::string backgroundImageName;
        std::string backgroundTopShadowName;
        std::string backgroundBottomShadowName;
        std::string premiumImageName;
    };
    explicit ThemedOfferViewController(PictureNames pictures)
        : pictures_(std::move(pictures)) {}

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

    PictureNames pictures_;
    Lazy<UIImageView> backgroundImageView_{"backgroundImageView"};
    Lazy<UIImageView> shadowTopImageView_{"shadowTopImageView"};
    Lazy<UIImageView> shadowBottomImageView_{"shadowBottomImageView"};
    Lazy<UIButton> closeButton_{"closeButton"};
    Lazy<UIImageView> premiumImageView_{"premiumImageView"};
    Lazy<UIButton> continueButton_{"continueButton"};
    Lazy<UIStackView> stackView_{"stackView"};
};

} // namespace trelundo

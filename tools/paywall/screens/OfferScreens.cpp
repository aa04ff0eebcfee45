#include "tools/paywall/screens/OfferScreens.h"

#include "tools/paywall/screens/ScreenProperties.h"
#include "trelundo/kit/screens/notice/BillingViewController.h"
#include "trelundo/kit/screens/offer/OfferV2ViewController.h"
#include "trelundo/kit/screens/offer/OfferV3ViewController.h"
#include "trelundo/kit/screens/offer/OfferV4ViewController.h"
#include "trelundo/kit/screens/offer/OfferViewController.h"
#include "trelundo/platform/uikit/views/UIImage.h"

namespace trelundo::paywall {

namespace {

Ref<UIImage> parsePicture(std::string const& name) { return name == "none" ? nullptr : UIImage::named(name); }

/// An offer of one product. Its discount is the one given for that product, to be set first; without a
/// product any one given counts.
template <class Screen> ScreenType offer(std::string name, Properties own) {
    own.emplace("paymentDiscount", property(&Screen::setPaymentDiscount, parseDiscount));
    auto type = oneProductScreen<Screen>(std::move(name), std::move(own));
    type.setDiscount = [](UIViewController& screen, Ref<SKPaymentDiscount> const& discount) {
        dynamic_cast<Screen&>(screen).setPaymentDiscount(discount);
    };
    return type;
}

Properties themed(Properties own) {
    using Screen = ThemedOfferViewController;
    own.merge(colorProperties({"backgroundColor", "textColor", "buttonColor"}));
    own.merge(Properties{
        {"backgroundImageName", property(&Screen::setBackgroundImageName, parseText)},
        {"backgroundTopShadowName", property(&Screen::setBackgroundTopShadowName, parseText)},
        {"backgroundBottomShadowName", property(&Screen::setBackgroundBottomShadowName, parseText)},
        {"premiumImageName", property(&Screen::setPremiumImageName, parseText)},
    });
    return own;
}

ScreenType::Setter preferredLanguage() {
    return property(&PercentageOfferViewController::setPreferredLanguage, parseOptionalText);
}

} // namespace

ScreenType offerSheet() {
    auto type = offer<OfferViewController>("OfferViewController", {});
    type.presentation = UIModalPresentationStyle::overFullScreen;
    return type;
}

ScreenType percentageOfferWithBadge() {
    auto own = colorProperties({"buttonTextColor"});
    own.emplace("preferredLanguage", preferredLanguage());
    return offer<OfferV2ViewController>("OfferV2ViewController", themed(std::move(own)));
}

ScreenType sentenceOffer() {
    return offer<OfferV3ViewController>("OfferV3ViewController",
                                        themed(colorProperties({"buttonTextColor"})));
}

ScreenType percentageOffer() {
    return offer<OfferV4ViewController>("OfferV4ViewController",
                                        themed({{"preferredLanguage", preferredLanguage()}}));
}

ScreenType billingNotice() {
    using Screen = BillingViewController;
    return screenType<Screen>(
        "BillingViewController",
        {
            {"mainBackgroundColor", property(&Screen::setMainBackgroundColor, parseColor)},
            {"warningBadgeImage", property(&Screen::setWarningBadgeImage, parsePicture)},
            {"headlineColor", property(&Screen::setHeadlineColor, parseColor)},
            {"updateDetailsTextColor", property(&Screen::setUpdateDetailsTextColor, parseColor)},
            {"updateDetailsBackgroundColor", property(&Screen::setUpdateDetailsBackgroundColor, parseColor)},
            {"appName", property(&Screen::setAppName, parseText)},
            {"headLineLabelText", property(&Screen::setHeadLineLabelText, parseText)},
            {"issueDetailsText", property(&Screen::setIssueDetailsText, parseText)},
            {"updateDetailsText", property(&Screen::setUpdateDetailsText, parseText)},
            {"closeBdageImage", property(&Screen::setCloseBdageImage, parsePicture)},
            {"isSmallScreen", property(&Screen::setSmallScreen, parseBool)},
        });
}

} // namespace trelundo::paywall

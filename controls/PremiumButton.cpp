#include "controls/PremiumButton.h"

#include "common/Common.h"
#include "controls/PlanTerms.h"
#include "platform/foundation/Strings.h"

namespace trelundo {

namespace {

constexpr auto selectedAndHighlighted = UIControlState::selected | UIControlState::highlighted;
constexpr double totalTrailingMargin = 25;
constexpr double separatorTrailingMargin = 50;
constexpr double separatorInset = 12;

UIColor selectedBackground() { return {0.9294117647058824, 0.9254901960784314, 0.9333333333333333}; }

} // namespace

PremiumButton::PremiumButton(CGRect frame)
    : UIButton(frame) {
    setup();
}

PremiumButton::PremiumButton(NSCoder const& /*archive*/) {}

void PremiumButton::setup() {
    layer().setCornerRadius(8);
    layer().setMasksToBounds(true);
    titleLabel()->setFont(textBoldFont_);
    titleLabel()->setNumberOfLines(2);
    setContentHorizontalAlignment(UIControlContentHorizontalAlignment::leading);
    setContentEdgeInsets({0, 12, 0, 12});
    setTitleEdgeInsets({0, 12, 0, 12});
    setTitleColor(textColor_, UIControlState::normal);
    setTitleColor(textColor_.withAlphaComponent(0.3), UIControlState::highlighted);
}

CGSize PremiumButton::intrinsicContentSize() const { return {0, isSmallScreen_ ? 50.0 : 60.0}; }

void PremiumButton::setProducts(Products products) {
    products_ = std::move(products);
    productsDidChange();
}

void PremiumButton::setProduct(Ref<SKProduct> product) {
    product_ = std::move(product);
    productDidChange();
}

void PremiumButton::setSelected(bool selected) {
    UIButton::setSelected(selected);
    selectionDidChange();
}

void PremiumButton::productsDidChange() {
    if (products_.size() < 2) return;
    setImage(Common::image("not_selected_premium"), UIControlState::normal);
    auto const selected = Common::image("selected_premium");
    setImage(selected, UIControlState::selected);
    setImage(selected, selectedAndHighlighted);
}

void PremiumButton::selectionDidChange() {
    setBackgroundColor(isSelected() ? selectedBackground() : UIColor::clear());
    if (totalSeparatorView_) totalSeparatorView_->setHidden(!isSelected());
    if (totalLabel_) totalLabel_->setHidden(!isSelected());
    if (!isSelected()) return;

    auto const host = delegate();
    if (!host) return;
    auto const discount = product_ && product_->subscriptionPeriod() ? offer() : nullptr;
    if (!isFreeTrial(discount)) {
        host->updateOffer(std::nullopt, std::nullopt);
        return;
    }
    auto const trial = plan({.productSubscriptionPeriod = discount->subscriptionPeriod(),
                             .capitalizeFirstLetter = true,
                             .periodUnitDown = true});
    auto const titleKey = abTest_ == "quivera602" ? "Try %%% for FREE" : "Get %%% FREE!";
    std::optional<std::string> subtitle;
    if (product_->subscriptionPeriod()->unit == SKProductPeriodUnit::year) {
        if (abTest_ == "ziokrefa")
            subtitle = Common::text("with a yearly subscription");
        else if (abTest_ != "quivera602")
            subtitle =
                replacingOccurrences(Common::text("Then $$$/year"), "$$$", PremiumManager::price(*product_));
    }
    host->updateOffer(replacingOccurrences(Common::text(titleKey), "%%%", trial), subtitle);
}

Ref<SKProductDiscount> PremiumButton::offer() const {
    return offerDiscount(*product_, paymentDiscount_, introductoryPriceWasOffered_);
}

void PremiumButton::layoutSubviews() {
    UIButton::layoutSubviews();
    if (!totalSeparatorView_ || !totalLabel_) return;
    auto const size = bounds().size;
    auto const label = totalLabel_->frame().size;
    double const labelX =
        isRightToLeft() ? totalTrailingMargin : size.width - label.width - totalTrailingMargin;
    double const separatorX = isRightToLeft() ? label.width + separatorTrailingMargin
                                              : size.width - label.width - separatorTrailingMargin;
    totalLabel_->setFrame({labelX, (size.height - label.height) * 0.5, label.width, label.height});
    totalSeparatorView_->setFrame({separatorX, separatorInset, 1, size.height - 2 * separatorInset});
    keepTitleClearOfTotalBlock();
}

} // namespace trelundo

#pragma once

#include "trelundo/kit/controls/PremiumButtonDelegate.h"
#include "trelundo/kit/controls/ProductButton.h"
#include "trelundo/kit/plans/PlanName.h"
#include "trelundo/platform/foundation/NSCoder.h"
#include "trelundo/platform/storekit/SKPayment.h"

namespace trelundo {

/// One product as a selectable row: plan, price, monthly share and saving, and a total block for a yearly
/// plan. Assign in this order: isSmallScreen and fonts, introductoryPriceWasOffered, products,
/// paymentDiscount, product, abTest, delegate, selected. The texts are built when `product` is assigned; the
/// delegate hears of the selection.
class PremiumButton : public ProductButton {
public:
    explicit PremiumButton(CGRect frame = {});
    /// A button from an archive gets no corner radius, fonts or insets.
    explicit PremiumButton(NSCoder const& archive);

    Ref<PremiumButtonDelegate> delegate() const { return delegate_.lock(); }
    void setDelegate(Weak<PremiumButtonDelegate> delegate) { delegate_ = std::move(delegate); }
    UIColor textColor() const { return textColor_; }
    UIFont textFont() const { return textFont_; }
    void setTextFont(UIFont font) { textFont_ = font; }
    UIFont textBoldFont() const { return textBoldFont_; }
    void setTextBoldFont(UIFont font) { textBoldFont_ = font; }
    bool isSmallScreen() const { return isSmallScreen_; }
    void setSmallScreen(bool small) { isSmallScreen_ = small; }
    /// The promotional offer that the screen will pay with; null: none.
    Ref<SKPaymentDiscount> paymentDiscount() const { return paymentDiscount_; }
    void setPaymentDiscount(Ref<SKPaymentDiscount> discount) { paymentDiscount_ = std::move(discount); }

    CGSize intrinsicContentSize() const override;

    using Plan = PlanPeriod;
    /// planName() under the name that hosts look for.
    static std::string plan(Plan const& plan) { return planName(plan); }

private:
    void setup();
    void productsDidChange() override;
    void productDidChange() override;
    void selectionDidChange() override;
    std::optional<NSAttributedString> titleWithSaving() const override;
    void writeTitles() override;
    void placeTotalBlock() override;
    void tellOffer(PremiumButtonDelegate& host) const;

    Ref<SKProductDiscount> offer() const;
    void showOneTimePurchase();
    void showIntroductoryPrice(SKProductDiscount const& offer);
    std::string savingBesideOthers() const;
    std::string plainTitle(bool withSaving) const;
    NSAttributedString twoLineTitle(bool withSaving) const;
    void addTotal();
    TextAttributes attributes(UIFont font) const;

    /// What a plan's titles are made of; empty for other products.
    struct Terms {
        std::string plan;
        std::string price; // by the month for a year
        std::string saving;
        std::string secondLine(bool withSaving) const;
    };

    Weak<PremiumButtonDelegate> delegate_;
    Terms terms_;
    UIColor const textColor_{0.24313725490196078, 0.2549019607843137, 0.29411764705882354};
    UIFont textFont_ = UIFont::system(12, UIFont::Weight::semibold);
    UIFont textBoldFont_ = UIFont::system(14, UIFont::Weight::bold);
    bool isSmallScreen_ = false;
    Ref<SKPaymentDiscount> paymentDiscount_;
};

} // namespace trelundo

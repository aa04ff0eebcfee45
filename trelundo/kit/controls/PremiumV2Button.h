#pragma once

#include "trelundo/kit/controls/Palette.h"
#include "trelundo/kit/controls/PremiumV2ButtonDelegate.h"
#include "trelundo/kit/controls/ProductButton.h"
#include "trelundo/platform/foundation/NSCoder.h"

namespace trelundo {

class PlanTexts;

/// One plan as a selectable row in the colours of its screen. Assign in this order: the colours,
/// introductoryPriceWasOffered, abTest, products, product, delegate, selected. When it becomes selected it
/// hands the screen the texts of the continue block.
class PremiumV2Button : public ProductButton,
                        public TextColored,
                        public ButtonTextColored,
                        public ButtonColored,
                        public TermsColored,
                        public SelectedColored {
public:
    explicit PremiumV2Button(CGRect frame = {});
    /// A button from an archive gets no corner radius or insets.
    explicit PremiumV2Button(NSCoder const& archive);

    Ref<PremiumV2ButtonDelegate> delegate() const { return delegate_.lock(); }
    void setDelegate(Weak<PremiumV2ButtonDelegate> delegate) { delegate_ = std::move(delegate); }

    void layoutSubviews() override;

private:
    void setup();
    void productsDidChange() override;
    void productDidChange() override;
    void selectionDidChange() override;
    std::optional<NSAttributedString> titleWithSaving() const override;
    void writeTitles() override;
    void placeTotalBlock() override;

    NSAttributedString title(bool withSaving) const;
    TextAttributes lineAttributes(double size, UIFont::Weight weight, UIColor color) const;
    bool isCentred() const;
    void updateBadge();
    void placeBadge();
    PlanTexts texts() const;
    PremiumV2ButtonDelegate::ContinueTexts continueTexts() const;

    Weak<PremiumV2ButtonDelegate> delegate_;
    NSAttributedString fullTitle_;
    NSAttributedString titleWithoutSaving_;
    NSAttributedString badge_; // the title's last line where that is a badge, else empty
    Ref<UIView> badgeGround_;  // below the title
};

} // namespace trelundo

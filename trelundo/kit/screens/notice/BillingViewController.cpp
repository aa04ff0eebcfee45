#include "trelundo/kit/screens/notice/BillingViewController.h"

#include "trelundo/kit/common/Pictures.h"
#include "trelundo/kit/common/Texts.h"
#include "trelundo/kit/common/internal/TextAttributes.h"
#include "trelundo/kit/common/internal/ViewFactory.h"
#include "trelundo/kit/screens/base/BaseViewController.h"
#include "trelundo/platform/foundation/Strings.h"
#include "trelundo/platform/uikit/layout/NSLayoutAnchor.h"
#include "trelundo/platform/uikit/layout/UILayoutGuide.h"

namespace trelundo {

namespace {

constexpr char const* issueDetailsKey = "There seems to be billing problem with your account. If we can't "
                                        "resolve it, this would mean that you lose "
                                        "access to Quivera Premium.\n\nTo fix this issue, please make sure "
                                        "your credit card details are up to date and "
                                        "that you are using a valid credit card.";

/// Below the resistance of texts.
constexpr double pictureResistance = 500;

} // namespace

BillingViewController::BillingViewController()
    : warningBadgeImage_(Pictures::image("warning_envelope"))
    , headLineLabelText_(Texts::text("Oops! Something is wrong."))
    , updateDetailsText_(Texts::text("Update Details"))
    , closeBdageImage_(Pictures::image("x", UIImageRenderingMode::alwaysTemplate))
    , isSmallScreen_(BaseViewController::isMainScreenSmall()) {}

std::string const& BillingViewController::issueDetailsText() {
    if (!issueDetailsText_)
        issueDetailsText_ = replacingOccurrences(Texts::text(issueDetailsKey), "Quivera", appName_);
    return *issueDetailsText_;
}

void BillingViewController::viewDidLoad() {
    UIViewController::viewDidLoad();
    view()->setBackgroundColor(mainBackgroundColor_);
    view()->addSubview(warningBadgeImageView());
    view()->addSubview(topViewStackView());
    view()->addSubview(updateDetailsButton());
    view()->addSubview(closeButton());
    activate({warningBadgeImageView()->centerXAnchor() == view()->centerXAnchor()});
    compactConstraints_ = makeCompactConstraints();
    regularConstraints_ = makeRegularConstraints();
    setConstraints();
}

void BillingViewController::traitCollectionDidChange(UITraitCollection const* previous) {
    UIViewController::traitCollectionDidChange(previous);
    if (isViewLoaded()) setConstraints();
}

void BillingViewController::setConstraints() {
    auto const traits = view()->traitCollection();
    auto const sizeClass = traits.horizontalSizeClass;
    if (sizeClass == UIUserInterfaceSizeClass::unspecified) return;
    // On a low screen the headline lies over the middle of the picture, which then is a mere ground.
    warningBadgeImageView()->setAlpha(traits.verticalSizeClass == UIUserInterfaceSizeClass::compact ? 0.3
                                                                                                    : 1);
    bool const isRegular = sizeClass == UIUserInterfaceSizeClass::regular;
    NSLayoutConstraint::deactivate(isRegular ? compactConstraints_ : regularConstraints_);
    NSLayoutConstraint::activate(isRegular ? regularConstraints_ : compactConstraints_);
}

BillingViewController::Constraints BillingViewController::makeCompactConstraints() {
    auto const safeArea = view()->safeAreaLayoutGuide();
    return {
        closeButton()->leadingAnchor() == view()->leadingAnchor() + 25,
        closeButton()->topAnchor() == safeArea->topAnchor() + 20,
        warningBadgeImageView()->topAnchor() == safeArea->topAnchor() + 20,
        topViewStackView()->topAnchor() == warningBadgeImageView()->bottomAnchor() - 75,
        topViewStackView()->trailingAnchor() == view()->trailingAnchor() - 25,
        topViewStackView()->leadingAnchor() == view()->leadingAnchor() + 25,
        updateDetailsButton()->bottomAnchor() == safeArea->bottomAnchor() - 24,
        updateDetailsButton()->topAnchor() >= topViewStackView()->bottomAnchor() + 10,
        updateDetailsButton()->leadingAnchor() == topViewStackView()->leadingAnchor(),
        updateDetailsButton()->trailingAnchor() == topViewStackView()->trailingAnchor(),
    };
}

BillingViewController::Constraints BillingViewController::makeRegularConstraints() {
    auto const safeArea = view()->safeAreaLayoutGuide();
    return {
        closeButton()->leadingAnchor() == view()->leadingAnchor() + 46,
        closeButton()->topAnchor() == safeArea->topAnchor() + 40,
        warningBadgeImageView()->topAnchor() <= safeArea->topAnchor() + 100,
        warningBadgeImageView()->topAnchor() >= safeArea->topAnchor(),
        topViewStackView()->topAnchor() == warningBadgeImageView()->bottomAnchor() - 65,
        topViewStackView()->widthAnchor() == 368,
        topViewStackView()->centerXAnchor() == view()->centerXAnchor(),
        updateDetailsButton()->bottomAnchor() >= safeArea->bottomAnchor() - 64,
        // Wishes: down to the margin of the compact set the button may sink, so that the picture keeps its
        // size.
        (updateDetailsButton()->bottomAnchor() <= safeArea->bottomAnchor() - 24).at(pictureResistance + 10),
        (updateDetailsButton()->bottomAnchor() == safeArea->bottomAnchor() - 64).at(pictureResistance - 10),
        updateDetailsButton()->topAnchor() >= topViewStackView()->bottomAnchor() + 10,
        updateDetailsButton()->centerXAnchor() == view()->centerXAnchor(),
        updateDetailsButton()->widthAnchor() == topViewStackView()->widthAnchor(),
    };
}

void BillingViewController::close() { dismiss(true); }

void BillingViewController::updateDetails() {
    dismiss(true);
    if (auto host = delegate()) host->billingViewControllerDidTapUpdateDetails();
}

Ref<UIButton> const& BillingViewController::closeButton() {
    return closeButton_([this] {
        auto button = makeCloseButton(*this, closeBdageImage_, 10);
        button->setTintColor(headlineColor_); // legible on the notice's own ground
        return button;
    });
}

Ref<UIImageView> const& BillingViewController::warningBadgeImageView() {
    return warningBadgeImageView_([this] {
        auto picture = makePicture(warningBadgeImage_, UIViewContentMode::scaleAspectFit);
        // On a low screen the picture gives way, never the texts or the button.
        picture->setContentCompressionResistancePriority(pictureResistance, NSLayoutConstraintAxis::vertical);
        return picture;
    });
}

Ref<UIStackView> const& BillingViewController::topViewStackView() {
    return topViewStackView_([this] {
        auto stack = makeVerticalStack({headLineLabel(), issueDetailsLabel()});
        stack->setSpacing(12);
        return stack;
    });
}

Ref<UILabel> const& BillingViewController::headLineLabel() {
    return headLineLabel_([this] {
        auto label = makeShrinkingLabel({}, UIFont::boldSystem(34), headlineColor_);
        label->setText(headLineLabelText_);
        label->setNumberOfLines(2);
        return label;
    });
}

Ref<UILabel> const& BillingViewController::issueDetailsLabel() {
    return issueDetailsLabel_([this] {
        auto const attributes = textAttributes(UIFont::system(isSmallScreen_ ? 12 : 17), UIColor::white(),
                                               NSParagraphStyle{.lineSpacing = 2});
        auto label = usingAutoLayout(make<UILabel>());
        label->setNumberOfLines(0);
        label->setAttributedText(NSAttributedString{issueDetailsText(), attributes});
        return label;
    });
}

Ref<UIButton> const& BillingViewController::updateDetailsButton() {
    return updateDetailsButton_([this] {
        auto button = usingAutoLayout(make<UIButton>(UIButtonType::system));
        button->setTitle(updateDetailsText_, UIControlState::normal);
        button->setTitleColor(updateDetailsTextColor_, UIControlState::normal);
        button->titleLabel()->setFont(UIFont::boldSystem(17));
        button->setBackgroundColor(updateDetailsBackgroundColor_);
        button->layer().setCornerRadius(11);
        button->addTarget(this, &BillingViewController::updateDetails, UIControlEvents::touchUpInside);
        activate({button->heightAnchor() == 64});
        return button;
    });
}

} // namespace trelundo

#include "trelundo/platform/uikit/controllers/internal/PresentationEngine.h"
#include "trelundo/platform/uikit/views/UIWindow.h"

#include <algorithm>
#include <ranges>

namespace trelundo {

namespace {

constexpr double sheetRadius = 10;            // points
constexpr double phoneSheetGap = 10;          // below the status bar
constexpr CGSize formSheetSize{540, 620};     // on tablets
constexpr double widestPageSheet = 704;       // on tablets
constexpr double tabletSheetMargin = 20;      // least distance from the edges of the safe area
constexpr double narrowestRegularWidth = 560; // narrower sheets have a compact width

/// Lies over the window and keeps touches from what is behind.
class PresentationContainer : public UIView {
public:
    using UIView::UIView;
    UIResponder* nextResponder() const override { return nullptr; }
};

bool isSheet(UIModalPresentationStyle style) {
    return style == UIModalPresentationStyle::pageSheet || style == UIModalPresentationStyle::formSheet;
}

UIModalPresentationStyle resolvedStyle(UIModalPresentationStyle style) {
    switch (style) {
    case UIModalPresentationStyle::automatic:
        return UIModalPresentationStyle::pageSheet;
    case UIModalPresentationStyle::none:
    case UIModalPresentationStyle::currentContext:
        return UIModalPresentationStyle::fullScreen;
    case UIModalPresentationStyle::overCurrentContext:
        return UIModalPresentationStyle::overFullScreen;
    case UIModalPresentationStyle::popover:
        return UIModalPresentationStyle::formSheet;
    default:
        return style;
    }
}

CGRect tabletSheetFrame(UIModalPresentationStyle style, CGRect area) {
    auto const room = area.insetBy(tabletSheetMargin, tabletSheetMargin).size;
    CGSize const wanted =
        style == UIModalPresentationStyle::formSheet ? formSheetSize : CGSize{widestPageSheet, room.height};
    CGSize const size{std::min(wanted.width, room.width), std::min(wanted.height, room.height)};
    return {std::round(area.midX() - size.width / 2), std::round(area.midY() - size.height / 2), size.width,
            size.height};
}

CGRect carrierFrame(UIModalPresentationStyle style, UIWindow& window) {
    auto const area = window.bounds();
    auto const& traits = window.traitCollection();
    if (!isSheet(style)) return area;
    auto const safeArea = window.windowSafeAreaInsets();
    if (traits.userInterfaceIdiom == UIUserInterfaceIdiom::pad)
        return tabletSheetFrame(style, area.insetBy(safeArea));
    if (traits.verticalSizeClass == UIUserInterfaceSizeClass::compact) return area;
    return area.insetBy(UIEdgeInsets{safeArea.top + phoneSheetGap, 0, 0, 0});
}

void roundSheet(UIView& carrier, UIModalPresentationStyle style, CGRect area) {
    bool const isCard = isSheet(style) && carrier.frame() != area;
    bool const touchesBottom = carrier.frame().maxY() >= area.maxY();
    carrier.setClipsToBounds(isCard);
    carrier.layer().setCornerRadius(isCard ? sheetRadius : 0);
    carrier.layer().setMaskedCorners(touchesBottom ? static_cast<CACornerMask>(3) : CACornerMask::all);
}

} // namespace

/// The view that stands for the controller among the window's subviews.
Ref<UIView> PresentationEngine::host(UIViewController const& controller) {
    return controller.presentation_ ? controller.presentation_->container : controller.view_;
}

void PresentationEngine::build(UIViewController& controller) {
    auto presentation = std::make_unique<Presentation>();
    presentation->style = resolvedStyle(controller.presentationStyle_);
    presentation->container = make<PresentationContainer>();
    if (isSheet(presentation->style)) {
        presentation->dimming = make<UIView>();
        presentation->dimming->setBackgroundColor(UIColor::gray(0, 0.2));
        presentation->container->addSubview(presentation->dimming);
    }
    presentation->carrier = make<UIView>();
    presentation->container->addSubview(presentation->carrier);
    controller.presentation_ = std::move(presentation);
}

void PresentationEngine::install(UIViewController& controller, UIWindow& window) {
    auto const container = controller.presentation_->container;
    controller.presentation_->carrier->addSubview(controller.view());
    fitToWindow(controller, window);
    window.addSubview(container);
    updateDimming(controller);
    window.setNeedsStatusBarAppearanceUpdate();
}

void PresentationEngine::fitToWindow(UIViewController& controller, UIWindow& window) {
    auto const area = window.bounds();
    if (!controller.presentation_) return controller.view_->setFrame(area);
    auto const& presentation = *controller.presentation_;
    auto const frame = carrierFrame(presentation.style, window);
    auto const turned = presentation.carrier->transform();
    presentation.container->setFrame(area);
    if (presentation.dimming) presentation.dimming->setFrame(area);
    presentation.carrier->setTransform({});
    presentation.carrier->setFrame(frame);
    roundSheet(*presentation.carrier, presentation.style, area);
    presentation.carrier->setTransform(turned);
    controller.view_->setFrame({0, 0, frame.size.width, frame.size.height});

    auto traits = window.traitCollection();
    bool const isNarrow = traits.userInterfaceIdiom == UIUserInterfaceIdiom::pad &&
                          isSheet(presentation.style) && frame.size.width < narrowestRegularWidth;
    traits.horizontalSizeClass = UIUserInterfaceSizeClass::compact;
    presentation.container->traitsOverride_ =
        isNarrow ? std::make_shared<UITraitCollection const>(traits) : nullptr;
}

void PresentationEngine::sizeToWindow(UIViewController& root, UIWindow& window) {
    for (auto const& controller : chainAbove(root)) {
        if (controller->presentation_) fitToWindow(*controller, window);
    }
}

UIViewController const* PresentationEngine::statusBarController(UIViewController const& root) {
    auto const* decider = &root;
    for (auto const& controller : chainAbove(root)) {
        bool const decides = controller->presentation_ && !controller->isBeingDismissed_ &&
                             controller->presentation_->style == UIModalPresentationStyle::fullScreen;
        if (decides) decider = controller.get();
    }
    return decider;
}

/// Tints are dimmed behind whatever leaves its presenter in sight.
void PresentationEngine::updateDimming(UIViewController& controller) {
    auto* root = &controller;
    while (root->presenting_) root = root->presenting_;
    auto chain = chainAbove(*root);
    chain.insert(chain.begin(), strong(*root));
    bool isBehind = false;
    for (auto const& layer : std::views::reverse(chain)) {
        if (auto view = host(*layer)) view->setDimmedBehindPresentation(isBehind);
        auto const& presentation = layer->presentation_;
        bool const dims =
            presentation && !layer->isBeingDismissed_ &&
            (isSheet(presentation->style) || presentation->style == UIModalPresentationStyle::custom);
        isBehind = isBehind || dims;
    }
}

} // namespace trelundo

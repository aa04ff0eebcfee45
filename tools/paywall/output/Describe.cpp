#include "tools/paywall/output/Describe.h"

#include "tools/paywall/output/Names.h"
#include "tools/paywall/output/VisibleText.h"
#include "trelundo/platform/coreanimation/CAGradientLayer.h"
#include "trelundo/platform/uikit/collection/UICollectionView.h"
#include "trelundo/platform/uikit/controls/UIActivityIndicatorView.h"
#include "trelundo/platform/uikit/controls/UIButton.h"
#include "trelundo/platform/uikit/layout/UIStackView.h"
#include "trelundo/platform/uikit/text/UILabel.h"
#include "trelundo/platform/uikit/views/UIImageView.h"
#include "trelundo/platform/uikit/views/UIVisualEffectView.h"

#include <array>

namespace trelundo::paywall {

namespace {

/// Without floating-point dust.
double tidy(double value) { return rounded(value, 1e4); }

Json toJson(CGRect rect) {
    return {tidy(rect.origin.x), tidy(rect.origin.y), tidy(rect.size.width), tidy(rect.size.height)};
}
Json toJson(CGPoint point) { return {tidy(point.x), tidy(point.y)}; }
Json toJson(CGSize size) { return {tidy(size.width), tidy(size.height)}; }
Json toJson(UIEdgeInsets insets) {
    return {tidy(insets.top), tidy(insets.left), tidy(insets.bottom), tidy(insets.right)};
}

Json toJson(TextRun const& run) {
    Json json{{"text", run.text},
              {"fontSize", tidy(run.font.size)},
              {"fontWeight", run.font.weight},
              {"italic", run.font.isItalic},
              {"color", run.color.hexText()},
              {"lineSpacing", tidy(run.paragraph.lineSpacing)},
              {"alignment", nameOf(run.paragraph.alignment)}};
    if (run.kern) json["kern"] = tidy(*run.kern);
    if (run.underline != NSUnderlineStyle::none) {
        json["underline"] = static_cast<int>(run.underline);
        json["underlineColor"] = run.underlineColor.value_or(run.color).hexText();
    }
    if (run.strikethrough != NSUnderlineStyle::none) {
        json["strikethrough"] = static_cast<int>(run.strikethrough);
        json["strikethroughColor"] = run.strikethroughColor.value_or(run.color).hexText();
    }
    return json;
}

Json traitNames(UIAccessibilityTraits traits) {
    using enum UIAccessibilityTraits;
    constexpr std::array<std::pair<UIAccessibilityTraits, char const*>, 6> names{
        {{button, "button"},
         {link, "link"},
         {image, "image"},
         {selected, "selected"},
         {staticText, "staticText"},
         {notEnabled, "notEnabled"}}};
    Json json = Json::array();
    for (auto const& [trait, name] : names)
        if (static_cast<unsigned>(traits) & static_cast<unsigned>(trait)) json.push_back(name);
    return json;
}

Json toJson(UIImage const& image) {
    return {{"name", image.name()},
            {"template", image.renderingMode() == UIImageRenderingMode::alwaysTemplate}};
}

void addLayer(Json& json, CALayer const& layer) {
    if (layer.cornerRadius() != 0) json["cornerRadius"] = tidy(layer.cornerRadius());
    if (layer.borderWidth() != 0) {
        json["borderWidth"] = tidy(layer.borderWidth());
        json["borderColor"] = layer.borderColor().hexText();
    }
    if (layer.shadowOpacity() != 0)
        json["shadow"] = {{"color", layer.shadowColor().hexText()},
                          {"offset", toJson(layer.shadowOffset())},
                          {"radius", tidy(layer.shadowRadius())},
                          {"opacity", tidy(layer.shadowOpacity())}};
    if (layer.backdropEffect()) json["effect"] = {{"blurRadius", tidy(layer.backdropEffect()->blurRadius)}};
}

/// The gradient that a view's layer is, or carries as a layer that belongs to no view.
CAGradientLayer const* gradientOf(CALayer const& layer) {
    if (auto const* own = dynamic_cast<CAGradientLayer const*>(&layer)) return own;
    for (auto const& sublayer : layer.sublayers())
        if (auto const* carried = dynamic_cast<CAGradientLayer const*>(sublayer.get());
            carried && !carried->delegate())
            return carried;
    return nullptr;
}

void addGradient(Json& json, CALayer const& layer) {
    auto const* gradient = gradientOf(layer);
    if (!gradient) return;
    Json colors = nullptr;
    if (gradient->colors()) {
        colors = Json::array();
        for (auto const& color : *gradient->colors()) colors.push_back(color.hexText());
    }
    json["gradient"] = {{"colors", colors},
                        {"locations", orNull(gradient->locations())},
                        {"startPoint", toJson(gradient->startPoint())},
                        {"endPoint", toJson(gradient->endPoint())}};
}

void addRuns(Json& json, UILabel const& label) {
    json["runs"] = Json::array();
    for (auto const& run : label.resolvedRuns()) json["runs"].push_back(toJson(run));
}

void addLabel(Json& json, UILabel const& label) {
    json["text"] = visibleText(label);
    addRuns(json, label);
    json["numberOfLines"] = label.numberOfLines();
    if (label.adjustsFontSizeToFitWidth()) json["minimumScaleFactor"] = tidy(label.minimumScaleFactor());
    auto const fit = label.fit();
    if (fit.scale < 1) json["shrunkTo"] = tidy(fit.scale);
    json["truncated"] = fit.truncated;
}

void addButton(Json& json, UIButton& button) {
    json["text"] = visibleText(button);
    addRuns(json, *button.titleLabel());
    if (auto const image = button.currentImage()) json["image"] = toJson(*image);
    json["contentInsets"] = toJson(button.contentEdgeInsets());
    json["titleInsets"] = toJson(button.titleEdgeInsets());
    json["tintColor"] = button.tintColor().cgColor(button.traitCollection()).hexText();
}

/// Beside what every blurred layer tells.
void addEffect(Json& json, UIVisualEffectView const& view) {
    if (view.effect()) json["effect"]["style"] = nameOf(view.effect()->style());
}

void addImageView(Json& json, UIImageView const& view) {
    json["image"] = view.image() ? toJson(*view.image()) : Json(nullptr);
    json["contentMode"] = nameOf(view.contentMode());
    json["tintColor"] = view.tintColor().cgColor(view.traitCollection()).hexText();
}

void addStackView(Json& json, UIStackView const& stack) {
    json["axis"] = stack.axis() == NSLayoutConstraintAxis::vertical ? "vertical" : "horizontal";
    json["spacing"] = tidy(stack.spacing());
    json["distribution"] = nameOf(stack.distribution());
    json["stackAlignment"] = nameOf(stack.alignment());
    json["isLayoutMarginsRelativeArrangement"] = stack.isLayoutMarginsRelativeArrangement();
    json["layoutMargins"] = toJson(stack.layoutMargins());
}

void addScrollView(Json& json, UIScrollView& scrollView) {
    json["contentOffset"] = toJson(scrollView.contentOffset());
    json["contentSize"] = toJson(scrollView.contentSize());
    if (auto* collection = dynamic_cast<UICollectionView*>(&scrollView)) {
        json["itemCount"] = collection->numberOfItems(0);
        auto const& layout = collection->collectionViewLayout();
        json["itemSize"] = toJson(layout.itemSize());
        json["minimumLineSpacing"] = tidy(layout.minimumLineSpacing());
        json["minimumInteritemSpacing"] = tidy(layout.minimumInteritemSpacing());
        json["sectionInset"] = toJson(layout.sectionInset());
    }
}

void addControl(Json& json, UIControl const& control) {
    json["selected"] = control.isSelected();
    json["enabled"] = control.isEnabled();
}

void addAccessibility(Json& json, UIView const& view) {
    if (auto const label = view.accessibilityLabel(); !label.empty()) json["accessibilityLabel"] = label;
    if (auto const traits = view.accessibilityTraits(); traits != UIAccessibilityTraits::none)
        json["accessibilityTraits"] = traitNames(traits);
}

Json describeView(UIView& view) {
    Json json{{"class", view.className()},
              {"name", view.accessibilityIdentifier()},
              {"frame", toJson(view.convertRectTo(view.bounds(), nullptr))},
              {"hidden", view.isHidden()},
              {"alpha", tidy(view.alpha())},
              {"clipsToBounds", view.clipsToBounds()}};
    if (view.backgroundColor())
        json["backgroundColor"] = view.backgroundColor()->cgColor(view.traitCollection()).hexText();
    addLayer(json, view.layer());
    addGradient(json, view.layer());
    if (auto* label = dynamic_cast<UILabel*>(&view)) addLabel(json, *label);
    if (auto* control = dynamic_cast<UIControl*>(&view)) addControl(json, *control);
    if (auto* button = dynamic_cast<UIButton*>(&view)) addButton(json, *button);
    if (auto* effectView = dynamic_cast<UIVisualEffectView*>(&view)) addEffect(json, *effectView);
    if (auto* imageView = dynamic_cast<UIImageView*>(&view)) addImageView(json, *imageView);
    if (auto* stack = dynamic_cast<UIStackView*>(&view)) addStackView(json, *stack);
    if (auto* scrollView = dynamic_cast<UIScrollView*>(&view)) addScrollView(json, *scrollView);
    if (auto* cell = dynamic_cast<UICollectionViewCell*>(&view)) json["item"] = cell->item();
    if (auto* indicator = dynamic_cast<UIActivityIndicatorView*>(&view))
        json["animating"] = indicator->isAnimating();
    addAccessibility(json, view);
    json["subviews"] = Json::array();
    for (auto const& subview : view.subviews()) json["subviews"].push_back(describeView(*subview));
    return json;
}

} // namespace

Json describe(UIViewController& controller) {
    auto json = describeView(*controller.view());
    auto const& traits = controller.traitCollection();
    json["statusBarStyle"] = nameOf(controller.preferredStatusBarStyle());
    json["prefersHomeIndicatorAutoHidden"] = controller.prefersHomeIndicatorAutoHidden();
    json["horizontalSizeClass"] = nameOf(traits.horizontalSizeClass);
    json["verticalSizeClass"] = nameOf(traits.verticalSizeClass);
    json["layoutDirection"] = controller.view()->isRightToLeft() ? "rightToLeft" : "leftToRight";
    if (auto const presented = controller.presentedViewController()) json["presented"] = describe(*presented);
    return json;
}

} // namespace trelundo::paywall

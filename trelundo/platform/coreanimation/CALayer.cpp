#include "trelundo/platform/coreanimation/CALayer.h"

#include "trelundo/platform/coreanimation/internal/AnimationRegistry.h"
#include "trelundo/platform/foundation/Clock.h"
#include "trelundo/platform/foundation/Log.h"
#include "trelundo/platform/foundation/internal/MainThread.h"

#include <algorithm>

namespace trelundo {

namespace {

std::uint64_t changes = 0;

void noteChange() {
    requireMainThread("a layer or view");
    ++changes;
}

std::uint64_t layersMade = 0;

/// How far a text may reach beyond its layer: a label lower than its line still shows all of it.
constexpr double largestOverhang = 32; // points

} // namespace

CGRect CALayerDelegate::drawingRect(CALayer const& layer) const {
    auto const bounds = layer.bounds();
    return bounds.insetBy(-std::min(largestOverhang, bounds.height() / 4 + 2),
                          -std::min(largestOverhang, bounds.height() / 2 + 2));
}

CALayer::CALayer()
    : identity_(++layersMade) {}

CALayer::~CALayer() {
    leaveDisplay();
    for (auto const& layer : sublayers_) layer->superlayer_ = nullptr;
}

template <class Value> void CALayer::assign(Value CALayerValues::*property, Value value) {
    auto const old = values_.*property;
    if (old == value) return;
    values_.*property = value;
    noteChange();
    if (CATransaction::isAnimating() && isDisplayed()) {
        AnimationRegistry::shared().start(*this, contribution(property, old, value));
    }
}

template <class Value> void CALayer::assignAppearance(Value& property, Value value) {
    if (property == value) return;
    property = value;
    contentChanged();
}

void CALayer::setBounds(CGRect bounds) {
    if (bounds.size != values_.bounds.size) contentChanged();
    assign(&CALayerValues::bounds, bounds);
}

void CALayer::setPosition(CGPoint position) { assign(&CALayerValues::position, position); }

void CALayer::setAnchorPoint(CGPoint anchorPoint) {
    anchorPoint_ = anchorPoint;
    noteChange();
}

void CALayer::setTransform(CGAffineTransform transform) { assign(&CALayerValues::transform, transform); }

CGRect CALayer::frame() const {
    auto const size = values_.bounds.size;
    CGRect const upright{-anchorPoint_.x * size.width, -anchorPoint_.y * size.height, size.width,
                         size.height};
    auto const& turned = values_.transform.isIdentity() ? upright : values_.transform.apply(upright);
    return turned.offsetBy(values_.position.x, values_.position.y);
}

void CALayer::setFrame(CGRect frame) {
    auto bounds = values_.bounds;
    bounds.size = {frame.width(), frame.height()};
    if (!values_.transform.isIdentity()) {
        auto linear = values_.transform;
        linear.tx = linear.ty = 0;
        if (linear.a * linear.d != linear.b * linear.c) {
            auto const straight = linear.inverted().apply(CGRect{{}, bounds.size});
            bounds.size = {straight.width(), straight.height()};
        }
    }
    setBounds(bounds);
    auto const now = this->frame();
    setPosition(
        {values_.position.x + frame.minX() - now.minX(), values_.position.y + frame.minY() - now.minY()});
}

void CALayer::setZPosition(double z) {
    zPosition_ = z;
    noteChange();
}

void CALayer::setOpacity(double opacity) { assign(&CALayerValues::opacity, opacity); }

void CALayer::setHidden(bool hidden) {
    isHidden_ = hidden;
    noteChange();
}

void CALayer::setMasksToBounds(bool masks) { assignAppearance(masksToBounds_, masks); }

void CALayer::setBackgroundColor(std::optional<CGColor> color) {
    if (color != values_.backgroundColor) contentChanged();
    assign(&CALayerValues::backgroundColor, color);
}

void CALayer::setCornerRadius(double radius) {
    if (radius != values_.cornerRadius) contentChanged();
    assign(&CALayerValues::cornerRadius, radius);
}

void CALayer::setMaskedCorners(CACornerMask corners) { assignAppearance(maskedCorners_, corners); }

void CALayer::setBorderWidth(double width) {
    if (width != values_.borderWidth) contentChanged();
    assign(&CALayerValues::borderWidth, width);
}

void CALayer::setBorderColor(CGColor color) {
    if (color != values_.borderColor) contentChanged();
    assign(&CALayerValues::borderColor, color);
}

void CALayer::setShadowColor(CGColor color) { assignAppearance(shadowColor_, color); }

void CALayer::setShadowOpacity(double opacity) { assignAppearance(shadowOpacity_, opacity); }

void CALayer::setShadowOffset(CGSize offset) { assignAppearance(shadowOffset_, offset); }

void CALayer::setShadowRadius(double radius) { assignAppearance(shadowRadius_, radius); }

void CALayer::setContentsScale(double scale) { assignAppearance(contentsScale_, scale); }

void CALayer::setShouldRasterize(bool rasterize) { assignAppearance(shouldRasterize_, rasterize); }

void CALayer::setBackdropEffect(std::optional<BackdropEffect> effect) {
    assignAppearance(backdropEffect_, effect);
}

void CALayer::setNeedsDisplay() { contentChanged(); }

void CALayer::contentChanged() {
    ++contentVersion_;
    noteChange();
}

std::uint64_t CALayer::changeCount() { return changes; }

void CALayer::drawContents(Canvas& canvas) {
    if (auto const owner = delegate_.lock()) owner->drawLayer(*this, canvas);
}

bool CALayer::hasContents() const {
    auto const owner = delegate_.lock();
    return owner && owner->drawsContents();
}

CGRect CALayer::contentsRect() const {
    auto const owner = masksToBounds_ ? nullptr : delegate_.lock();
    return owner ? owner->drawingRect(*this) : bounds();
}

bool CALayer::hasShadow() const {
    // A mask cuts the layer's own shadow, which lies outside the bounds.
    return shadowOpacity_ > 0 && shadowColor_.alpha > 0 && !masksToBounds_;
}

// The tree.

void CALayer::setDisplayRoot(bool root) {
    isDisplayRoot_ = root;
    noteChange();
    if (!isDisplayed()) leaveDisplay();
}

bool CALayer::isDisplayed() const {
    for (auto const* layer = this; layer; layer = layer->superlayer_) {
        if (layer->isDisplayRoot_) return true;
    }
    return false;
}

void CALayer::leaveDisplay() {
    removeAllAnimations();
    for (auto const& layer : sublayers_) layer->leaveDisplay();
}

bool CALayer::hasAncestor(CALayer const& layer) const {
    for (auto const* each = this; each; each = each->superlayer_) {
        if (each == &layer) return true;
    }
    return false;
}

void CALayer::detach() {
    if (!superlayer_) return;
    auto& siblings = superlayer_->sublayers_;
    superlayer_ = nullptr;
    std::erase_if(siblings, [this](auto const& layer) { return layer.get() == this; });
    noteChange();
}

void CALayer::addSublayer(Ref<CALayer> layer) { insertSublayer(std::move(layer), sublayers_.size()); }

void CALayer::insertSublayer(Ref<CALayer> layer, std::size_t index) {
    if (!layer) return;
    if (hasAncestor(*layer)) return logWarning("CALayer: a layer cannot be put into itself");
    layer->detach();
    index = std::min(index, sublayers_.size());
    layer->superlayer_ = this;
    auto& added = *layer;
    sublayers_.insert(sublayers_.begin() + static_cast<std::ptrdiff_t>(index), std::move(layer));
    noteChange();
    // Moving within a shown tree keeps what is running.
    if (!added.isDisplayed()) added.leaveDisplay();
}

void CALayer::removeFromSuperlayer() {
    if (!superlayer_) return;
    auto const self = strong(*this);
    detach();
    if (!isDisplayed()) leaveDisplay();
}

// Animations.

CALayerValues CALayer::presentationValues() const { return valuesAt(Clock::current().now()); }

CALayerValues CALayer::valuesAt(double time) const {
    auto shown = values_;
    for (auto const& animation : animations_) {
        if (!animation->hasEnded(time)) animation->add(shown, animation->progressAt(time));
    }
    return shown;
}

void CALayer::removeAllAnimations() {
    if (animations_.empty()) return;
    noteChange();
    AnimationRegistry::drop(*this);
}

bool CALayer::isAnimating() const { return !animations_.empty(); }

} // namespace trelundo

#include "trelundo/platform/coreanimation/internal/Flattener.h"

#include "trelundo/platform/coreanimation/internal/LayerShape.h"

#include <algorithm>
#include <cmath>

namespace trelundo {

namespace {

constexpr double largestPicture = 4;   // times the area that is shown
constexpr int longestPicture = 16'384; // pixels

bool isUpright(CGAffineTransform const& t) { return t.a == 1 && t.b == 0 && t.c == 0 && t.d == 1; }

bool isFinite(CALayerValues const& values) {
    auto const& t = values.transform;
    auto const sum = values.bounds.origin.x + values.bounds.origin.y + values.bounds.size.width +
                     values.bounds.size.height + values.position.x + values.position.y + t.a + t.b + t.c +
                     t.d + t.tx + t.ty + values.opacity + values.cornerRadius;
    return std::isfinite(sum);
}

PixelRect visiblePart(PixelRect const& rect, PixelRect const& clip, int x, int y) {
    return rect.intersection(clip.translated(-x, -y));
}

} // namespace

DisplayList Flattener::flatten(CALayer& root, PixelRect const& target) {
    target_ = target;
    DisplayList list;
    auto values = root.valuesAt(time_);
    if (root.isHidden() || !isFinite(values) || values.opacity <= 0) return list;
    Node const node{root, values, values.bounds.width() * scale_, values.bounds.height() * scale_,
                    cornerRadii(values.cornerRadius, root.maskedCorners())};
    addFaded(node, {0, 0, target, true}, list);
    return list;
}

PixelRect Flattener::shape(Node const& node) const {
    auto const length = [](double value) { return value > 0 ? std::max(1, nearestPixel(value)) : 0; };
    return {0, 0, length(node.width), length(node.height)};
}

/// The layer's rectangle with each edge on the nearest pixel, so that neighbours meet.
PixelRect Flattener::edges(Node const& node, Place const& place) const {
    auto const left = nearestPixel(place.x), top = nearestPixel(place.y);
    auto const least = shape(node);
    return {left, top, std::max(std::min(1, least.width), nearestPixel(place.x + node.width) - left),
            std::max(std::min(1, least.height), nearestPixel(place.y + node.height) - top)};
}

bool Flattener::isTooLarge(PixelRect const& rect) const {
    return rect.width > longestPicture || rect.height > longestPicture ||
           rect.area() > std::max(1.0, target_.area()) * largestPicture;
}

void Flattener::addLayer(CALayer& layer, Place const& origin, DisplayList& list) {
    if (layer.isHidden()) return;
    auto const values = layer.valuesAt(time_);
    if (values.opacity <= 0 || !isFinite(values)) return;
    Node const node{layer, values, values.bounds.width() * scale_, values.bounds.height() * scale_,
                    cornerRadii(values.cornerRadius, layer.maskedCorners())};
    auto place = origin;
    place.x += (values.position.x + values.transform.tx) * scale_;
    place.y += (values.position.y + values.transform.ty) * scale_;
    if (!isUpright(values.transform)) return addTurned(node, place, list);
    place.x -= layer.anchorPoint().x * node.width;
    place.y -= layer.anchorPoint().y * node.height;
    addFaded(node, place, list);
}

void Flattener::addTurned(Node const& node, Place const& anchor, DisplayList& list) {
    auto within = inside(anchor);
    within.live = false;
    DisplayList steps;
    addShadowed(node, within, steps);
    TransformedPicture::Look look;
    look.source = extent(steps);
    look.linear = node.values.transform;
    look.linear.tx = look.linear.ty = 0;
    look.anchorX = node.layer.anchorPoint().x * node.width;
    look.anchorY = node.layer.anchorPoint().y * node.height;
    if (look.source.isEmpty() || isTooLarge(look.source)) return;
    CGRect const source(look.source.x - look.anchorX, look.source.y - look.anchorY, look.source.width,
                        look.source.height);
    look.rect = pixelsAround(look.linear.apply(source), 1).inflated(1);
    if (isTooLarge(look.rect))
        look.rect = visiblePart(look.rect, anchor.clip, nearestPixel(anchor.x), nearestPixel(anchor.y));
    if (look.rect.isEmpty()) return;
    auto const key = displayKey(node.layer, LayerPart::transformed);
    auto& picture = store_.get<TransformedPicture>(key);
    picture.update(std::move(steps), look, scale_);
    appendPicture(picture, key, anchor, std::min(1.0, node.values.opacity), list);
}

/// Opacity counts for the layer with everything in it as a whole.
void Flattener::addFaded(Node const& node, Place const& place, DisplayList& list) {
    auto const opacity = std::min(1.0, node.values.opacity);
    if (opacity >= 1 && !node.layer.shouldRasterize()) return addShadowed(node, place, list);
    auto within = inside(place);
    within.live = false;
    DisplayList steps;
    addShadowed(node, within, steps);
    if (steps.size() == 1) return append(steps, place, opacity, list);
    appendGroup(node, LayerPart::faded, std::move(steps), {}, opacity, place, list);
}

void Flattener::addShadowed(Node const& node, Place const& place, DisplayList& list) {
    auto const& layer = node.layer;
    if (!layer.hasShadow()) return addCut(node, place, list);
    auto within = inside(place);
    within.live = false;
    DisplayList steps;
    addCut(node, within, steps);
    if (steps.empty() || isTooLarge(extent(steps))) return append(steps, place, 1, list);
    auto color = layer.shadowColor();
    color.alpha = std::min(1.0, color.alpha) * std::min(1.0, layer.shadowOpacity());
    auto const key = displayKey(layer, LayerPart::shadow);
    auto& picture = store_.get<ShadowPicture>(key);
    picture.update(steps, {color, layer.shadowOffset(), std::max(0.0, layer.shadowRadius()) / 2}, scale_);
    appendPicture(picture, key, place, 1, list);
    append(steps, place, 1, list);
}

void Flattener::addCut(Node const& node, Place const& place, DisplayList& list) {
    auto const cuts = node.layer.masksToBounds() && !node.radii.isZero() &&
                      (!node.layer.sublayers().empty() || node.layer.hasContents());
    if (!cuts || isTooLarge(shape(node))) return addBody(node, place, list);
    auto within = inside(place);
    within.clip = shape(node);
    auto cut = node;
    cut.inCut = true;
    DisplayList steps;
    addBody(cut, within, steps);
    appendGroup(node, LayerPart::cut, std::move(steps), node.radii, 1, place, list);
}

void Flattener::addBody(Node const& node, Place const& place, DisplayList& list) {
    auto within = place;
    if (node.layer.masksToBounds()) within.clip = place.clip.intersection(edges(node, place));
    if (within.clip.isEmpty()) return;
    addBackdrop(node, within, list);
    addOwn(node, within, list);
    addSublayers(node, within, list);
    addBorder(node, within, list);
}

void Flattener::addBackdrop(Node const& node, Place const& place, DisplayList& list) {
    auto const effect = node.layer.backdropEffect();
    if (!effect) return;
    auto const rect = edges(node, place);
    auto const visible = rect.intersection(place.clip);
    if (visible.isEmpty()) return;
    // Nothing behind is at hand in a faded or turned group: only the tint remains.
    if (!place.live) return addFill(node, LayerPart::backdrop, rect, place, effect->overlay, list);
    auto const key = displayKey(node.layer, LayerPart::backdrop);
    auto& picture = store_.get<BackdropPicture>(key);
    picture.update({*effect, node.radii, rect, visible, signature(list, list.size(), visible)}, scale_);
    list.push_back({.key = key,
                    .rect = visible,
                    .clip = visible,
                    .color = {},
                    .picture = &picture,
                    .serial = picture.serial()});
}

void Flattener::addOwn(Node const& node, Place const& place, DisplayList& list) {
    auto background = node.values.backgroundColor;
    if (background && !isVisible(*background)) background.reset();
    if (background && (node.inCut || node.radii.isZero())) {
        addFill(node, LayerPart::background, edges(node, place), place, *background, list);
        background.reset();
    }
    if (background || node.layer.hasContents()) addContents(node, place, background, list);
}

void Flattener::addContents(Node const& node, Place const& place, std::optional<CGColor> background,
                            DisplayList& list) {
    auto const rect = shape(node);
    if (rect.isEmpty()) return;
    ContentPicture::Look look;
    look.layer = &node.layer;
    look.contents = node.layer.hasContents();
    look.version = node.layer.contentVersion();
    look.bounds = node.layer.bounds();
    look.shownSize = node.values.bounds.size;
    look.shape = look.rect = rect;
    look.background = background;
    look.radii = node.radii;
    look.scale = scale_;
    if (look.contents) {
        auto const drawn = node.layer.contentsRect();
        auto const& origin = look.bounds.origin;
        look.rect = rect.unionWith(pixelsAround(drawn.offsetBy(-origin.x, -origin.y), scale_));
    } else {
        // Scrolling and contents are no concern of a plain background.
        look.bounds = {};
        look.version = 0;
    }
    auto const owner = node.layer.delegate();
    look.direct =
        isTooLarge(look.rect) || (look.contents && !background && owner && owner->retainsContents());
    auto const key = displayKey(node.layer, LayerPart::contents);
    if (!look.rect.translated(nearestPixel(place.x), nearestPixel(place.y)).intersects(place.clip)) return;
    auto& picture = store_.get<ContentPicture>(key);
    picture.update(look);
    appendPicture(picture, key, place, 1, list);
}

void Flattener::addSublayers(Node const& node, Place const& place, DisplayList& list) {
    auto const& sublayers = node.layer.sublayers();
    if (sublayers.empty()) return;
    auto origin = place;
    origin.x -= node.values.bounds.origin.x * scale_;
    origin.y -= node.values.bounds.origin.y * scale_;
    auto const isLower = [](auto const& a, auto const& b) { return a->zPosition() < b->zPosition(); };
    if (std::is_sorted(sublayers.begin(), sublayers.end(), isLower)) {
        for (auto const& sublayer : sublayers) addLayer(*sublayer, origin, list);
        return;
    }
    auto ordered = sublayers;
    std::stable_sort(ordered.begin(), ordered.end(), isLower);
    for (auto const& sublayer : ordered) addLayer(*sublayer, origin, list);
}

void Flattener::addBorder(Node const& node, Place const& place, DisplayList& list) {
    if (node.values.borderWidth <= 0 || !isVisible(node.values.borderColor) || shape(node).isEmpty()) return;
    if (node.radii.isZero()) return addStraightBorder(node, place, list);
    ContentPicture::Look look;
    look.layer = &node.layer;
    look.shownSize = node.values.bounds.size;
    look.shape = look.rect = shape(node);
    look.borderWidth = std::max(node.values.borderWidth, 1 / scale_);
    look.borderColor = node.values.borderColor;
    look.radii = node.radii;
    look.scale = scale_;
    look.direct = isTooLarge(look.rect);
    auto const key = displayKey(node.layer, LayerPart::border);
    auto& picture = store_.get<ContentPicture>(key);
    picture.update(look);
    appendPicture(picture, key, place, 1, list);
}

void Flattener::addStraightBorder(Node const& node, Place const& place, DisplayList& list) {
    auto const rect = edges(node, place);
    auto const width = std::max(1, nearestPixel(node.values.borderWidth * scale_));
    auto const high = std::min(width, (rect.height + 1) / 2), low = std::min(width, rect.height - high);
    auto const left = std::min(width, (rect.width + 1) / 2), right = std::min(width, rect.width - left);
    auto const between = rect.height - high - low;
    auto const add = [&](LayerPart part, PixelRect const& side) {
        addFill(node, part, side, place, node.values.borderColor, list);
    };
    add(LayerPart::topBorder, {rect.x, rect.y, rect.width, high});
    add(LayerPart::leftBorder, {rect.x, rect.y + high, left, between});
    add(LayerPart::rightBorder, {rect.right() - right, rect.y + high, right, between});
    add(LayerPart::bottomBorder, {rect.x, rect.bottom() - low, rect.width, low});
}

void Flattener::addFill(Node const& node, LayerPart part, PixelRect const& rect, Place const& place,
                        CGColor const& color, DisplayList& list) {
    if (!rect.intersects(place.clip)) return;
    list.push_back({.key = displayKey(node.layer, part), .rect = rect, .clip = place.clip, .color = color});
}

void Flattener::append(DisplayList const& steps, Place const& place, double fading, DisplayList& list) {
    for (auto const& step : steps) {
        auto moved = step.moved(nearestPixel(place.x), nearestPixel(place.y), place.clip, fading);
        if (!moved.visible().isEmpty()) list.push_back(moved);
    }
}

void Flattener::appendGroup(Node const& node, LayerPart part, DisplayList steps, CornerRadii const& radii,
                            double opacity, Place const& place, DisplayList& list) {
    if (steps.empty()) return;
    auto const x = nearestPixel(place.x), y = nearestPixel(place.y);
    auto rect = radii.isZero() ? extent(steps) : shape(node);
    if (isTooLarge(rect)) rect = visiblePart(rect, place.clip, x, y);
    auto const visible = rect.translated(x, y).intersection(place.clip);
    if (visible.isEmpty()) return;
    auto const isLive = [](auto const& step) { return step.picture && step.picture->isLive(); };
    if (std::any_of(steps.begin(), steps.end(), isLive)) {
        auto const key = displayKey(node.layer, LayerPart::isolated);
        auto& picture = store_.get<IsolatedPicture>(key);
        picture.update(std::move(steps), rect, radii, signature(list, list.size(), visible), scale_);
        return appendPicture(picture, key, place, opacity, list);
    }
    auto const key = displayKey(node.layer, part);
    auto& picture = store_.get<GroupPicture>(key);
    picture.update(std::move(steps), rect, radii, scale_, store_.frame());
    appendPicture(picture, key, place, opacity, list);
}

void Flattener::appendPicture(LayerPicture& picture, std::uint64_t key, Place const& place, double opacity,
                              DisplayList& list) {
    auto const rect = picture.rect().translated(nearestPixel(place.x), nearestPixel(place.y));
    if (!rect.intersects(place.clip)) return;
    list.push_back({.key = key,
                    .rect = rect,
                    .clip = place.clip,
                    .opacity = opacity,
                    .color = {},
                    .picture = &picture,
                    .serial = picture.serial()});
}

} // namespace trelundo

#include "trelundo/platform/coreanimation/internal/DisplayListBuilder.h"

#include "trelundo/platform/coreanimation/internal/BackdropBitmap.h"
#include "trelundo/platform/coreanimation/internal/ContentBitmap.h"
#include "trelundo/platform/coreanimation/internal/GroupBitmap.h"
#include "trelundo/platform/coreanimation/internal/IsolatedGroupBitmap.h"
#include "trelundo/platform/coreanimation/internal/LayerCorners.h"
#include "trelundo/platform/coreanimation/internal/ShadowBitmap.h"
#include "trelundo/platform/coreanimation/internal/TransformedBitmap.h"

#include <algorithm>
#include <cmath>

namespace trelundo {

namespace {

constexpr double largestBitmap = 4;   // times the area that is shown
constexpr int longestBitmap = 16'384; // pixels

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

DisplayList DisplayListBuilder::build(CALayer& root, PixelRect const& target) {
    target_ = target;
    DisplayList list;
    auto values = root.valuesAt(time_);
    if (root.isHidden() || !isFinite(values) || values.opacity <= 0) return list;
    Node const node{root, values, values.bounds.width() * scale_, values.bounds.height() * scale_,
                    cornerRadii(values.cornerRadius, root.maskedCorners())};
    addWithOpacity(node, {0, 0, target, true}, list);
    return list;
}

PixelRect DisplayListBuilder::pixelBounds(Node const& node) const {
    auto const length = [](double value) { return value > 0 ? std::max(1, nearestPixel(value)) : 0; };
    return {0, 0, length(node.width), length(node.height)};
}

/// The layer's rectangle with each edge on the nearest pixel, so that neighbours meet.
PixelRect DisplayListBuilder::pixelFrame(Node const& node, PaintContext const& context) const {
    auto const left = nearestPixel(context.x), top = nearestPixel(context.y);
    auto const least = pixelBounds(node);
    return {left, top, std::max(std::min(1, least.width), nearestPixel(context.x + node.width) - left),
            std::max(std::min(1, least.height), nearestPixel(context.y + node.height) - top)};
}

bool DisplayListBuilder::isTooLarge(PixelRect const& rect) const {
    return rect.width > longestBitmap || rect.height > longestBitmap ||
           rect.area() > std::max(1.0, target_.area()) * largestBitmap;
}

void DisplayListBuilder::addLayer(CALayer& layer, PaintContext const& origin, DisplayList& list) {
    if (layer.isHidden()) return;
    auto const values = layer.valuesAt(time_);
    if (values.opacity <= 0 || !isFinite(values)) return;
    Node const node{layer, values, values.bounds.width() * scale_, values.bounds.height() * scale_,
                    cornerRadii(values.cornerRadius, layer.maskedCorners())};
    auto context = origin;
    context.x += (values.position.x + values.transform.tx) * scale_;
    context.y += (values.position.y + values.transform.ty) * scale_;
    if (!isUpright(values.transform)) return addTransformed(node, context, list);
    context.x -= layer.anchorPoint().x * node.width;
    context.y -= layer.anchorPoint().y * node.height;
    addWithOpacity(node, context, list);
}

void DisplayListBuilder::addTransformed(Node const& node, PaintContext const& anchor, DisplayList& list) {
    auto const within = groupContext(false);
    DisplayList items;
    addWithShadow(node, within, items);
    TransformedBitmap::Parameters parameters;
    parameters.source = extent(items);
    parameters.linear = node.values.transform;
    parameters.linear.tx = parameters.linear.ty = 0;
    parameters.anchorX = node.layer.anchorPoint().x * node.width;
    parameters.anchorY = node.layer.anchorPoint().y * node.height;
    if (parameters.source.isEmpty() || isTooLarge(parameters.source)) return;
    CGRect const source(parameters.source.x - parameters.anchorX, parameters.source.y - parameters.anchorY,
                        parameters.source.width, parameters.source.height);
    parameters.rect = pixelsAround(parameters.linear.apply(source), 1).inflated(1);
    if (isTooLarge(parameters.rect))
        parameters.rect =
            visiblePart(parameters.rect, anchor.clip, nearestPixel(anchor.x), nearestPixel(anchor.y));
    if (parameters.rect.isEmpty()) return;
    auto const key = displayKey(node.layer, LayerPart::transformedGroup);
    auto& bitmap = cache_.get<TransformedBitmap>(key);
    bitmap.update(std::move(items), parameters, scale_);
    appendBitmap(bitmap, key, anchor, std::min(1.0, node.values.opacity), list);
}

/// Opacity counts for the layer with everything in it as a whole.
void DisplayListBuilder::addWithOpacity(Node const& node, PaintContext const& context, DisplayList& list) {
    auto const opacity = std::min(1.0, node.values.opacity);
    if (opacity >= 1 && !node.layer.shouldRasterize()) return addWithShadow(node, context, list);
    auto const within = groupContext(false);
    DisplayList items;
    addWithShadow(node, within, items);
    if (items.size() == 1) return append(items, context, opacity, list);
    appendGroup(node, LayerPart::opacityGroup, std::move(items), {}, opacity, context, list);
}

void DisplayListBuilder::addWithShadow(Node const& node, PaintContext const& context, DisplayList& list) {
    auto const& layer = node.layer;
    if (!layer.hasShadow()) return addClipped(node, context, list);
    auto const within = groupContext(false);
    DisplayList items;
    addClipped(node, within, items);
    if (items.empty() || isTooLarge(extent(items))) return append(items, context, 1, list);
    auto color = layer.shadowColor();
    color.alpha = std::min(1.0, color.alpha) * std::min(1.0, layer.shadowOpacity());
    auto const key = displayKey(layer, LayerPart::shadow);
    auto& bitmap = cache_.get<ShadowBitmap>(key);
    bitmap.update(items, {color, layer.shadowOffset(), std::max(0.0, layer.shadowRadius()) / 2}, scale_);
    appendBitmap(bitmap, key, context, 1, list);
    append(items, context, 1, list);
}

void DisplayListBuilder::addClipped(Node const& node, PaintContext const& context, DisplayList& list) {
    auto const clips = node.layer.masksToBounds() && !node.radii.isZero() &&
                       (!node.layer.sublayers().empty() || node.layer.hasContents());
    if (!clips || isTooLarge(pixelBounds(node))) return addBody(node, context, list);
    auto within = groupContext(context.hasBackdrop);
    within.clip = pixelBounds(node);
    auto clipped = node;
    clipped.isClippedByGroup = true;
    DisplayList items;
    addBody(clipped, within, items);
    appendGroup(node, LayerPart::clippedGroup, std::move(items), node.radii, 1, context, list);
}

void DisplayListBuilder::addBody(Node const& node, PaintContext const& context, DisplayList& list) {
    auto within = context;
    if (node.layer.masksToBounds()) within.clip = context.clip.intersection(pixelFrame(node, context));
    if (within.clip.isEmpty()) return;
    addBackdrop(node, within, list);
    addBackgroundAndContents(node, within, list);
    addSublayers(node, within, list);
    addBorder(node, within, list);
}

void DisplayListBuilder::addBackdrop(Node const& node, PaintContext const& context, DisplayList& list) {
    auto const effect = node.layer.backdropEffect();
    if (!effect) return;
    auto const rect = pixelFrame(node, context);
    auto const visible = rect.intersection(context.clip);
    if (visible.isEmpty()) return;
    // Nothing behind is at hand in a group that is drawn by itself: only the tint remains.
    if (!context.hasBackdrop) return addFill(node, LayerPart::backdrop, rect, context, effect->overlay, list);
    auto const key = displayKey(node.layer, LayerPart::backdrop);
    auto& bitmap = cache_.get<BackdropBitmap>(key);
    bitmap.update({*effect, node.radii, rect, visible, signature(list, list.size(), visible)}, scale_);
    list.push_back({.key = key,
                    .rect = visible,
                    .clip = visible,
                    .color = {},
                    .bitmap = &bitmap,
                    .serial = bitmap.serial()});
}

void DisplayListBuilder::addBackgroundAndContents(Node const& node, PaintContext const& context,
                                                  DisplayList& list) {
    auto background = node.values.backgroundColor;
    if (background && !(background->alpha > 0)) background.reset();
    if (background && (node.isClippedByGroup || node.radii.isZero())) {
        addFill(node, LayerPart::background, pixelFrame(node, context), context, *background, list);
        background.reset();
    }
    if (background || node.layer.hasContents()) addContents(node, context, background, list);
}

void DisplayListBuilder::addContents(Node const& node, PaintContext const& context,
                                     std::optional<CGColor> background, DisplayList& list) {
    auto const rect = pixelBounds(node);
    if (rect.isEmpty()) return;
    ContentBitmap::Parameters parameters;
    parameters.layer = &node.layer;
    parameters.hasContents = node.layer.hasContents();
    parameters.version = node.layer.contentVersion();
    parameters.bounds = node.layer.bounds();
    parameters.shownSize = node.values.bounds.size;
    parameters.shape = parameters.rect = rect;
    parameters.background = background;
    parameters.radii = node.radii;
    parameters.scale = scale_;
    if (parameters.hasContents) {
        auto const drawn = node.layer.contentsRect();
        auto const& origin = parameters.bounds.origin;
        parameters.rect = rect.unionWith(pixelsAround(drawn.offsetBy(-origin.x, -origin.y), scale_));
    } else {
        // Scrolling and contents are no concern of a plain background.
        parameters.bounds = {};
        parameters.version = 0;
    }
    auto const owner = node.layer.delegate();
    parameters.isDirect = isTooLarge(parameters.rect) ||
                          (parameters.hasContents && !background && owner && owner->retainsContents());
    auto const key = displayKey(node.layer, LayerPart::contents);
    if (!parameters.rect.translated(nearestPixel(context.x), nearestPixel(context.y))
             .intersects(context.clip))
        return;
    auto& bitmap = cache_.get<ContentBitmap>(key);
    bitmap.update(parameters);
    appendBitmap(bitmap, key, context, 1, list);
}

void DisplayListBuilder::addSublayers(Node const& node, PaintContext const& context, DisplayList& list) {
    auto const& sublayers = node.layer.sublayers();
    if (sublayers.empty()) return;
    auto origin = context;
    origin.x -= node.values.bounds.origin.x * scale_;
    origin.y -= node.values.bounds.origin.y * scale_;
    auto const isLower = [](auto const& a, auto const& b) { return a->zPosition() < b->zPosition(); };
    if (std::ranges::is_sorted(sublayers, isLower)) {
        for (auto const& sublayer : sublayers) addLayer(*sublayer, origin, list);
        return;
    }
    auto ordered = sublayers;
    std::ranges::stable_sort(ordered, isLower);
    for (auto const& sublayer : ordered) addLayer(*sublayer, origin, list);
}

void DisplayListBuilder::addBorder(Node const& node, PaintContext const& context, DisplayList& list) {
    if (node.values.borderWidth <= 0 || !(node.values.borderColor.alpha > 0) || pixelBounds(node).isEmpty())
        return;
    if (node.radii.isZero()) return addSquareBorder(node, context, list);
    ContentBitmap::Parameters parameters;
    parameters.layer = &node.layer;
    parameters.shownSize = node.values.bounds.size;
    parameters.shape = parameters.rect = pixelBounds(node);
    parameters.borderWidth = std::max(node.values.borderWidth, 1 / scale_);
    parameters.borderColor = node.values.borderColor;
    parameters.radii = node.radii;
    parameters.scale = scale_;
    parameters.isDirect = isTooLarge(parameters.rect);
    auto const key = displayKey(node.layer, LayerPart::border);
    auto& bitmap = cache_.get<ContentBitmap>(key);
    bitmap.update(parameters);
    appendBitmap(bitmap, key, context, 1, list);
}

void DisplayListBuilder::addSquareBorder(Node const& node, PaintContext const& context, DisplayList& list) {
    auto const rect = pixelFrame(node, context);
    auto const width = std::max(1, nearestPixel(node.values.borderWidth * scale_));
    auto const high = std::min(width, (rect.height + 1) / 2), low = std::min(width, rect.height - high);
    auto const left = std::min(width, (rect.width + 1) / 2), right = std::min(width, rect.width - left);
    auto const between = rect.height - high - low;
    auto const add = [&](LayerPart part, PixelRect const& side) {
        addFill(node, part, side, context, node.values.borderColor, list);
    };
    add(LayerPart::topBorder, {rect.x, rect.y, rect.width, high});
    add(LayerPart::leftBorder, {rect.x, rect.y + high, left, between});
    add(LayerPart::rightBorder, {rect.right() - right, rect.y + high, right, between});
    add(LayerPart::bottomBorder, {rect.x, rect.bottom() - low, rect.width, low});
}

void DisplayListBuilder::addFill(Node const& node, LayerPart part, PixelRect const& rect,
                                 PaintContext const& context, CGColor const& color, DisplayList& list) {
    if (!rect.intersects(context.clip)) return;
    list.push_back({.key = displayKey(node.layer, part), .rect = rect, .clip = context.clip, .color = color});
}

void DisplayListBuilder::append(DisplayList const& items, PaintContext const& context, double opacity,
                                DisplayList& list) {
    for (auto const& item : items) {
        auto moved = item.moved(nearestPixel(context.x), nearestPixel(context.y), context.clip, opacity);
        if (!moved.visible().isEmpty()) list.push_back(moved);
    }
}

void DisplayListBuilder::appendGroup(Node const& node, LayerPart part, DisplayList items,
                                     CornerRadii const& radii, double opacity, PaintContext const& context,
                                     DisplayList& list) {
    if (items.empty()) return;
    auto const x = nearestPixel(context.x), y = nearestPixel(context.y);
    auto rect = radii.isZero() ? extent(items) : pixelBounds(node);
    if (isTooLarge(rect)) rect = visiblePart(rect, context.clip, x, y);
    auto const visible = rect.translated(x, y).intersection(context.clip);
    if (visible.isEmpty()) return;
    auto const dependsOnBackdrop = [](auto const& item) {
        return item.bitmap && item.bitmap->dependsOnBackdrop();
    };
    if (std::ranges::any_of(items, dependsOnBackdrop)) {
        auto const key = displayKey(node.layer, LayerPart::isolatedGroup);
        auto& bitmap = cache_.get<IsolatedGroupBitmap>(key);
        bitmap.update(std::move(items), rect, radii, signature(list, list.size(), visible), scale_);
        return appendBitmap(bitmap, key, context, opacity, list);
    }
    auto const key = displayKey(node.layer, part);
    auto& bitmap = cache_.get<GroupBitmap>(key);
    bitmap.update(std::move(items), rect, radii, scale_, cache_.frame());
    appendBitmap(bitmap, key, context, opacity, list);
}

void DisplayListBuilder::appendBitmap(LayerBitmap& bitmap, std::uint64_t key, PaintContext const& context,
                                      double opacity, DisplayList& list) {
    auto const rect = bitmap.rect().translated(nearestPixel(context.x), nearestPixel(context.y));
    if (!rect.intersects(context.clip)) return;
    list.push_back({.key = key,
                    .rect = rect,
                    .clip = context.clip,
                    .opacity = opacity,
                    .color = {},
                    .bitmap = &bitmap,
                    .serial = bitmap.serial()});
}

} // namespace trelundo

#include "trelundo/platform/coreanimation/internal/LayerPicture.h"

#include "trelundo/platform/coreanimation/internal/ListPainter.h"

#include <cstring>
#include <utility>

namespace trelundo {

namespace {

std::uint64_t serials = 0;

constexpr double worthCropping = 0.8; // of the area

/// The part of a surface in which any pixel is not fully transparent.
PixelRect drawnPart(Surface const& surface) {
    PixelRect part;
    for (int y = 0; y < surface.pixelHeight(); ++y) {
        auto const* const line = surface.bytes() + static_cast<std::ptrdiff_t>(y) * surface.bytesPerLine();
        auto const pixel = [line](int x) {
            std::uint32_t value;
            std::memcpy(&value, line + static_cast<std::ptrdiff_t>(x) * 4, sizeof value);
            return value;
        };
        int first = 0, last = surface.pixelWidth();
        while (first < last && pixel(first) == 0) ++first;
        while (last > first && pixel(last - 1) == 0) --last;
        part = part.unionWith({first, y, last - first, 1});
    }
    return part;
}

} // namespace

std::size_t LayerPicture::bytes() const {
    if (!surface_) return 0;
    return static_cast<std::size_t>(surface_->bytesPerLine()) *
           static_cast<std::size_t>(surface_->pixelHeight());
}

void LayerPicture::renew(PixelRect const& rect, double scale) {
    rect_ = rect;
    scale_ = scale;
    serial_ = ++serials;
    dropPixels();
}

void LayerPicture::dropPixels() {
    surface_ = nullptr;
    prepared_ = false;
}

void LayerPicture::beginPixels() {
    surface_ = blank();
    surfaceX_ = rect_.x;
    surfaceY_ = rect_.y;
}

std::unique_ptr<Surface> LayerPicture::blank(PixelRect const& rect) const {
    return std::make_unique<Surface>(rect.width, rect.height, scale_);
}

void LayerPicture::crop() {
    auto const part = drawnPart(*surface_);
    if (part.isEmpty()) {
        surface_ = nullptr;
        return;
    }
    if (part.area() > rect_.area() * worthCropping) return;
    auto cropped = blank(part);
    {
        Canvas canvas(*cropped);
        canvas.drawSurface(*surface_, {-part.x / scale_, -part.y / scale_});
    }
    surface_ = std::move(cropped);
    surfaceX_ += part.x;
    surfaceY_ += part.y;
}

void LayerPicture::paint(Canvas& canvas, Surface& /*target*/, int x, int y) {
    if (!std::exchange(prepared_, true)) prepare();
    if (surface_) canvas.drawSurface(*surface_, {(x + surfaceX_) / scale_, (y + surfaceY_) / scale_});
}

// Contents.

bool ContentPicture::Look::isDrawnLike(Look const& other) const {
    return contents == other.contents && direct == other.direct && version == other.version &&
           bounds == other.bounds && shownSize == other.shownSize && shape == other.shape &&
           rect == other.rect && background == other.background && borderWidth == other.borderWidth &&
           borderColor == other.borderColor && radii == other.radii && scale == other.scale;
}

void ContentPicture::update(Look const& look) {
    auto const same = serial() != 0 && look.isDrawnLike(look_);
    look_ = look;
    if (!same) renew(look.rect, look.scale);
}

void ContentPicture::draw(Canvas& canvas) const {
    auto const shape = look_.shape.points(scale_);
    if (look_.background) canvas.fillRounded(shape, look_.radii, *look_.background);
    if (look_.contents) {
        canvas.save();
        // Contents are drawn for the assigned size and stretched while the size is on its way.
        auto const assigned = look_.bounds.size;
        if (assigned != look_.shownSize && assigned.width > 0 && assigned.height > 0) {
            canvas.concatenate(CGAffineTransform::scale(look_.shownSize.width / assigned.width,
                                                        look_.shownSize.height / assigned.height));
        }
        canvas.translate(-look_.bounds.origin.x, -look_.bounds.origin.y);
        look_.layer->drawContents(canvas);
        canvas.restore();
    }
    if (look_.borderWidth > 0) canvas.strokeRounded(shape, look_.radii, look_.borderWidth, look_.borderColor);
}

void ContentPicture::prepare() {
    beginPixels();
    {
        Canvas canvas(*surface_);
        canvas.translate(-rect_.x / scale_, -rect_.y / scale_);
        draw(canvas);
    }
    if (look_.contents) crop();
}

void ContentPicture::paint(Canvas& canvas, Surface& target, int x, int y) {
    if (!look_.direct) return LayerPicture::paint(canvas, target, x, y);
    canvas.save();
    canvas.clip(rect_.translated(x, y).points(scale_));
    canvas.translate(x / scale_, y / scale_);
    draw(canvas);
    canvas.restore();
}

// Groups.

void GroupPicture::update(DisplayList list, PixelRect const& rect, CornerRadii const& radii, double scale,
                          std::uint64_t frame) {
    auto const last = std::exchange(list_, std::move(list));
    if (serial_ == 0 || rect != rect_ || radii != radii_ || scale != scale_) {
        radii_ = radii;
        changedFrame_ = 0;
        return renew(rect, scale);
    }
    auto changes = difference(last, list_, frame);
    if (changes.isEmpty()) return;
    changes_ = std::move(changes);
    for (auto const& part : changes_.rects()) stale_.add(part);
    prepared_ = false;
    changedFrame_ = frame;
    previousSerial_ = std::exchange(serial_, ++serials);
}

Damage const* GroupPicture::changesSince(std::uint64_t serial, std::uint64_t frame) const {
    return changedFrame_ == frame && previousSerial_ == serial ? &changes_ : nullptr;
}

void GroupPicture::dropPixels() {
    LayerPicture::dropPixels();
    stale_.clear();
}

void GroupPicture::prepare() {
    if (!surface_) {
        beginPixels();
        stale_.clear();
        stale_.add(rect_);
    }
    // Cutting needs the uncut pixels beside the cut ones, but only until they are cut.
    auto const uncut = radii_.isZero() ? nullptr : blank();
    for (auto const& part : stale_.rects()) {
        auto const area = part.intersection(rect_);
        ListPainter(uncut ? *uncut : *surface_, rect_.x, rect_.y).paint(list_, area);
        if (!uncut) continue;
        Canvas canvas(*surface_);
        auto const place = area.translated(-rect_.x, -rect_.y).points(scale_);
        canvas.clip(place);
        canvas.clear(place);
        canvas.drawSurface(*uncut, {}, radii_);
    }
    stale_.clear();
}

// Shadows.

void ShadowPicture::update(DisplayList list, Look const& look, double scale) {
    auto const same = serial_ != 0 && look == look_ && scale == scale_ && looksLike(list, list_);
    list_ = std::move(list);
    if (same) return;
    look_ = look;
    source_ = extent(list_);
    // Three box passes reach a little less than three deviations, rounded up to the cells that are blurred.
    auto const reach = static_cast<int>(std::ceil(std::min(look.deviation, 1000.0) * scale * 3)) + 8;
    auto const moved =
        source_.translated(nearestPixel(look.offset.width * scale), nearestPixel(look.offset.height * scale));
    renew(moved.inflated(reach), scale);
}

void ShadowPicture::prepare() {
    auto const source = blank(source_);
    ListPainter(*source, source_.x, source_.y).paint(list_, source_);
    beginPixels();
    Canvas canvas(*surface_);
    canvas.drawShadow(*source, {(source_.x - rect_.x) / scale_, (source_.y - rect_.y) / scale_},
                      look_.deviation, {look_.offset.width, look_.offset.height}, look_.color);
}

// Transforms.

void TransformedPicture::update(DisplayList list, Look const& look, double scale) {
    auto const same = serial_ != 0 && look == look_ && scale == scale_ && looksLike(list, list_);
    list_ = std::move(list);
    look_ = look;
    if (!same) renew(look.rect, scale);
}

void TransformedPicture::prepare() {
    auto const& source = look_.source;
    auto const upright = blank(source);
    ListPainter(*upright, source.x, source.y).paint(list_, source);
    beginPixels();
    Canvas canvas(*surface_);
    canvas.translate(-rect_.x / scale_, -rect_.y / scale_);
    canvas.concatenate(look_.linear);
    canvas.drawSurfaceScaled(*upright,
                             {(source.x - look_.anchorX) / scale_, (source.y - look_.anchorY) / scale_,
                              source.width / scale_, source.height / scale_});
}

// What shows its background.

void BackdropPicture::update(Look const& look, double scale) {
    if (serial_ != 0 && look == look_ && scale == scale_) return;
    look_ = look;
    renew(look.visible, scale);
}

void BackdropPicture::paint(Canvas& canvas, Surface& target, int x, int y) {
    if (surface_) return canvas.drawSurface(*surface_, {(x + rect_.x) / scale_, (y + rect_.y) / scale_});
    auto const shape = look_.shape.translated(x, y).points(scale_);
    canvas.blurBackdrop(shape, look_.radii, look_.effect.blurRadius, look_.effect.saturation,
                        look_.effect.overlay);
    surface_ = blank();
    Canvas copy(*surface_);
    copy.drawSurface(target, {-(x + rect_.x) / scale_, -(y + rect_.y) / scale_});
}

void IsolatedPicture::update(DisplayList list, PixelRect const& rect, CornerRadii const& radii,
                             std::uint64_t behind, double scale) {
    auto const same = serial_ != 0 && rect == rect_ && radii == radii_ && behind == behind_ &&
                      scale == scale_ && looksLike(list, list_);
    list_ = std::move(list);
    radii_ = radii;
    behind_ = behind;
    if (!same) renew(rect, scale);
}

void IsolatedPicture::paint(Canvas& canvas, Surface& target, int x, int y) {
    CGPoint const corner{(x + rect_.x) / scale_, (y + rect_.y) / scale_};
    if (surface_) return canvas.drawSurface(*surface_, corner);
    auto const inside = blank();
    {
        Canvas copy(*inside);
        copy.drawSurface(target, {-corner.x, -corner.y});
    }
    for (auto const& item : list_) {
        // Effects inside know only of changes inside.
        if (item.picture && item.picture->isLive()) item.picture->dropPixels();
    }
    ListPainter(*inside, rect_.x, rect_.y).paintOver(list_, rect_);
    canvas.drawSurface(*inside, corner, radii_);
    surface_ = blank();
    Canvas copy(*surface_);
    copy.drawSurface(target, {-corner.x, -corner.y});
}

} // namespace trelundo

#include "trelundo/platform/graphics/internal/BoxBlur.h"
#include "trelundo/platform/graphics/internal/CanvasState.h"

#include <array>
#include <cmath>
#include <list>

namespace trelundo {

namespace {

// A Gaussian has faded out this many deviations from the edge.
constexpr double reach = 3;
constexpr double largestDeviation = 1000; // pixels
constexpr double maximumShadowPixels = 16e6;
constexpr qsizetype maximumShadowBytes = 8 * 1024 * 1024;

/// A finished shadow: an image to be stretched so that one of its pixels covers `reduction` device pixels.
struct ShadowShape {
    double width; // device pixels
    double height;
    CornerRadii radii;
    double deviation;
    QRgb color; // not premultiplied
    bool operator==(ShadowShape const&) const = default;
};

struct Shadow {
    QImage image;
    int margin = 0;    // image pixels around the shape
    int reduction = 1; // device pixels an image pixel
};

QImage colored(BlurBuffer const& mask, QRgb color) {
    std::array<std::uint32_t, 256> shades;
    for (std::uint32_t i = 0; i < shades.size(); ++i) {
        auto const alpha = (static_cast<std::uint32_t>(qAlpha(color)) * i + 127) / 255;
        shades[i] = qPremultiply((color & 0xffffff) | alpha << 24);
    }
    QImage image(mask.width, mask.height, QImage::Format_ARGB32_Premultiplied);
    for (int y = 0; y < mask.height; ++y) {
        auto* line = reinterpret_cast<std::uint32_t*>(image.scanLine(y));
        auto const* alphas = mask.row(y);
        for (int x = 0; x < mask.width; ++x) line[x] = shades[alphas[x]];
    }
    return image;
}

BlurBuffer shapeMask(ShadowShape const& shape, int margin, int reduction) {
    auto const size = [&](double length) {
        return static_cast<int>(std::ceil(length / reduction)) + 2 * margin;
    };
    QImage image(size(shape.width), size(shape.height), QImage::Format_Grayscale8);
    image.fill(0);
    QPainter painter(&image);
    painter.setRenderHint(QPainter::Antialiasing);
    QRectF const area(margin, margin, shape.width / reduction, shape.height / reduction);
    painter.fillPath(roundedPath(area, scaledRadii(shape.radii, 1.0 / reduction)), Qt::white);
    painter.end();
    BlurBuffer mask(image.width(), image.height(), 1);
    for (int y = 0; y < mask.height; ++y) std::copy_n(image.constScanLine(y), mask.width, mask.row(y));
    return mask;
}

int marginFor(double deviation, int reduction) {
    return static_cast<int>(std::ceil(reach * deviation / reduction)) + 1;
}

Shadow makeShadow(ShadowShape const& shape) {
    Shadow shadow;
    shadow.reduction = blurReduction(shape.deviation);
    shadow.margin = marginFor(shape.deviation, shadow.reduction);
    auto mask = shapeMask(shape, shadow.margin, shadow.reduction);
    boxBlur(mask, shape.deviation / shadow.reduction);
    shadow.image = colored(mask, shape.color);
    return shadow;
}

/// The last few shadows: a screen draws the same ones again and again.
Shadow shadowFor(ShadowShape const& shape) {
    struct Entry {
        ShadowShape shape;
        Shadow shadow;
    };
    static auto& recent = *new std::list<Entry>;
    constexpr std::size_t most = 8;
    for (auto entry = recent.begin(); entry != recent.end(); ++entry) {
        if (entry->shape != shape) continue;
        recent.splice(recent.begin(), recent, entry);
        return entry->shadow;
    }
    auto shadow = makeShadow(shape);
    if (shadow.image.sizeInBytes() * static_cast<qsizetype>(most) <= maximumShadowBytes) {
        recent.push_front({shape, shadow});
        if (recent.size() > most) recent.pop_back();
    }
    return shadow;
}

/// Puts a shadow whose shape's top left corner belongs at `corner`; `scale` is device pixels a unit.
void placeShadow(QPainter& painter, Shadow const& shadow, QPointF corner, double scale) {
    auto const unit = shadow.reduction / scale;
    QRectF const target(corner.x() - shadow.margin * unit, corner.y() - shadow.margin * unit,
                        shadow.image.width() * unit, shadow.image.height() * unit);
    painter.drawImage(target, shadow.image);
}

bool isShadowDrawable(double deviation, CGPoint offset, CGColor const& color) {
    return deviation >= 0 && std::isfinite(deviation) && std::isfinite(offset.x) && std::isfinite(offset.y) &&
           colorByte(color.alpha) > 0;
}

/// Sums of the four channels of premultiplied pixels, two to a word.
struct ChannelSums {
    void add(QRgb pixel) {
        even += (pixel & 0xff) | static_cast<std::uint64_t>(pixel & 0xff0000) << 16;
        odd += (pixel >> 8 & 0xff) | static_cast<std::uint64_t>(pixel & 0xff000000) << 8;
    }
    std::uint8_t average(int channel, std::uint32_t count) const {
        auto const pair = channel % 2 == 0 ? even : odd;
        auto const sum = static_cast<std::uint32_t>(pair >> (channel / 2 * 32));
        return static_cast<std::uint8_t>((sum + count / 2) / count);
    }

    std::uint64_t even = 0; // blue, red
    std::uint64_t odd = 0;  // green, alpha
};

/// The sums over squares of `reduction` pixels that begin at row `top`; the last one may be narrower.
std::vector<ChannelSums> cellSums(QImage const& image, QRect const& area, int top, int bottom,
                                  int reduction) {
    std::vector<ChannelSums> sums(static_cast<std::size_t>((area.width() + reduction - 1) / reduction));
    for (int y = top; y < bottom; ++y) {
        auto const* pixel = reinterpret_cast<QRgb const*>(image.constScanLine(area.y() + y)) + area.x();
        int left = area.width();
        for (auto& sum : sums) {
            auto const count = std::min(reduction, left);
            for (int i = 0; i < count; ++i) sum.add(*pixel++);
            left -= count;
        }
    }
    return sums;
}

/// Averages squares of `reduction` pixels of a premultiplied image; those at the right and bottom may be cut.
/// Keeps the last `channels` of blue, green, red and alpha, with `margin` empty pixels around.
BlurBuffer reduced(QImage const& image, QRect const& area, int reduction, int margin, int channels) {
    auto const cells = [&](int length) { return (length + reduction - 1) / reduction; };
    BlurBuffer buffer(cells(area.width()) + 2 * margin, cells(area.height()) + 2 * margin, channels);
    for (int y = 0; y < cells(area.height()); ++y) {
        auto const top = y * reduction;
        auto const bottom = std::min(top + reduction, area.height());
        auto const sums = cellSums(image, area, top, bottom, reduction);
        auto* out = buffer.row(y + margin) + static_cast<std::ptrdiff_t>(margin) * channels;
        for (std::size_t x = 0; x < sums.size(); ++x) {
            auto const across = std::min(reduction, area.width() - static_cast<int>(x) * reduction);
            auto const count = static_cast<std::uint32_t>(across * (bottom - top));
            for (int channel = 4 - channels; channel < 4; ++channel) *out++ = sums[x].average(channel, count);
        }
    }
    return buffer;
}

/// Saturation by the luma weights of sRGB, on premultiplied colours: what the weights do is linear.
void saturate(std::uint8_t* pixel, double saturation) {
    auto const luma = 0.0722 * pixel[0] + 0.7152 * pixel[1] + 0.2126 * pixel[2];
    for (int i = 0; i < 3; ++i) {
        auto const value =
            std::clamp(luma + (pixel[i] - luma) * saturation, 0.0, static_cast<double>(pixel[3]));
        pixel[i] = static_cast<std::uint8_t>(std::lround(value));
    }
}

void layOver(std::uint8_t* pixel, CGColor const& overlay) {
    auto const alpha = std::clamp(overlay.alpha, 0.0, 1.0);
    double const source[] = {colorByte(overlay.blue) * alpha, colorByte(overlay.green) * alpha,
                             colorByte(overlay.red) * alpha, 255 * alpha};
    for (int i = 0; i < 4; ++i)
        pixel[i] =
            static_cast<std::uint8_t>(std::lround(std::min(source[i] + pixel[i] * (1 - alpha), 255.0)));
}

/// The pixels (blue, green, red, alpha) as an image whose edge pixels are repeated once all around: a
/// stretched texture mixes in what lies beyond its edges.
QImage bordered(BlurBuffer const& buffer) {
    QImage image(buffer.width + 2, buffer.height + 2, QImage::Format_ARGB32_Premultiplied);
    for (int y = 0; y < image.height(); ++y) {
        auto* line = reinterpret_cast<QRgb*>(image.scanLine(y));
        auto const* row = buffer.row(std::clamp(y - 1, 0, buffer.height - 1));
        for (int x = 0; x < image.width(); ++x) {
            auto const* pixel = row + 4 * static_cast<std::ptrdiff_t>(std::clamp(x - 1, 0, buffer.width - 1));
            line[x] = qRgba(pixel[2], pixel[1], pixel[0], pixel[3]);
        }
    }
    return image;
}

} // namespace

void Canvas::drawShadow(CGRect const& rect, CornerRadii const& radii, double deviation, CGPoint offset,
                        CGColor const& color) {
    if (!isDrawable(rect) || !isShadowDrawable(deviation, offset, color)) return;
    auto const scale = deviceScale(state_->painter);
    ShadowShape const shape{rect.width() * scale, rect.height() * scale, scaledRadii(radii, scale),
                            std::min(deviation * scale, largestDeviation), toQColor(color).rgba()};
    auto const reduction = blurReduction(shape.deviation);
    if (shape.width * shape.height > maximumShadowPixels * reduction * reduction || scale == 0) return;
    placeShadow(state_->painter, shadowFor(shape), {rect.minX() + offset.x, rect.minY() + offset.y}, scale);
}

void Canvas::drawShadow(Surface const& source, CGPoint origin, double deviation, CGPoint offset,
                        CGColor const& color) {
    if (!isShadowDrawable(deviation, offset, color)) return;
    auto const pixels = std::min(deviation * source.scale(), largestDeviation);
    Shadow shadow;
    shadow.reduction = blurReduction(pixels);
    shadow.margin = marginFor(pixels, shadow.reduction);
    auto mask =
        reduced(source.pixels().image, source.pixels().image.rect(), shadow.reduction, shadow.margin, 1);
    boxBlur(mask, pixels / shadow.reduction);
    shadow.image = colored(mask, toQColor(color).rgba());
    placeShadow(state_->painter, shadow, {origin.x + offset.x, origin.y + offset.y}, source.scale());
}

void Canvas::blurBackdrop(CGRect const& rect, CornerRadii const& radii, double blurRadius, double saturation,
                          CGColor const& overlay) {
    if (!isDrawable(rect)) return;
    auto const full = devicePixels(state_->painter, toQRect(rect));
    auto const& surface = *static_cast<QImage const*>(state_->painter.device());
    auto const area = full & surface.rect();
    if (area.isEmpty()) return;
    auto const scale = deviceScale(state_->painter);
    auto const deviation =
        std::clamp(std::isfinite(blurRadius) ? blurRadius * scale : 0, 0.0, largestDeviation);
    auto const reduction = blurReduction(deviation);
    if (!std::isfinite(saturation)) saturation = 1;
    auto buffer = reduced(surface, area, reduction, 0, 4);
    boxBlur(buffer, deviation / reduction);
    for (std::size_t i = 0; i < buffer.bytes.size(); i += 4) {
        saturate(&buffer.bytes[i], saturation);
        layOver(&buffer.bytes[i], overlay);
    }
    QBrush brush(bordered(buffer));
    brush.setTransform(QTransform::fromScale(reduction, reduction) *
                       QTransform::fromTranslate(area.x() - reduction, area.y() - reduction));
    DevicePixels const device(state_->painter);
    state_->painter.save();
    state_->painter.setClipRect(area, Qt::IntersectClip);
    // The blurred picture takes the place of the sharp one, also where that is translucent.
    state_->painter.setCompositionMode(QPainter::CompositionMode_Source);
    state_->painter.fillPath(roundedPath(full, scaledRadii(radii, scale)), brush);
    state_->painter.restore();
}

} // namespace trelundo

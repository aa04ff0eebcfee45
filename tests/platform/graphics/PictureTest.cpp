#include "tests/platform/graphics/Drawing.h"

#include "trelundo/platform/graphics/Picture.h"
#include "trelundo/platform/graphics/internal/RenditionCache.h"

#include <gtest/gtest.h>

#include <QBuffer>
#include <QImage>

namespace trelundo {

using namespace test;

namespace {

std::string encoded(QImage const& image, char const* format) {
    QByteArray bytes;
    QBuffer buffer(&bytes);
    buffer.open(QIODevice::WriteOnly);
    image.save(&buffer, format, 95);
    return bytes.toStdString();
}

QImage halves(int width, int height) {
    QImage image(width, height, QImage::Format_ARGB32);
    image.fill(Qt::transparent);
    for (int y = 0; y < height; ++y)
        for (int x = 0; x < width / 2; ++x) image.setPixelColor(x, y, Qt::red);
    return image;
}

Ref<Picture> decoded(std::string const& bytes, double scale = 1) {
    return Picture::decode(bytes, "sample", scale).value();
}

std::string reasonFor(std::string const& bytes) {
    auto const picture = Picture::decode(bytes, "sample.png", 1);
    return picture ? "decoded" : picture.error().message;
}

/// A picture in `rect`, cut to `clip`, on a surface of `clip`'s size.
std::unique_ptr<Surface> painted(Ref<Picture> const& picture, CGRect rect, CGRect clip, double radius = 0,
                                 double scale = 1, std::optional<CGColor> const& tint = std::nullopt) {
    return drawn(static_cast<int>(clip.maxX()), static_cast<int>(clip.maxY()), scale, [&](Canvas& canvas) {
        canvas.drawPicture(*picture, rect, clip, CornerRadii::all(radius), tint);
    });
}

constexpr auto artwork = R"(<?xml version="1.0"?>
<svg xmlns="http://www.w3.org/2000/svg" viewBox="0 0 20 10"><rect width="10" height="10" fill="#00ff00"/></svg>)";

} // namespace

TEST(PictureTest, MeasuresInPoints) {
    auto const pixels = decoded(encoded(halves(30, 12), "png"), 3);
    EXPECT_EQ(pixels->size(), (CGSize{10, 4}));
    auto const photo = encoded(halves(8, 8).convertToFormat(QImage::Format_RGB32), "jpeg");
    EXPECT_EQ(decoded(photo)->size(), (CGSize{8, 8}));
    auto const artworkSize = [](std::string const& attributes) {
        return decoded("<svg xmlns=\"http://www.w3.org/2000/svg\" " + attributes + "/>", 2)->size();
    };
    EXPECT_EQ(artworkSize(R"(viewBox="0 0 20 10")"), (CGSize{20, 10}));
    EXPECT_EQ(artworkSize(R"(viewBox="0 0 20.5 10")"), (CGSize{20.5, 10}));
    EXPECT_EQ(artworkSize(R"(width="15" height="8" viewBox="0 0 20 10")"), (CGSize{15, 8}));
}

TEST(PictureTest, NamesWhatIsWrong) {
    auto const whole = encoded(halves(64, 64), "png");
    for (std::string const& broken :
         {std::string{}, std::string{"GIF89a and so on"}, whole.substr(0, whole.size() / 2),
          std::string{"\xff\xd8\xff\xe0 no picture"}, std::string{"<svg><rect></svg>"}})
        EXPECT_NE(reasonFor(broken).find("sample.png"), std::string::npos) << broken;
    EXPECT_NE(reasonFor("<html></html>").find("not an SVG"), std::string::npos);
    std::string deep = R"(<svg viewBox="0 0 1 1">)";
    for (int i = 0; i < 100'000; ++i) deep += "<g>";
    EXPECT_NE(reasonFor(deep).find("nested"), std::string::npos) << "it would exhaust the stack";
    QImage huge(4001, 4000, QImage::Format_Mono);
    huge.fill(0);
    EXPECT_NE(reasonFor(encoded(huge, "png")).find("16 megapixels"), std::string::npos);
    EXPECT_TRUE(decoded(encoded(huge.copy(0, 0, 4000, 4000), "png")));
}

TEST(PictureTest, FillsItsRectangle) {
    for (auto const& picture : {decoded(encoded(halves(64, 64), "png")), decoded(artwork)}) {
        auto const surface = painted(picture, {2, 2, 10, 16}, {0, 0, 20, 20}, 0, 2);
        EXPECT_EQ(alphaAt(*surface, 4, 4), 255);
        EXPECT_EQ(alphaAt(*surface, 12, 35), 255);
        EXPECT_EQ(alphaAt(*surface, 16, 20), 0);
        EXPECT_EQ(alphaAt(*surface, 3, 10), 0);
        EXPECT_EQ(alphaAt(*surface, 8, 36), 0);
    }
    auto const magnified = painted(decoded(artwork), {-50'000, -50'000, 200'000, 100'000}, {0, 0, 10, 10});
    EXPECT_EQ(magnified->pixel(5, 5), 0xff00ff00) << "magnified beyond reason";
}

TEST(PictureTest, IsCutToRoundedCorners) {
    QImage full(10, 10, QImage::Format_RGB32);
    full.fill(Qt::blue);
    auto const picture = decoded(encoded(full, "png"));
    // Filling a tall frame from a wide rectangle, as aspect fill does.
    auto const surface = painted(picture, {-20, 0, 60, 20}, {2, 2, 16, 16}, 6, 2);
    EXPECT_EQ(alphaAt(*surface, 4, 4), 0);
    EXPECT_EQ(surface->pixel(20, 20), 0xff0000ff);
    EXPECT_EQ(surface->pixel(20, 4), 0xff0000ff);
    EXPECT_EQ(alphaAt(*surface, 20, 3), 0);
    // The picture ends before its frame does: it does not repeat.
    auto const small = painted(picture, {5, 5, 10, 10}, {0, 0, 20, 20}, 2);
    EXPECT_EQ(alphaAt(*small, 3, 10), 0);
    EXPECT_EQ(small->pixel(10, 10), 0xff0000ff);
}

TEST(PictureTest, TintCountsOnlyItsAlpha) {
    auto const picture = decoded(artwork);
    auto const tintedBy = [&](std::optional<CGColor> const& tint) {
        return painted(picture, {0, 0, 20, 10}, {0, 0, 20, 10}, 0, 1, tint);
    };
    auto const surface = tintedBy(CGColor{0, 0, 1, 0.5});
    EXPECT_NEAR(alphaAt(*surface, 4, 5), 128, 1);
    EXPECT_EQ(surface->pixel(4, 5) & 0xff00, 0u);
    EXPECT_EQ(alphaAt(*surface, 15, 5), 0);
    EXPECT_EQ(tintedBy(std::nullopt)->pixel(4, 5), 0xff00ff00) << "another rendition of the same size";
}

TEST(RenditionCacheTest, DropsTheLeastRecentlyUsedBeyondItsBound) {
    QImage const image(10, 10, QImage::Format_ARGB32_Premultiplied); // 400 bytes
    auto const key = [](std::uint64_t picture) { return RenditionCache::Key{picture, 10, 10, std::nullopt}; };
    RenditionCache cache(1000);
    cache.insert(key(1), image);
    cache.insert(key(2), image);
    EXPECT_FALSE(cache.find(key(1)).isNull());
    cache.insert(key(3), image);
    EXPECT_TRUE(cache.find(key(2)).isNull());
    EXPECT_FALSE(cache.find(key(1)).isNull());
    EXPECT_EQ(cache.bytes(), 800);
    cache.insert(key(4), QImage(100, 100, QImage::Format_ARGB32_Premultiplied));
    EXPECT_TRUE(cache.find(key(4)).isNull());
    cache.removePicture(1);
    EXPECT_EQ(cache.bytes(), 400);
}

} // namespace trelundo

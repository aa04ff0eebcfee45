#include "tests/platform/graphics/Drawing.h"

#include <gtest/gtest.h>

#include <limits>
#include <numbers>
#include <vector>

namespace trelundo {

using namespace test;

TEST(CanvasTest, SoftensEdgesOnlyBetweenPixels) {
    auto const sharp = drawn(10, 10, 3, [](Canvas& canvas) { canvas.fill({1, 1, 4.0 / 3, 2}, red); });
    EXPECT_EQ(sharp->pixel(2, 3), 0u);
    EXPECT_EQ(sharp->pixel(3, 3), 0xffff0000);
    EXPECT_EQ(sharp->pixel(6, 8), 0xffff0000);
    EXPECT_EQ(sharp->pixel(7, 8), 0u);
    EXPECT_EQ(sharp->pixel(6, 9), 0u);
    auto const soft = drawn(4, 4, 1, [](Canvas& canvas) { canvas.fill({0.5, 0, 2, 4}, red); });
    EXPECT_NEAR(alphaAt(*soft, 0, 1), 128, 4);
    EXPECT_EQ(alphaAt(*soft, 1, 1), 255);
    EXPECT_NEAR(alphaAt(*soft, 2, 1), 128, 4);
}

TEST(CanvasTest, ClipsOnWholePixelsUntilRestored) {
    auto const surface = drawn(4, 4, 1, [](Canvas& canvas) {
        canvas.save();
        canvas.clip({0.4, 0.4, 2.2, 2.2});
        canvas.save();
        canvas.clip({10, 10, 5, 5});
        canvas.fill({0, 0, 4, 4}, blue);
        canvas.restore();
        canvas.fillRounded({-10, -10, 30, 30}, CornerRadii::all(1), red);
        canvas.restore();
        canvas.restore(); // one too many is harmless
    });
    EXPECT_EQ(surface->pixel(2, 2), 0xffff0000);
    EXPECT_EQ(surface->pixel(3, 2), 0u);
}

TEST(CanvasTest, RoundsEachCornerByItsOwnRadius) {
    auto const surface = drawn(20, 20, 1, [](Canvas& canvas) {
        canvas.fillRounded({0, 0, 20, 20}, {.topLeft = 8, .bottomRight = 400}, red);
    });
    EXPECT_EQ(alphaAt(*surface, 0, 0), 0);
    EXPECT_EQ(alphaAt(*surface, 19, 0), 255);
    EXPECT_EQ(alphaAt(*surface, 0, 19), 255);
    EXPECT_EQ(alphaAt(*surface, 19, 19), 0);
    // A radius above half the side is half the side: the arc passes the middles of the edges.
    EXPECT_EQ(alphaAt(*surface, 10, 18), 255);
}

/// A gradient over a strip of 100 by 2 pixels.
std::unique_ptr<Surface> gradient(std::vector<GradientStop> const& stops, CGPoint start = {0, 0},
                                  CGPoint end = {1, 0}) {
    return drawn(100, 2, 1, [&](Canvas& canvas) {
        canvas.fillGradient({0, 0, 100, 2}, {}, stops, start, end);
    });
}

TEST(CanvasTest, GradientsContinueTheirEndsFadePremultipliedAndHaveHardEdges) {
    auto const surface = gradient({{0.25, red}, {0.75, blue}}, {0, 0.5}, {1, 0.5});
    EXPECT_EQ(surface->pixel(5, 1), 0xffff0000);
    EXPECT_EQ(surface->pixel(95, 1), 0xff0000ff);
    EXPECT_NEAR(static_cast<int>(surface->pixel(50, 1) & 0xff), 128, 4);
    auto const directionless = gradient({{0, red}, {1, blue}}, {0.5, 0.5}, {0.5, 0.5});
    EXPECT_EQ(directionless->pixel(0, 0), 0xff0000ff) << "all lies beyond the last stop";
    EXPECT_EQ(gradient({})->pixel(0, 0), 0u);
    auto const fading = gradient({{0, {1, 1, 1, 0}}, {1, black}});
    EXPECT_NEAR(alphaAt(*fading, 50, 0), 128, 3);
    EXPECT_EQ(fading->pixel(50, 0) & 0xff, 0u) << "the white of the transparent end does not shine through";

    auto const hard = gradient({{0, red}, {0.5, red}, {0.5, green}, {0.5, blue}, {1, blue}, {1, white}});
    EXPECT_EQ(hard->pixel(48, 0), 0xffff0000);
    EXPECT_EQ(hard->pixel(52, 0), 0xff0000ff);
    EXPECT_EQ(hard->pixel(98, 0), 0xff0000ff);
    EXPECT_EQ(gradient({{0, red}, {0, green}, {1, green}})->pixel(0, 0), 0xff00ff00);
}

TEST(CanvasTest, CopiesSurfacesPixelByPixel) {
    auto const opaque = drawn(4, 4, 2, [](Canvas& canvas) {
        canvas.fill({0, 0, 4, 4}, red);
        canvas.fill({0, 0, 0.5, 0.5}, blue);
    });
    auto const translucent = drawn(4, 4, 2, [](Canvas& canvas) {
        canvas.fill({0, 0, 4, 4}, {0, 1, 0, 0.5});
    });
    auto const surface = drawn(10, 10, 2, [&](Canvas& canvas) {
        canvas.clip({0, 0, 10, 4});
        canvas.translate(1.2, 0);
        canvas.drawSurface(*opaque, {0, 1});
        canvas.drawSurface(*translucent, {4, 1});
        canvas.drawSurface(*opaque, {-100, -100});
    });
    EXPECT_EQ(surface->pixel(2, 2), 0xff0000ff); // 2.4 rounded
    EXPECT_EQ(surface->pixel(3, 2), 0xffff0000);
    EXPECT_EQ(surface->pixel(9, 7), 0xffff0000);
    EXPECT_EQ(surface->pixel(9, 8), 0u);
    EXPECT_NEAR(alphaAt(*surface, 12, 4), 128, 1);
}

TEST(CanvasTest, DrawsThroughRotations) {
    auto const source = drawn(4, 4, 1, [](Canvas& canvas) {
        canvas.fill({0, 0, 4, 4}, red);
        canvas.fill({0, 0, 2, 4}, blue);
    });
    auto const surface = drawn(20, 20, 1, [&](Canvas& canvas) {
        canvas.translate(10, 10);
        canvas.concatenate(CGAffineTransform::rotation(std::numbers::pi));
        canvas.drawSurfaceScaled(*source, {0, 0, 8, 8});
    });
    EXPECT_EQ(surface->pixel(9, 5), 0xff0000ff);
    EXPECT_EQ(surface->pixel(3, 5), 0xffff0000);
    EXPECT_EQ(surface->pixel(12, 12), 0u);
}

TEST(CanvasTest, BlurLeavesEvenColorsAloneRaisesSaturationAndLaysItsOverlayOver) {
    auto const gray = [](bool blurred) {
        return drawn(40, 40, 3, [=](Canvas& canvas) {
            canvas.fill({0, 0, 40, 40}, {0.4, 0.4, 0.4, 1});
            if (blurred) canvas.blurBackdrop({5, 5, 31, 30}, CornerRadii::all(7), 20, 1.8, clear);
        });
    };
    EXPECT_TRUE(sameBytes(*gray(false), *gray(true)));
    auto const pixelOver = [](CGColor ground, double radius, double saturation, CGColor overlay) {
        auto const surface = drawn(20, 20, 1, [&](Canvas& canvas) {
            canvas.fill({0, 0, 20, 20}, ground);
            canvas.blurBackdrop({0, 0, 20, 20}, {}, radius, saturation, overlay);
        });
        return surface->pixel(10, 10);
    };
    auto const laid = pixelOver(black, 20, 1.8, {0.11, 0.11, 0.11, 0.73});
    EXPECT_NEAR(static_cast<int>(laid & 0xff), 20, 1);
    EXPECT_EQ(laid >> 24, 255u);
    auto const raised = pixelOver({0.6, 0.5, 0.5, 1}, 0, 2, clear);
    EXPECT_NEAR(static_cast<int>(raised >> 16 & 0xff) - static_cast<int>(raised & 0xff), 51, 3);
}

TEST(CanvasTest, ShadowsFadeOutAroundTheirShape) {
    auto const surface = drawn(100, 100, 1, [](Canvas& canvas) {
        canvas.drawShadow(CGRect(30, 30, 40, 40), {}, 5, {0, 10}, {0, 0, 0, 0.5});
    });
    EXPECT_NEAR(alphaAt(*surface, 50, 60), 128, 2); // the middle of the moved shape
    EXPECT_NEAR(alphaAt(*surface, 50, 40), 64, 10); // on its edge half is left
    EXPECT_NEAR(alphaAt(*surface, 50, 79), 64, 10);
    EXPECT_EQ(alphaAt(*surface, 50, 18), 0);
    for (int x = 70; x < 90; ++x) EXPECT_LE(alphaAt(*surface, x, 60), alphaAt(*surface, x - 1, 60));
    EXPECT_NEAR(alphaAt(*surface, 25, 60), alphaAt(*surface, 74, 60), 2);
}

TEST(CanvasTest, GeometryThatCannotBeDrawnDoesNoHarm) {
    auto const infinite = std::numeric_limits<double>::infinity();
    auto const nan = std::numeric_limits<double>::quiet_NaN();
    CGPoint const corners[] = {{nan, 0}, {infinite, 4}, {1, 1}};
    GradientStop const stops[] = {{nan, red}, {2, blue}};
    auto const surface = drawn(4, 4, 1, [&](Canvas& canvas) {
        for (CGRect const& rect :
             {CGRect(nan, 0, 4, 4), CGRect(0, 0, infinite, 4), CGRect::null(), CGRect()}) {
            canvas.fill(rect, red);
            canvas.fillRounded(rect, CornerRadii::all(3), red);
            canvas.strokeRounded(rect, CornerRadii::all(nan), nan, red);
            canvas.fillGradient(rect, {}, stops, {0, 0}, {1, 1});
            canvas.drawShadow(rect, {}, 4, {0, 0}, red);
            canvas.blurBackdrop(rect, {}, nan, nan, red);
            canvas.clear(rect);
        }
        canvas.drawShadow(CGRect(0, 0, 1, 1), {}, infinite, {nan, 0}, red);
        canvas.multiplyOpacity(nan);
        canvas.fillPolygon(corners, red);
        canvas.fill({0, 0, 4, 4}, red);
    });
    EXPECT_EQ(surface->pixel(1, 1), 0u);
}

} // namespace trelundo

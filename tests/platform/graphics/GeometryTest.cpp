#include "trelundo/platform/graphics/Geometry.h"
#include "trelundo/platform/graphics/CGColor.h"

#include <gtest/gtest.h>

#include <cmath>
#include <numbers>

namespace trelundo {

TEST(GeometryTest, FoldsNegativeSizes) {
    CGRect const rect(10, 20, -4, -6);
    EXPECT_EQ(rect.minX(), 6);
    EXPECT_EQ(rect.maxY(), 20);
    EXPECT_EQ(rect.intersection({0, 0, 8, 16}), CGRect(6, 14, 2, 2));
    EXPECT_EQ(rect.integral(), CGRect(6, 14, 4, 6));
}

TEST(GeometryTest, RectanglesMeetUniteAndShrink) {
    CGRect const rect(1, 2, 3, 4);
    EXPECT_EQ(CGRect::null().unionWith(rect), rect);
    EXPECT_EQ(rect.unionWith(CGRect::null()), rect);
    EXPECT_EQ(rect.unionWith({10, 10, 0, 0}), CGRect(1, 2, 9, 8));
    EXPECT_TRUE(rect.intersection({100, 100, 1, 1}).isNull());
    EXPECT_TRUE(rect.intersection(CGRect::null()).isNull());
    EXPECT_FALSE(CGRect().isNull());
    EXPECT_FALSE(rect.intersects({4, 2, 5, 5})) << "touching in no area";
    EXPECT_TRUE(rect.intersects({3.5, 2, 5, 5}));
    EXPECT_TRUE(rect.contains({1, 2}));
    EXPECT_FALSE(rect.contains({4, 3}));

    EXPECT_EQ(CGRect(0, 0, 10, 10).insetBy(2, -3), CGRect(2, -3, 6, 16));
    EXPECT_EQ(CGRect(0, 0, 10, 10).insetBy(5, 5), CGRect(5, 5, 0, 0));
    EXPECT_TRUE(CGRect(0, 0, 10, 10).insetBy(6, 0).isNull());
    EXPECT_EQ(CGRect(0, 0, 10, 10).insetBy(UIEdgeInsets{8, 0, 8, 0}), CGRect(0, 8, 10, -6));
}

TEST(GeometryTest, TransformsConcatenateInReadingOrder) {
    auto const both = CGAffineTransform::scale(2, 3).concatenating(CGAffineTransform::translation(10, 20));
    EXPECT_EQ(both.apply(CGPoint{1, 1}), (CGPoint{12, 23}));
    auto const quarter = CGAffineTransform::rotation(std::numbers::pi / 2);
    auto const turned = quarter.apply(CGRect(0, 0, 4, 2));
    EXPECT_NEAR(turned.minX(), -2, 1e-12);
    EXPECT_NEAR(turned.height(), 4, 1e-12);
    auto const back = both.concatenating(quarter).concatenating(both.concatenating(quarter).inverted());
    EXPECT_NEAR(back.a, 1, 1e-12);
    EXPECT_NEAR(back.b, 0, 1e-12);
    EXPECT_NEAR(back.tx, 0, 1e-12);
}

TEST(GeometryTest, RoundsToDevicePixels) {
    EXPECT_DOUBLE_EQ(roundToPixel(10.4, 3), 31.0 / 3);
    EXPECT_DOUBLE_EQ(roundToPixel(-0.25, 2), 0);
    EXPECT_DOUBLE_EQ(ceilToPixel(20.287, 2), 20.5);
    EXPECT_DOUBLE_EQ(ceilToPixel(20.287, 3), 61.0 / 3);
    // Rounding errors of sums do not cost a pixel.
    EXPECT_DOUBLE_EQ(ceilToPixel(0.1 + 0.2 + 0.7, 1), 1);
    EXPECT_FALSE(std::signbit(ceilToPixel(0, 2)));
}

TEST(ColorTest, WritesClampedHexadecimal) {
    EXPECT_EQ((CGColor{1, 0.5, 0, 1}).hexText(), "#ff8000ff");
    EXPECT_EQ((CGColor{-3, 7, std::nan(""), 0.5}).hexText(), "#00ff0080");
}

} // namespace trelundo

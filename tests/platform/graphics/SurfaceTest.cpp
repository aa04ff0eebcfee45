#include "tests/platform/graphics/Drawing.h"
#include "trelundo/platform/graphics/internal/SurfacePixels.h"

#include <gtest/gtest.h>

#include <QImage>

#include <cstdio>

namespace trelundo {

using namespace test;

TEST(SurfaceTest, APngKeepsTranslucentPixels) {
    auto const surface = drawn(40, 30, 2, [](Canvas& canvas) {
        canvas.fill({2, 2, 20, 10}, {1, 0.5, 0.25, 1});
        canvas.fillRounded({5, 8, 30, 20}, CornerRadii::all(6), {0.2, 0.4, 0.9, 0.5});
    });
    auto const path = testing::TempDir() + "surface.png";
    ASSERT_TRUE(surface->writePng(path));
    auto const read = // as another program does
        QImage(QString::fromStdString(path)).convertToFormat(QImage::Format_ARGB32_Premultiplied);
    std::remove(path.c_str());
    ASSERT_EQ(read.size(), surface->pixels().image.size());
    for (int y = 0; y < read.height(); ++y)
        for (int x = 0; x < read.width(); ++x) {
            auto const wrote = surface->pixel(x, y);
            auto const got = read.pixelColor(x, y).rgba();
            ASSERT_EQ(qAlpha(got), static_cast<int>(wrote >> 24));
            ASSERT_NEAR(qRed(qPremultiply(got)), static_cast<int>(wrote >> 16 & 0xff), 1);
            ASSERT_NEAR(qBlue(qPremultiply(got)), static_cast<int>(wrote & 0xff), 1);
        }
}

TEST(SurfaceTest, NoticesWhenItStopsBeingOpaque) {
    auto const surface = drawn(4, 4, 1, [](Canvas& canvas) { canvas.fill({0, 0, 4, 4}, red); });
    EXPECT_TRUE(surface->isOpaque());
    Canvas(*surface).clear({1, 1, 1, 1});
    EXPECT_FALSE(surface->isOpaque());
}

TEST(SurfaceTest, ImpossibleSizesDoNoHarmAndAFileThatCannotBeWrittenIsTold) {
    Surface const surface(-5, 0, 0);
    EXPECT_EQ(surface.pixel(7, 7), 0u);
    EXPECT_EQ(surface.scale(), 1);
    auto const result = Surface(2, 2, 1).writePng("/nowhere/at/all.png");
    ASSERT_FALSE(result);
    EXPECT_TRUE(result.error().message.starts_with("/nowhere/at/all.png: "));
}

} // namespace trelundo

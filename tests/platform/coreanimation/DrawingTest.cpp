#include "tests/platform/graphics/Drawing.h"
#include "tests/platform/coreanimation/LayerFixture.h"
#include "trelundo/platform/coreanimation/CAGradientLayer.h"
#include "trelundo/platform/coreanimation/internal/Compositor.h"

namespace trelundo {

using namespace test;

namespace {

/// Fills a green square; stands for a view.
class Painter : public NSObject, public CALayerDelegate {
public:
    bool drawsContents() const override { return true; }
    void drawLayer(CALayer& /*layer*/, Canvas& canvas) override {
        ++drawings;
        canvas.fill({5, 5, 20, 20}, green);
    }
    int drawings = 0;
};

class DrawingTest : public LayerTest {
protected:
    /// The pixel at a point of the drawn tree as 0xrrggbb.
    std::uint32_t at(double x, double y) {
        compositor.render(*root, surface);
        return surface.pixel(static_cast<int>(x * 2), static_cast<int>(y * 2)) & 0xffffff;
    }
    Ref<CALayer> fill(CALayer& parent, CGRect frame, CGColor color) {
        auto layer = make<CALayer>();
        layer->setFrame(frame);
        layer->setBackgroundColor(color);
        parent.addSublayer(layer);
        return layer;
    }

    Surface surface{200, 200, 2};
    Compositor compositor;
};

int redOf(std::uint32_t pixel) { return static_cast<int>(pixel >> 16 & 255); }

} // namespace

TEST_F(DrawingTest, PartsAndSublayersLieAboveEachOtherInOrder) {
    auto const box = fill(*root, {10, 10, 40, 40}, red);
    auto const painter = make<Painter>();
    box->setDelegate(painter);
    auto const lower = fill(*box, {0, 0, 40, 20}, blue);
    box->setBorderWidth(5);
    box->setBorderColor(white);
    EXPECT_EQ(at(12, 30), 0xffffffu);
    EXPECT_EQ(at(30, 12), 0xffffffu);
    EXPECT_EQ(at(30, 16), 0x0000ffu);
    EXPECT_EQ(at(20, 33), 0x00ff00u);
    EXPECT_EQ(at(40, 35), 0xff0000u);
    EXPECT_EQ(at(51, 30), 0u) << "without a picture the display is black";
    fill(*box, {0, 0, 40, 20}, green);
    EXPECT_EQ(at(30, 16), 0x00ff00u);
    lower->setZPosition(1);
    EXPECT_EQ(at(30, 16), 0x0000ffu);
}

TEST_F(DrawingTest, OpacityCountsForTheGroupAsAWhole) {
    root->setBackgroundColor(white);
    auto const group = fill(*root, {0, 0, 40, 40}, red);
    fill(*group, {0, 0, 20, 40}, blue);
    group->setOpacity(0.5);
    // The red one below does not shine through the blue one.
    EXPECT_NEAR(redOf(at(10, 10)), 128, 1);
    EXPECT_EQ(at(10, 10) & 255, 255u);
    EXPECT_NEAR(static_cast<int>(at(30, 10) & 255), 127, 1);
    group->setHidden(true);
    EXPECT_EQ(at(10, 10), 0xffffffu);
}

TEST_F(DrawingTest, OnlyAMaskCutsSublayersToTheCorners) {
    auto const box = fill(*root, {0, 0, 60, 60}, red);
    box->setCornerRadius(20);
    fill(*box, {0, 0, 60, 30}, green);
    EXPECT_EQ(at(1, 1), 0x00ff00u) << "without a mask sublayers stay square";
    EXPECT_EQ(at(1, 58), 0u) << "the background is rounded all the same";
    box->setMasksToBounds(true);
    EXPECT_EQ(at(1, 1), 0u);
    EXPECT_EQ(at(30, 10), 0x00ff00u);
    box->setMaskedCorners(CACornerMask::maxXMinY);
    EXPECT_EQ(at(1, 1), 0x00ff00u);
    EXPECT_EQ(at(58, 1), 0u);
    // Somewhere along the corner an antialiased edge is neither full nor empty.
    bool soft = false;
    for (double x = 40; x < 60; x += 0.5) {
        auto const level = at(x, 5) >> 8 & 255;
        soft = soft || (level > 20 && level < 235);
    }
    EXPECT_TRUE(soft);
}

TEST_F(DrawingTest, AMaskCutsContentsAndScrolledSublayersToTheBounds) {
    auto const strip = fill(*root, {10, 10, 30, 30}, white);
    strip->setMasksToBounds(true);
    fill(*strip, {40, 0, 30, 30}, red);
    EXPECT_EQ(at(50, 20), 0u);
    strip->setBounds({30, 0, 30, 30});
    EXPECT_EQ(at(15, 20), 0xffffffu);
    EXPECT_EQ(at(25, 20), 0xff0000u);
    EXPECT_EQ(at(45, 20), 0u);
}

TEST_F(DrawingTest, ShadowFollowsTheCompositedShapeAndGoesWithAMask) {
    root->setBackgroundColor(white);
    auto const box = add({20, 20, 20, 20});
    fill(*box, {20, 0, 20, 20}, red); // outside: the shadow is that of what is seen
    box->setShadowOpacity(1);
    box->setShadowOffset({0, 30});
    box->setShadowRadius(2);
    EXPECT_LT(redOf(at(50, 60)), 20);
    EXPECT_EQ(at(30, 60), 0xffffffu);
    auto const edge = redOf(at(50, 50.2));
    EXPECT_GT(edge, 60);
    EXPECT_LT(edge, 200);
    box->setMasksToBounds(true);
    EXPECT_EQ(at(50, 60), 0xffffffu);
}

TEST_F(DrawingTest, TransformsTurnTheSubtreeAboutTheAnchor) {
    auto const box = fill(*root, {40, 40, 20, 20}, red);
    fill(*box, {0, 0, 10, 20}, green);
    box->setTransform(CGAffineTransform::scale(2, 2));
    EXPECT_EQ(at(35, 50), 0x00ff00u);
    EXPECT_EQ(at(65, 50), 0xff0000u);
    box->setTransform(CGAffineTransform::rotation(std::acos(0.0)));
    EXPECT_EQ(at(50, 42), 0x00ff00u);
    EXPECT_EQ(at(50, 58), 0xff0000u);
    box->setTransform(CGAffineTransform::translation(0, 30));
    EXPECT_EQ(at(45, 85), 0x00ff00u);
    box->setTransform({0, 0, 0, 0, 0, 0});
    EXPECT_EQ(at(50, 50), 0u);
}

TEST_F(DrawingTest, FractionalPlacesAreShownOnWholePixels) {
    auto const box = fill(*root, {10.2, 10, 10, 10}, white);
    EXPECT_EQ(at(10, 12), 0xffffffu);
    EXPECT_EQ(at(20, 12), 0u);
    box->setPosition({15.3, 15});
    EXPECT_EQ(at(10, 12), 0u);
    EXPECT_EQ(at(10.5, 12), 0xffffffu);
    EXPECT_EQ(at(20, 12), 0xffffffu);
}

TEST_F(DrawingTest, GradientFillsItsRoundedShapeAboveTheBackground) {
    auto const gradient = make<CAGradientLayer>();
    gradient->setFrame({0, 0, 100, 100});
    gradient->setBackgroundColor(green);
    root->addSublayer(gradient);
    EXPECT_EQ(at(50, 50), 0x00ff00u) << "without colours only the background";
    gradient->setColors({{black, red}});
    EXPECT_NEAR(redOf(at(50, 25)), 64, 3);
    gradient->setStartPoint({0, 0.5});
    gradient->setEndPoint({1, 0.5});
    EXPECT_NEAR(redOf(at(25, 90)), 64, 3);
    gradient->setCornerRadius(30);
    EXPECT_EQ(at(99, 1), 0u);
}

TEST_F(DrawingTest, BackdropBlursWhatLiesBehindAndFollowsIt) {
    root->setBackgroundColor(white);
    auto const dark = fill(*root, {0, 0, 50, 100}, black);
    auto const effect = add({0, 0, 100, 50});
    effect->setBackdropEffect(CALayer::BackdropEffect{8, 1, test::clear});
    auto const blurred = redOf(at(50, 25));
    EXPECT_GT(blurred, 60);
    EXPECT_LT(blurred, 200);
    EXPECT_EQ(at(52, 75), 0xffffffu) << "outside its frame nothing is blurred";
    EXPECT_GT(redOf(at(85, 25)), 250);
    dark->setFrame({30, 0, 70, 100});
    EXPECT_LT(redOf(at(85, 25)), 5);
    effect->setBackdropEffect(std::nullopt);
    EXPECT_EQ(at(29, 25), 0xffffffu);
}

TEST_F(DrawingTest, ContentsAreDrawnOnceAndKept) {
    auto const box = fill(*root, {10, 10, 20, 20}, red);
    auto const painter = make<Painter>();
    box->setDelegate(painter);
    EXPECT_EQ(at(20, 20), 0x00ff00u);
    box->setPosition({34, 40});
    EXPECT_EQ(at(34, 40), 0x00ff00u);
    EXPECT_EQ(painter->drawings, 1);
    box->setNeedsDisplay();
    at(0, 0);
    EXPECT_EQ(painter->drawings, 2);
    box->setPosition({500, 500});
    box->setNeedsDisplay();
    at(0, 0);
    EXPECT_EQ(painter->drawings, 2) << "what is out of sight is not drawn";
}

TEST_F(DrawingTest, ASubtreeDrawnAloneStandsOnNothing) {
    auto const box = fill(*root, {10, 10, 20, 20}, red);
    fill(*box, {5, 5, 5, 5}, green);
    Surface alone(60, 60, 2);
    Compositor::draw(*box, alone);
    EXPECT_EQ(alone.pixel(2, 2), 0xffff0000u);
    EXPECT_EQ(alone.pixel(12, 12), 0xff00ff00u);
    EXPECT_EQ(alone.pixel(50, 50), 0u);
}

} // namespace trelundo

#include "tests/platform/coreanimation/LayerFixture.h"

#include "trelundo/platform/coreanimation/CAGradientLayer.h"

namespace trelundo {

TEST_F(LayerTest, FrameFollowsBoundsPositionAnchorAndTransform) {
    auto const layer = make<CALayer>();
    layer->setBounds({7, 8, 20, 10});
    layer->setPosition({50, 50});
    EXPECT_EQ(layer->frame(), CGRect(40, 45, 20, 10));
    layer->setAnchorPoint({0, 0});
    EXPECT_EQ(layer->frame(), CGRect(50, 50, 20, 10));
    layer->setTransform(CGAffineTransform::scale(2, 3));
    EXPECT_EQ(layer->frame(), CGRect(50, 50, 40, 30));
    layer->setFrame({0, 0, 10, 60});
    EXPECT_EQ(layer->bounds(), CGRect(7, 8, 5, 20));
    EXPECT_EQ(layer->frame(), CGRect(0, 0, 10, 60));
}

TEST_F(LayerTest, ALayerCannotBePutIntoItself) {
    test::RecordedWarnings const warnings;
    auto const layer = add({0, 0, 1, 1});
    layer->addSublayer(root);
    layer->addSublayer(layer);
    EXPECT_EQ(warnings.lines.size(), 2u);
    EXPECT_TRUE(layer->sublayers().empty());
    EXPECT_EQ(root->sublayers().size(), 1u);
}

TEST_F(LayerTest, GradientKeepsWhatWasSetAndOrdersOnlyTheDrawnStops) {
    auto const gradient = make<CAGradientLayer>();
    EXPECT_TRUE(gradient->stops().empty());
    EXPECT_FALSE(gradient->hasContents());
    CGColor const red{1, 0, 0, 1};
    gradient->setColors({{red, red, red, red}});
    auto const version = gradient->contentVersion();
    gradient->setLocations({{-1.0, 0.6, 0.3, 9.0}});
    EXPECT_GT(gradient->contentVersion(), version);
    EXPECT_EQ(*gradient->locations(), (std::vector{-1.0, 0.6, 0.3, 9.0}));
    auto const places = [&] {
        std::vector<double> all;
        for (auto const& stop : gradient->stops()) all.push_back(stop.location);
        return all;
    };
    EXPECT_EQ(places(), (std::vector{0.0, 0.6, 0.6, 1.0}));
    gradient->setLocations(std::nullopt);
    EXPECT_EQ(places(), (std::vector{0.0, 1.0 / 3, 2.0 / 3, 1.0}));
    // Fewer locations than colours: the rest stands at even places, but never before its predecessor.
    gradient->setLocations({{0.9}});
    EXPECT_EQ(places(), (std::vector{0.9, 0.9, 0.9, 1.0}));
}

} // namespace trelundo

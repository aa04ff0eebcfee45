#include "trelundo/platform/uikit/views/UIColor.h"

#include <gtest/gtest.h>

namespace trelundo {

namespace {

UITraitCollection traits(UIUserInterfaceStyle style) {
    UITraitCollection traits;
    traits.userInterfaceStyle = style;
    return traits;
}

auto const light = traits(UIUserInterfaceStyle::light);
auto const dark = traits(UIUserInterfaceStyle::dark);

} // namespace

TEST(ColorTest, DynamicColoursFollowTheAppearanceWithAnyAlpha) {
    EXPECT_EQ(UIColor::label().cgColor(light), (CGColor{0, 0, 0, 1}));
    EXPECT_EQ(UIColor::label().cgColor(dark), (CGColor{1, 1, 1, 1}));
    EXPECT_EQ(UIColor::systemBlue().cgColor(light), (CGColor{0, 122 / 255.0, 1, 1}));
    EXPECT_EQ(UIColor::systemBlue().cgColor(dark), (CGColor{10 / 255.0, 132 / 255.0, 1, 1}));
    EXPECT_EQ(UIColor::systemBackground().cgColor(traits(UIUserInterfaceStyle::unspecified)),
              (CGColor{1, 1, 1, 1}));
    auto const answersDynamic = UIColor::dynamic([](auto const&) { return UIColor::label(); });
    EXPECT_EQ(answersDynamic.cgColor(dark), (CGColor{1, 1, 1, 1}));
    EXPECT_FALSE(answersDynamic.resolved(dark).isDynamic());
    auto const faint = UIColor::label().withAlphaComponent(0.3);
    EXPECT_EQ(faint.cgColor(light), (CGColor{0, 0, 0, 0.3}));
    EXPECT_EQ(faint.cgColor(dark), (CGColor{1, 1, 1, 0.3}));
    EXPECT_EQ(faint.withAlphaComponent(0).cgColor(dark).alpha, 0);
    EXPECT_EQ(UIColor::white().withAlphaComponent(0.5), UIColor(1, 1, 1, 0.5));
}

TEST(ColorTest, HexadecimalTextIsReadStrictly) {
    EXPECT_EQ(UIColor::fromHex("#1e90ff80"), UIColor(30 / 255.0, 144 / 255.0, 1, 128 / 255.0));
    EXPECT_EQ(UIColor::fromHex("#FF716A"), UIColor(1, 113 / 255.0, 106 / 255.0, 1));
    for (auto const* text :
         {"", "#", "1e90ff", "#1e90f", "#1e90fg", "#1e90ff8", "#-e90ff", "#+12345", "# 12345"})
        EXPECT_FALSE(UIColor::fromHex(text)) << text;
}

} // namespace trelundo

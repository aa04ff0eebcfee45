#include "trelundo/platform/uikit/text/UIFontDescriptor.h"

#include <gtest/gtest.h>

#include <limits>

namespace trelundo {

TEST(FontTest, AnyWeightPicksTheNearestNamedOne) {
    EXPECT_EQ(UIFont::Weight{0.25}.hundreds(), 500);
    EXPECT_EQ(UIFont::Weight{-7}.hundreds(), 100);
    EXPECT_EQ(UIFont::Weight{7}.hundreds(), 900);
}

TEST(FontTest, ImpossibleSizesGiveATinyFont) {
    EXPECT_EQ(UIFont::system(0).pointSize(), 1);
    EXPECT_EQ(UIFont::system(-3).pointSize(), 1);
    EXPECT_EQ(UIFont::system(std::numeric_limits<double>::quiet_NaN()).pointSize(), 1);
}

TEST(FontTest, AHeavyFaceMadeBoldAndItalicStaysHeavy) {
    using Traits = UIFontDescriptorSymbolicTraits;
    auto const heavy = UIFont::system(35, UIFont::Weight::heavy).fontDescriptor();
    auto const descriptor = heavy.withSymbolicTraits(Traits::bold | Traits::italic);
    ASSERT_TRUE(descriptor);
    auto const font = UIFont::withDescriptor(*descriptor, 0);
    EXPECT_EQ(font.spec(), (FontSpec{35, 800, true}));
    EXPECT_EQ(UIFont::withDescriptor(*descriptor, 12).pointSize(), 12);
    EXPECT_TRUE(contains(descriptor->symbolicTraits(), Traits::bold));
    EXPECT_TRUE(contains(descriptor->symbolicTraits(), Traits::italic));
}

TEST(FontTest, TraitsAreReplacedNotAdded) {
    using Traits = UIFontDescriptorSymbolicTraits;
    auto const heavy = UIFont::system(12, UIFont::Weight::heavy).fontDescriptor();
    EXPECT_EQ(heavy.withSymbolicTraits(Traits::italic)->weight(), UIFont::Weight::regular);
    auto const light = UIFont::system(12, UIFont::Weight::light).fontDescriptor();
    EXPECT_EQ(light.withSymbolicTraits(Traits::none)->weight(), UIFont::Weight::light);
    EXPECT_EQ(light.withSymbolicTraits(Traits::bold)->weight(), UIFont::Weight::bold);
    EXPECT_FALSE(light.withSymbolicTraits(Traits::condensed));
    EXPECT_FALSE(light.withSymbolicTraits(Traits::bold | Traits::monoSpace));
}

} // namespace trelundo

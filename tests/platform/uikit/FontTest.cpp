#include "trelundo/platform/uikit/text/UIFontDescriptor.h"

#include <gtest/gtest.h>

#include <limits>

namespace trelundo {

TEST(FontTest, AnyWeightAndSizeGivesAFont) {
    EXPECT_EQ(UIFont::Weight{0.25}.hundreds(), 500);
    EXPECT_EQ(UIFont::Weight{-7}.hundreds(), 100);
    EXPECT_EQ(UIFont::Weight{7}.hundreds(), 900);
    for (auto const size : {0.0, -3.0, std::numeric_limits<double>::quiet_NaN()})
        EXPECT_EQ(UIFont::system(size).pointSize(), 1) << size;
}

TEST(FontTest, TraitsAreReplacedNotAdded) {
    using Traits = UIFontDescriptorSymbolicTraits;
    auto const heavy = UIFont::system(35, UIFont::Weight::heavy).fontDescriptor();
    auto const both = *heavy.withSymbolicTraits(Traits::bold | Traits::italic);
    EXPECT_EQ(UIFont::withDescriptor(both, 0).spec(), (FontSpec{35, 800, true})) << "heavy is bold enough";
    EXPECT_EQ(UIFont::withDescriptor(both, 12).pointSize(), 12);
    EXPECT_TRUE(contains(both.symbolicTraits(), Traits::bold | Traits::italic));
    EXPECT_EQ(heavy.withSymbolicTraits(Traits::italic)->weight(), UIFont::Weight::regular);
    auto const light = UIFont::system(12, UIFont::Weight::light).fontDescriptor();
    EXPECT_EQ(light.withSymbolicTraits(Traits::none)->weight(), UIFont::Weight::light);
    EXPECT_EQ(light.withSymbolicTraits(Traits::bold)->weight(), UIFont::Weight::bold);
    EXPECT_FALSE(light.withSymbolicTraits(Traits::condensed));
    EXPECT_FALSE(light.withSymbolicTraits(Traits::bold | Traits::monoSpace));
}

} // namespace trelundo

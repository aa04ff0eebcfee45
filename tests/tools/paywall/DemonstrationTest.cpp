#include "tools/paywall/demo/Demonstration.h"

#include "tests/support/ScopedState.h"
#include "trelundo/kit/common/Texts.h"

#include <algorithm>
#include <gtest/gtest.h>
#include <string>

namespace trelundo::paywall::test {
namespace {

using trelundo::test::ScopedLanguages;

/// The captions and pictures come as "caption:picture;caption:picture", so that a caption may hold neither
/// sign.
TEST(DemonstrationTest, HasSixCaptionsInEveryLanguageOfTheKit) {
    addHostPictures({});
    for (auto const& language : Texts::kitBundle().localizations()) {
        ScopedLanguages const languages{{language}};
        auto const features = demonstrationFeatures();
        EXPECT_EQ(std::ranges::count(features, ';'), 5) << features;
        EXPECT_EQ(std::ranges::count(features, ':'), 6) << features;
        bool const isEnglish = language.starts_with("en");
        EXPECT_EQ(features.find("All Templates:") != std::string::npos, isEnglish) << language;
        EXPECT_EQ(features.find("Family Sharing:") != std::string::npos, isEnglish) << language;
    }
}

} // namespace
} // namespace trelundo::paywall::test

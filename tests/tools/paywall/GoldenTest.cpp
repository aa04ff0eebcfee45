#include "tests/tools/paywall/KeptFile.h"
#include "tests/tools/paywall/LayoutLines.h"
#include "tests/tools/paywall/Program.h"

#include <algorithm>
#include <gtest/gtest.h>

namespace trelundo::paywall::test {
namespace {

/// One view of one screen, kept as a layout, and as a picture where it stands for a look.
struct Golden {
    std::string name;
    std::string screen;
    std::string options;
    bool hasPicture = false;
};

// NOLINTNEXTLINE(readability-identifier-naming): the test library looks for this name.
void PrintTo(Golden const& golden, std::ostream* out) { *out << golden.name; }

std::string const small = "--device phone-320x568 ";
std::string const tablet = "--device tablet-820x1180 ";
std::string const halved = "--discount app.premium.yearly=yearly_half_price ";

std::vector<Golden> const goldens{
    {"first-phone", "PremiumViewController", ""},
    {"first-small-phone-de", "PremiumViewController", small + "--language de", true},
    {"first-small-phone-ar", "PremiumViewController", small + "--language ar", true},
    {"first-tablet-landscape-ar", "PremiumViewController", tablet + "--landscape --language ar"},
    {"first-phone-landscape-ja", "PremiumViewController", "--landscape --language ja"},
    {"cover-phone", "PremiumV2ViewController", ""},
    {"cover-small-phone-ar-totals", "PremiumV2ViewController", small + "--language ar --ab-test V2_B1"},
    {"saves-small-phone-de", "PremiumV3ViewController",
     small + "--language de --set savedOnce=true --ab-test V2_A2"},
    {"saves-phone-landscape", "PremiumV3ViewController", "--landscape --ab-test V2_B3"},
    {"upgrade-tablet-ja", "PremiumV4ViewController", tablet + "--language ja --select 2 --ab-test V2_A4"},
    {"checklist-phone-family", "PremiumV5ViewController", "--source FamilySharing --select 1"},
    {"trial-phone", "PremiumV6ViewController", "--select 2"},
    {"trial-tablet-ar", "PremiumV6ViewController", tablet + "--language ar --select 2"},
    {"offer-sheet-phone", "OfferViewController", halved, true},
    {"offer-sheet-small-phone-ar", "OfferViewController", halved + small + "--language ar"},
    {"percentage-badge-phone", "OfferV2ViewController", halved},
    {"percentage-badge-small-phone-de", "OfferV2ViewController", halved + small + "--language de"},
    {"percentage-tablet", "OfferV4ViewController", halved + tablet},
    {"sentence-phone-ar", "OfferV3ViewController", halved + "--language ar"},
    {"sentence-tablet-landscape-ja", "OfferV3ViewController", halved + tablet + "--landscape --language ja"},
    {"notice-small-phone-de", "BillingViewController", small + "--language de", true},
    {"notice-phone-landscape", "BillingViewController", "--landscape"},
    {"notice-tablet-ar", "BillingViewController", "--device tablet-1024x1366 --language ar"},
};

class GoldenTest : public testing::TestWithParam<Golden> {
protected:
    static std::string command(std::string const& name) {
        return name + " " + GetParam().screen + " " + GetParam().options;
    }
    std::filesystem::path kept(std::string const& ending) const {
        return sourceFolder() / "tests/goldens" / (GetParam().name + ending);
    }
};

TEST_P(GoldenTest, LayoutIsAsKept) {
    auto const result = runPaywall(command("describe"));
    ASSERT_EQ(result.status, 0) << result.output;
    EXPECT_TRUE(isKept(kept(".txt"), layoutLines(Json::parse(result.output))));
}

TEST_P(GoldenTest, PictureIsAsKept) {
    if (!GetParam().hasPicture) return;
    TemporaryFolder const folder;
    auto const result = runPaywall(command("render") + " --out " + quoted(folder / "picture.png"));
    ASSERT_EQ(result.status, 0) << result.output;
    EXPECT_TRUE(isKept(kept(".png"), readText(folder / "picture.png")));
}

INSTANTIATE_TEST_SUITE_P(Screens, GoldenTest, testing::ValuesIn(goldens), [](auto const& information) {
    auto name = information.param.name;
    std::ranges::replace(name, '-', '_');
    return name;
});

} // namespace
} // namespace trelundo::paywall::test

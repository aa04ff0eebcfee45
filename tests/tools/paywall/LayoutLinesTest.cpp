#include "tests/tools/paywall/LayoutLines.h"

#include "tests/tools/paywall/Program.h"

#include <gtest/gtest.h>

namespace trelundo::paywall::test {
namespace {

Json otherThan(Json const& fact) {
    if (fact.is_string()) return fact.get<std::string>() + "0";
    if (fact.is_boolean()) return !fact.get<bool>();
    return fact.get<double>() + 1;
}

/// What the goldens compare may leave out nothing that the tool tells.
TEST(LayoutLinesTest, EachFactShows) {
    auto const description =
        Json::parse(runPaywall("describe PremiumV5ViewController --source FamilySharing").output);
    auto const lines = layoutLines(description);
    auto const facts = description.flatten();
    for (auto const& [place, fact] : facts.items()) {
        if (fact.is_null()) continue; // an empty list
        auto changed = description;
        changed[Json::json_pointer{place}] = otherThan(fact);
        EXPECT_NE(layoutLines(changed), lines) << place;
    }
}

TEST(LayoutLinesTest, AMissingFactIsNoDefault) {
    auto const view = Json::parse(R"({"class": "UIView", "name": "", "frame": [0, 0, 1.5, 1], "hidden": false,
        "alpha": 1.0, "clipsToBounds": false, "effect": {"style": "dark"}, "subviews": []})");
    EXPECT_EQ(layoutLines(view), "UIView (0, 0, 1.5, 1) effect={style=dark}\n");
    auto without = view;
    without.erase("alpha");
    EXPECT_EQ(layoutLines(without), "UIView (0, 0, 1.5, 1) effect={style=dark} -alpha\n");
}

} // namespace
} // namespace trelundo::paywall::test

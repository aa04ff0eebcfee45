#include "tests/tools/paywall/Program.h"
#include "tools/paywall/output/Json.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <regex>
#include <set>

namespace trelundo::paywall::test {
namespace {

namespace fs = std::filesystem;
using namespace std::string_literals;
using testing::HasSubstr;

using Files = std::set<std::string>;

/// The page after everything has loaded and run, in Chromium without a display and without a network.
std::string domOf(std::string const& address) {
    TemporaryFolder const profile;
    return runShell(
               "HOME=" + quoted(profile / "home") +
               " timeout 120 chromium --headless --no-sandbox --disable-gpu --disable-quic --no-first-run "
               "--disable-background-networking --disable-component-update --disable-sync "
               "--disable-dev-shm-usage --window-size=1600,1000 --virtual-time-budget=10000 "
               "--user-data-dir=" +
               quoted(profile / "profile") + " --dump-dom " + quoted(address) + " 2>/dev/null </dev/null")
        .output;
}

/// A small gallery whose prices are too long for some of its texts, opened in a real browser.
class GalleryPageTest : public testing::Test {
protected:
    static void SetUpTestSuite() {
        if (runShell("command -v chromium").status != 0) return;
        folder = std::make_unique<TemporaryFolder>();
        auto catalogue = readText(sourceFolder() / "tools/paywall/demo/resources/Demonstration.storekit");
        for (std::string const price : {"29.99", "14.99"})
            catalogue.replace(catalogue.find(price), price.size(), "123456789.99");
        drawn =
            runPaywall("gallery --screens PremiumV2ViewController,OfferViewController,BillingViewController "
                       "--devices phone-320x568,phone-390x844 --languages en,ar,ja --catalogue " +
                       quoted(writeText(*folder / "Long.storekit", catalogue)) + " --out " + quoted(path()));
    }
    static void TearDownTestSuite() { folder = nullptr; }

    void SetUp() override {
        if (!folder) GTEST_SKIP() << "chromium is not installed (scripts/dependencies test)";
        ASSERT_EQ(drawn.status, 0) << drawn.output;
    }

    static fs::path path() { return *folder / "gallery with ünusual #name"; }
    static std::string dom(std::string const& hash, std::string const& page = "index.html") {
        std::string address = "file://";
        for (char const c : (path() / page).string())
            address += c == '#' ? "%23" : c == ' ' ? "%20" : std::string{c};
        return domOf(address + "#" + hash);
    }
    /// What the page tells after the steps of a script.
    static std::string outcome(std::string const& steps);

    /// The pictures on the page that are in `state`.
    static Files shown(std::string const& html, std::string const& state = "loaded") {
        static std::regex const figure{R"re(<figure data-file="([^"]*)" data-state="([a-z]*)")re"};
        Files files;
        for (std::sregex_iterator match{html.begin(), html.end(), figure}, end; match != end; ++match)
            if ((*match)[2] == state) files.insert((*match)[1]);
        return files;
    }
    /// What the manifest tells of the flags.
    static Files flagged(bool isCutOnly) {
        auto const manifest = Json::parse(readText(path() / "gallery.json"));
        Files files;
        for (auto const& [file, entry] : manifest.at("pictures").items())
            for (auto const& flag : entry.at("flags"))
                if (!isCutOnly || flag.contains("truncated") || flag.contains("offScreen"))
                    files.insert(file);
        return files;
    }

    static std::unique_ptr<TemporaryFolder> folder;
    static Ended drawn;
};
std::unique_ptr<TemporaryFolder> GalleryPageTest::folder;
Ended GalleryPageTest::drawn;

TEST_F(GalleryPageTest, ShowsWhatTheAddressPicks) {
    auto const opened = dom("");
    EXPECT_EQ(shown(opened), (Files{"PremiumV2ViewController/phone-390x844.en.light.png",
                                    "OfferViewController/phone-390x844.en.light.png",
                                    "BillingViewController/phone-390x844.en.light.png"}))
        << "every screen on one device";
    EXPECT_THAT(opened, HasSubstr("3 of 18 pictures"));
    EXPECT_EQ(
        shown(dom("screen=OfferViewController,PremiumV2ViewController&device=phone-320x568&language=ar,ja")),
        (Files{"PremiumV2ViewController/phone-320x568.ar.light.png",
               "PremiumV2ViewController/phone-320x568.ja.light.png",
               "OfferViewController/phone-320x568.ar.light.png",
               "OfferViewController/phone-320x568.ja.light.png"}));
    EXPECT_THAT(dom("screen=-"), HasSubstr("Nothing is picked."));
    EXPECT_EQ(shown(dom("screen=%E0%A4%A&language=nonsense&view=../../x&=&==")), Files{});
}

TEST_F(GalleryPageTest, FlagsTextsThatDoNotFitAndFramesThemInTheEnlargedPicture) {
    auto const all = flagged(false);
    ASSERT_FALSE(all.empty());
    ASSERT_LT(all.size(), 18U);
    auto const html = dom("device=*&language=*&flagged=1");
    EXPECT_EQ(shown(html), all);
    EXPECT_THAT(html, HasSubstr("<span class=\"view\""));
    EXPECT_EQ(shown(dom("device=*&language=*&flagged=cut")), flagged(true));
    auto const& file = *all.begin();
    auto const enlarged = dom("view=" + file);
    for (auto const& part :
         {R"(<dialog id="viewer" aria-label="One picture" open)"s, R"(<div id="frames"><span)"s,
          R"(src="pictures/)" + file, "paywall render " + file.substr(0, file.find('/'))})
        EXPECT_THAT(enlarged, HasSubstr(part));
}

TEST_F(GalleryPageTest, TellsWhenAPictureIsMissing) {
    std::string const file = "BillingViewController/phone-320x568.en.light.png";
    for (auto const* kind : {"pictures", "previews"}) fs::rename(path() / kind / file, *folder / kind);
    auto const html = dom("screen=BillingViewController&device=phone-320x568");
    for (auto const* kind : {"pictures", "previews"}) fs::rename(*folder / kind, path() / kind / file);
    EXPECT_EQ(shown(html, "missing"), Files{file});
    EXPECT_THAT(html, HasSubstr("is missing. Run paywall gallery again."));
}

std::string GalleryPageTest::outcome(std::string const& steps) {
    auto const folder = sourceFolder() / "tests/tools/paywall/page";
    auto driver = readText(folder / "driver.js");
    std::string const place = "/* steps */";
    driver.replace(driver.find(place), place.size(), readText(folder / steps));
    auto html = readText(path() / "index.html");
    html.insert(html.rfind("</body>"), "<script>" + driver + "</script>");
    writeText(path() / "driven.html", html);
    auto const result = dom("", "driven.html");
    static std::regex const expression{"data-outcome=\"([^\"]*)\""};
    std::smatch match;
    return std::regex_search(result, match, expression) ? match[1].str() : "no outcome";
}

TEST_F(GalleryPageTest, FollowsMouseAndKeyboard) {
    EXPECT_EQ(outcome("mouse-and-keyboard.js"), "all 14 hold");
}

TEST_F(GalleryPageTest, EveryControlHasALabelAndEnoughContrast) {
    EXPECT_EQ(outcome("labels-and-contrast.js"), "all 1 hold");
}

} // namespace
} // namespace trelundo::paywall::test

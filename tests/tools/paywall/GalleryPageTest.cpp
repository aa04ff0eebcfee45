#include "tests/tools/paywall/Browser.h"
#include "tools/paywall/output/Json.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <regex>
#include <set>

namespace trelundo::paywall::test {
namespace {

namespace fs = std::filesystem;
using testing::HasSubstr;
using testing::Not;

using Files = std::set<std::string>;

/// A small gallery whose prices are too long for some of its texts, opened in a real browser.
class GalleryPageTest : public testing::Test {
protected:
    static void SetUpTestSuite() {
        if (!Browser::isAvailable()) return;
        folder = std::make_unique<TemporaryFolder>();
        auto catalogue = readText(sourceFolder() / "tools/paywall/demo/resources/Demonstration.storekit");
        for (std::string const price : {"29.99", "14.99"})
            catalogue.replace(catalogue.find(price), price.size(), "123456789.99");
        drawn = runPaywall({"gallery", "--out", path(), "--screens",
                            "PremiumV2ViewController,OfferViewController,BillingViewController", "--devices",
                            "phone-320x568,phone-390x844", "--languages", "en,ar,ja", "--catalogue",
                            writeText(*folder / "Long.storekit", catalogue)});
    }
    static void TearDownTestSuite() { folder = nullptr; }

    void SetUp() override {
        if (!folder) GTEST_SKIP() << "chromium is not installed (scripts/dependencies test)";
        ASSERT_EQ(drawn.status, 0) << drawn.output;
    }

    static fs::path path() { return *folder / "gallery with ünusual #name"; }
    static fs::path page() { return path() / "index.html"; }

    static std::string addressOf(fs::path const& file) {
        std::string address;
        for (char const c : file.string()) address += c == '#' ? "%23" : c == ' ' ? "%20" : std::string{c};
        return address;
    }
    static std::string dom(std::string const& hash) { return Browser::dom(addressOf(page()), hash); }

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

TEST_F(GalleryPageTest, FlagsTextsThatDoNotFit) {
    auto const all = flagged(false);
    ASSERT_FALSE(all.empty());
    ASSERT_LT(all.size(), 18U);
    auto const html = dom("device=*&language=*&flagged=1");
    EXPECT_EQ(shown(html), all);
    EXPECT_THAT(html, HasSubstr("class=\"flag"));
    EXPECT_THAT(html, HasSubstr("<span class=\"view\""));
    EXPECT_EQ(shown(dom("device=*&language=*&flagged=cut")), flagged(true));
}

TEST_F(GalleryPageTest, EnlargesAPictureWithItsFlaggedTextsFramed) {
    auto const file = *flagged(false).begin();
    auto const html = dom("view=" + file);
    EXPECT_THAT(html, HasSubstr("<dialog id=\"viewer\" aria-label=\"One picture\" open"));
    EXPECT_THAT(html, HasSubstr("src=\"pictures/" + file + "\""));
    EXPECT_THAT(html, testing::ContainsRegex("<div id=\"frames\"><span"));
    EXPECT_THAT(html, HasSubstr("paywall render " + file.substr(0, file.find('/'))));
}

TEST_F(GalleryPageTest, TellsWhenAPictureIsMissing) {
    std::string const file = "BillingViewController/phone-320x568.en.light.png";
    for (auto const* kind : {"pictures", "previews"}) fs::rename(path() / kind / file, *folder / kind);
    auto const html = dom("screen=BillingViewController&device=phone-320x568");
    for (auto const* kind : {"pictures", "previews"}) fs::rename(*folder / kind, path() / kind / file);
    EXPECT_EQ(shown(html, "missing"), Files{file});
    EXPECT_THAT(html, HasSubstr("is missing. Run paywall gallery again."));
}

/// A script that follows the page's own, with `expect(what, whether)`.
constexpr auto scriptHead = R"(<script>
const failures = [];
let expectations = 0;
const expect = (what, is) => { ++expectations; if (!is) failures.push(what); };
const press = (key) => (document.activeElement || document.body)
    .dispatchEvent(new KeyboardEvent('keydown', { key, bubbles: true, cancelable: true }));
const figures = () => [...document.querySelectorAll('figure')];
const viewer = document.getElementById('viewer');
const input = (name, value) => document.querySelector(`input[name="${name}"][value="${value}"]`);
const soon = () => new Promise((done) => setTimeout(done, 50));
(async () => { try {
)";
constexpr auto scriptTail = R"(
} catch (error) { failures.push(String(error)); }
document.body.dataset.outcome = failures.length ? failures.join('; ') : `all ${expectations} hold`;
})();</script></body>)";

std::string outcome(fs::path const& page, std::string const& address, std::string const& steps) {
    auto html = readText(page);
    html.replace(html.rfind("</body>"), 7, scriptHead + steps + scriptTail);
    writeText(page.parent_path() / "driven.html", html);
    auto const result = Browser::dom(address, "");
    static std::regex const expression{"data-outcome=\"([^\"]*)\""};
    std::smatch match;
    return std::regex_search(result, match, expression) ? match[1].str() : "no outcome";
}

TEST_F(GalleryPageTest, FollowsMouseAndKeyboard) {
    auto const address = addressOf(path() / "driven.html");
    EXPECT_EQ(outcome(page(), address, R"(
        input('language', 'ar').click();
        expect('a box adds to the picked', figures().length === 6 && location.hash.includes('language=en,ar'));
        document.querySelector('[aria-label="Only Billing"]').click();
        expect('only leaves one', figures().length === 2 && location.hash.includes('screen=BillingViewController'));
        document.querySelector('[aria-label="All: Screen"]').click();
        expect('all brings all back', figures().length === 6);
        input('language', 'ar').click();
        expect('a box takes away', figures().length === 3);

        figures()[0].querySelector('button').focus();
        press('ArrowRight');
        expect('right goes on', figures()[1].contains(document.activeElement));
        press('End');
        expect('End goes to the last', figures()[2].contains(document.activeElement));
        document.activeElement.click();
        expect('a click enlarges', viewer.open && location.hash.includes('view=BillingViewController'));
        press('ArrowLeft');
        expect('left shows the one before', location.hash.includes('view=OfferViewController%2Fphone-390x844.en'));
        press('ArrowDown');
        expect('down shows the next language', location.hash.includes('view=OfferViewController%2Fphone-390x844.ar'));
        press('ArrowUp');
        document.getElementById('close').click();
        await soon();
        expect('it closes', !viewer.open && !location.hash.includes('view='));
        expect('the focus comes back to the picture', figures()[1].contains(document.activeElement));

        const before = figures()[0].getBoundingClientRect().height;
        const size = document.getElementById('size');
        size.value = 300;
        size.dispatchEvent(new Event('input'));
        expect('the size follows', figures()[0].getBoundingClientRect().height < before - 50);
        document.getElementById('fit').click();
        expect('it fits again', Math.abs(figures()[0].getBoundingClientRect().height - before) < 1);
        const grid = document.getElementById('grid');
        expect('nothing to scroll', grid.scrollHeight <= grid.clientHeight && grid.scrollWidth <= grid.clientWidth);
    )"),
              "all 14 hold");
}

TEST_F(GalleryPageTest, EveryControlHasALabelAndEnoughContrast) {
    auto const address = addressOf(path() / "driven.html");
    EXPECT_EQ(outcome(page(), address, R"(
        const named = (each) => each.getAttribute('aria-label') || each.textContent.trim() || each.closest('label')
            || each.querySelector('img[alt]');
        for (const each of document.querySelectorAll('button, input'))
            if (!named(each)) failures.push(`unnamed ${each.outerHTML}`);
        const channel = (value) => (value / 255 <= 0.04045 ? value / 255 / 12.92 : ((value / 255 + 0.055) / 1.055) ** 2.4);
        const light = (color) => { const [r, g, b] = color.match(/[\d.]+/g).map(Number).map(channel);
            return 0.2126 * r + 0.7152 * g + 0.0722 * b; };
        const ground = (each) => { const color = getComputedStyle(each).backgroundColor;
            return color === 'rgba(0, 0, 0, 0)' && each.parentElement ? ground(each.parentElement) : color; };
        document.querySelector('[aria-label="All: Language"]').click();
        let checked = 0;
        for (const each of document.querySelectorAll('legend, fieldset span, fieldset b, #status, figcaption *, .size')) {
            if (!each.textContent.trim() || each.offsetParent === null) continue;
            const [a, b] = [light(getComputedStyle(each).color), light(ground(each))];
            ++checked;
            if ((Math.max(a, b) + 0.05) / (Math.min(a, b) + 0.05) < 4.5) failures.push(`pale ${each.outerHTML}`);
        }
        expect('texts were checked', checked > 30);
    )"),
              "all 1 hold");
}

} // namespace
} // namespace trelundo::paywall::test

#include "tests/tools/paywall/Program.h"
#include "tools/paywall/gallery/GalleryDrawing.h"

#include <algorithm>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace trelundo::paywall::test {
namespace {

namespace fs = std::filesystem;
using testing::HasSubstr;

class GalleryTest : public testing::Test {
protected:
    Ended draw(std::string const& options) {
        return runPaywall("gallery --out " + quoted(path) + " " + options);
    }
    /// Draws and looks at the last line but one.
    void expectOutcome(std::string const& options, std::string const& outcome) {
        auto const result = draw(options);
        EXPECT_EQ(result.status, 0);
        EXPECT_THAT(result.output, HasSubstr(outcome));
    }
    void expectFailure(std::string const& options, int status, std::string const& part) {
        auto const result = draw(options);
        EXPECT_EQ(result.status, status);
        EXPECT_THAT(result.output, HasSubstr(part));
        EXPECT_EQ(std::ranges::count(result.output, '\n'), 1) << result.output;
    }
    /// The picture is what `render` draws with the same options.
    void expectRendered(std::string const& file, std::string const& options) {
        auto const reference = folder / "reference.png";
        auto const screen = file.substr(0, file.find('/'));
        auto const result = runPaywall("render " + screen + " --out " + quoted(reference) +
                                       " --device phone-320x568 " + options);
        ASSERT_EQ(result.status, 0) << result.output;
        EXPECT_TRUE(readText(path / "pictures" / file) == readText(reference)) << file;
        EXPECT_GT(readText(path / "previews" / file).size(), 1000U) << file;
    }
    std::vector<std::string> drawnFiles() const {
        std::vector<std::string> files;
        for (auto const& entry : fs::recursive_directory_iterator{path / "pictures"})
            if (entry.is_regular_file()) files.push_back(fs::relative(entry, path / "pictures"));
        std::ranges::sort(files);
        return files;
    }

    TemporaryFolder folder;
    fs::path path = folder / "gallery";
    std::string const small = "--screens OfferV4ViewController,BillingViewController "
                              "--devices phone-320x568 --languages en,ar ";
};

TEST_F(GalleryTest, DrawsEveryCombinationAsRenderDoes) {
    expectOutcome("--screens PremiumViewController,PremiumV6ViewController,OfferV4ViewController "
                  "--devices phone-320x568 --languages en,ar --appearances light,dark",
                  "20 pictures: 20 drawn, 0 kept, 0 removed");
    expectRendered("PremiumViewController/phone-320x568.ar.light.ziokrefa.png",
                   "--language ar --ab-test ziokrefa");
    expectRendered("PremiumV6ViewController/phone-320x568.en.dark.png", "--select 2 --appearance dark");
    expectRendered("OfferV4ViewController/phone-320x568.ar.light.png",
                   "--language ar --discount app.premium.yearly=yearly_half_price");
    draw("--screens BillingViewController --devices phone-320x568 --languages he --landscape");
    expectRendered("BillingViewController/phone-320x568-landscape.he.light.png", "--language he --landscape");
}

TEST_F(GalleryTest, DrawsAgainOnlyWhatChanged) {
    expectOutcome(small, "4 pictures: 4 drawn, 0 kept, 0 removed");
    auto const all = drawnFiles();
    expectOutcome(small, "4 pictures: 0 drawn, 4 kept, 0 removed");

    fs::remove(path / "previews" / all[0]);
    writeText(path / "pictures" / all[1], "cut off");
    expectOutcome(small, "4 pictures: 2 drawn, 2 kept, 0 removed");
    EXPECT_GT(fs::file_size(path / "pictures" / all[1]), 1000U);

    fs::create_directory(folder / "host");
    fs::copy_file(sourceFolder() / "tools/paywall/demo/resources/cover.svg",
                  folder / "host/q_premium_light.svg");
    auto const withHost = small + "--pictures " + quoted(folder / "host");
    expectOutcome(withHost, "4 drawn, 0 kept");
    expectOutcome(withHost, "0 drawn, 4 kept");
    fs::copy_file(sourceFolder() / "tools/paywall/demo/resources/logo.svg",
                  folder / "host/q_premium_light.svg", fs::copy_options::overwrite_existing);
    expectOutcome(withHost, "4 drawn, 0 kept");
}

TEST_F(GalleryTest, RemovesOnlyWhatItWrote) {
    draw(small);
    writeText(path / "notes.txt", "mine");
    writeText(path / "pictures/BillingViewController/mine.png", "mine");
    expectOutcome("--screens OfferV4ViewController --devices phone-320x568 --languages ar",
                  "1 pictures: 0 drawn, 1 kept, 3 removed");
    EXPECT_EQ(drawnFiles(), (std::vector<std::string>{"BillingViewController/mine.png",
                                                      "OfferV4ViewController/phone-320x568.ar.light.png"}));
    EXPECT_FALSE(fs::exists(path / "previews/BillingViewController")) << "nothing is left in it";
    EXPECT_EQ(readText(path / "notes.txt"), "mine");
}

TEST_F(GalleryTest, LeavesForeignFilesInPeace) {
    fs::create_directories(path / "pictures/BillingViewController");
    auto const page = writeText(path / "index.html", "mine");
    expectFailure(small, 1, page.string());
    EXPECT_EQ(readText(page), "mine");
    fs::remove(page);
    auto const picture =
        writeText(path / "pictures/BillingViewController/phone-320x568.ar.light.png", "mine");
    expectFailure(small, 1, picture.string());
    EXPECT_EQ(readText(picture), "mine");
}

TEST_F(GalleryTest, BelievesNoManifestThatPointsElsewhere) {
    fs::create_directory(path);
    auto const victim = writeText(folder / "victim.png", "mine");
    auto const manifest = path / "gallery.json";
    for (auto const* name : {"../../victim.png", "/victim.png", "a/../../../victim.png", "victim.txt"}) {
        writeText(manifest, std::string{R"({"format":1,"pictures":{")"} + name +
                                R"(":{"key":"","pictureBytes":0,"previewBytes":0,"flags":[]}}})");
        expectFailure(small, 1, "gallery.json");
    }
    writeText(manifest, "{");
    expectFailure(small, 1, "gallery.json");
    EXPECT_EQ(readText(victim), "mine");
}

TEST_F(GalleryTest, RefusesUnknownNamesAndBadFolders) {
    expectFailure("--screens NoSuchScreen", 2, "NoSuchScreen");
    expectFailure("--screens ''", 2, "unknown screen");
    expectFailure("--devices phone-390x844,toaster", 2, "toaster");
    expectFailure("--languages en,qq", 2, "qq");
    expectFailure("--tags V9", 2, "V9");
    expectFailure("--appearances dusk", 2, "dusk");
    EXPECT_FALSE(fs::exists(path)) << "bad usage writes nothing";
    EXPECT_EQ(runPaywall("gallery").status, 2);
    expectFailure("--catalogue " + quoted(folder / "missing.storekit"), 1, "missing.storekit");
    expectFailure("--pictures " + quoted(folder / "missing"), 1, "missing");
    writeText(path, "a file");
    expectFailure(small, 1, path.string());
}

TEST_F(GalleryTest, TellsAWarningOfAllWorkersOnce) {
    fs::create_directory(folder / "host");
    writeText(folder / "host/warning_envelope.png", "not a picture");
    writeText(folder / "host/q_premium_light.png", "not a picture");
    auto const output = draw(small + "--pictures " + quoted(folder / "host")).output;
    auto const first = output.find("q_premium_light.png");
    ASSERT_NE(first, std::string::npos) << output;
    EXPECT_EQ(output.find("q_premium_light.png", output.find('\n', first)), std::string::npos) << output;
}

/// A view as `describe` tells it; `facts` go over what is usual.
Json view(std::string const& name, Json const& facts) {
    Json view{{"class", "UIView"}, {"name", name}, {"frame", {0, 0, 100, 100}},
              {"hidden", false},   {"alpha", 1},   {"subviews", Json::array()}};
    view.update(facts);
    return view;
}

Json label(std::string const& name, Json const& facts) {
    Json label{
        {"class", "UILabel"}, {"frame", {0, 0, 10, 10}}, {"text", "text of " + name}, {"truncated", false}};
    label.update(facts);
    return view(name, label);
}

TEST(FlaggedTextsTest, AreTheVisibleOnesThatDidNotFit) {
    Json const shrunk{{"shrunkTo", 0.5}}, cut{{"truncated", true}}, above{{"frame", {0, -6, 10, 10}}};
    auto const away = label("away", {{"truncated", true}, {"frame", {100, 0, 10, 10}}});
    auto const hidden = view("hidden", {{"hidden", true}, {"subviews", {label("within", cut)}}});
    auto const clear = view("clear", {{"alpha", 0}, {"subviews", {label("within", cut)}}});
    auto const scroller =
        view("scroller", {{"contentSize", {300, 100}}, {"subviews", {away, label("scrolling", shrunk)}}});
    auto const button = view("button", {{"subviews", {label("", cut)}}});
    EXPECT_EQ(flaggedTexts(view("view", {{"subviews",
                                          {label("fits", Json::object()), label("above", above), hidden,
                                           clear, scroller, button}}})),
              Json::parse(R"([
        {"view": "above", "text": "text of above", "frame": [0, -6, 10, 10], "offScreen": true},
        {"view": "scrolling", "text": "text of scrolling", "frame": [0, 0, 10, 10], "shrunkTo": 0.5},
        {"view": "button UILabel", "text": "text of ", "frame": [0, 0, 10, 10], "truncated": true}])"));
}

} // namespace
} // namespace trelundo::paywall::test

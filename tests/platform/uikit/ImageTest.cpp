#include "tests/platform/uikit/DeviceFixture.h"
#include "trelundo/platform/foundation/Bundle.h"
#include "trelundo/platform/uikit/views/UIImageView.h"

#include <array>

using namespace std::string_literals;

namespace trelundo {

namespace {

constexpr auto square = greenPicture;
constexpr std::string_view leftHalf =
    R"(<svg xmlns="http://www.w3.org/2000/svg" viewBox="0 0 20 10" width="20" height="10">)"
    R"(<rect width="10" height="10" fill="#00ff00"/></svg>)";

constexpr std::array files{EmbeddedFile{"square.svg", square},         EmbeddedFile{"left.svg", leftHalf},
                           EmbeddedFile{"fine@2x.svg", square},        EmbeddedFile{"fine@3x.svg", leftHalf},
                           EmbeddedFile{"fine.svg", leftHalf},         EmbeddedFile{"only@3x.svg", square},
                           EmbeddedFile{"device~iphone.svg", square},  EmbeddedFile{"device.svg", leftHalf},
                           EmbeddedFile{"broken.png", "not a picture"}};

} // namespace

class ImageTest : public DeviceFixture {
protected:
    ImageTest() { bundle.addEmbeddedFiles(files); }
    Ref<UIImage> load(std::string const& name) { return UIImage::named(name, bundle); }

    // What is logged once is logged once in a process: each test brings names that none has used before.
    static inline int tests = 0;
    std::string const number = std::to_string(++tests);
    Bundle bundle{"org.example.pictures" + number};
};

TEST_F(ImageTest, TheScreensScaleIsPreferredAndKept) {
    EXPECT_EQ(load("fine")->scale(), 2);
    EXPECT_EQ(load("fine.svg")->scale(), 2);
    EXPECT_EQ(load("fine@3x")->scale(), 3);
    EXPECT_EQ(load("only")->scale(), 3);
    EXPECT_EQ(load("square")->scale(), 1);
    EXPECT_EQ(load("square")->size(), (CGSize{20, 10}));
    EXPECT_EQ(load("fine")->name(), "fine");

    EXPECT_EQ(load("square"), load("square")) << "decoded once for each bundle";
    std::array const other{EmbeddedFile{"square.svg", leftHalf}};
    Bundle twin{bundle.identifier()};
    twin.addEmbeddedFiles(other);
    EXPECT_FALSE(UIImage::named("square", twin) == load("square"));
}

TEST_F(ImageTest, AnImageSetNamesTheFileForADeviceAndHowItIsDrawn) {
    std::array const set{
        EmbeddedFile{"set.svg", square}, EmbeddedFile{"set.imageset/any.svg", square},
        EmbeddedFile{"set.imageset/half.svg", leftHalf},
        EmbeddedFile{"set.imageset/Contents.json",
                     R"({"images": [{"idiom": "universal", "scale": "3x", "filename": "any.svg"},
                                    {"idiom": "universal", "scale": "1x"},
                                    {"idiom": "universal", "scale": "2x", "filename": "dark.svg",
                                     "appearances": [{"appearance": "luminosity", "value": "dark"}]},
                                    {"idiom": "watch", "scale": "2x", "filename": "watch.svg"},
                                    {"idiom": "universal", "scale": "2x", "filename": "wide.svg",
                                     "display-gamut": "display-P3"},
                                    {"idiom": "universal", "filename": "half.svg", "display-gamut": "sRGB"}],
                         "properties": {"template-rendering-intent": "template"}})"}};
    bundle.addEmbeddedFiles(set);
    auto const image = load("set");
    EXPECT_EQ(image->renderingMode(), UIImageRenderingMode::alwaysTemplate);
    EXPECT_EQ(image->scale(), 1) << "no slot has the screen's scale 2, so the one for all scales serves";
    EXPECT_EQ(load("set.svg")->renderingMode(), UIImageRenderingMode::automatic);
    UIScreen::main().configure(*DeviceProfile::find("phone-390x844"), false);
    EXPECT_EQ(load("set")->scale(), 3);
    EXPECT_TRUE(warnings.empty());
}

TEST_F(ImageTest, ABrokenImageSetIsLoggedAndPassedOver) {
    auto const contents = [](std::string_view text) {
        return std::array{EmbeddedFile{"square.imageset/Contents.json", text}};
    };
    auto const broken = contents("{\n\"images\": }");
    auto const missing = contents(R"({"images": [{"idiom": "iphone", "filename": "gone.png"}]})");
    auto const noList = contents(R"({"images": {}})");
    for (auto const& [set, fault] : {std::pair{&broken, "square.imageset/Contents.json:2: "},
                                     std::pair{&missing, "there is no file \"gone.png\""},
                                     std::pair{&noList, "\"images\" is no list"}}) {
        bundle.addEmbeddedFiles(*set);
        EXPECT_EQ(load("square")->size(), (CGSize{20, 10}));
        ASSERT_EQ(warnings.size(), 1u) << fault;
        EXPECT_NE(warnings[0].find(fault), std::string::npos) << warnings[0];
        warnings.clear();
    }
}

TEST_F(ImageTest, WhatCannotBeHadIsNullAndFaultsAreLoggedOnce) {
    EXPECT_FALSE(load("missing"));
    EXPECT_TRUE(warnings.empty());
    for (auto const& name : {"broken"s, "../square" + number, "/square" + number, number + "sq\0uare"s}) {
        warnings.clear();
        EXPECT_FALSE(load(name)) << name;
        EXPECT_FALSE(load(name)) << name;
        ASSERT_EQ(warnings.size(), 1u) << name;
        auto const told = name.substr(0, name.find('\0')); // a message ends at the NUL of a name
        EXPECT_NE(warnings[0].find(told), std::string::npos) << warnings[0];
    }
    EXPECT_FALSE(load(""));
}

TEST_F(ImageTest, ContentModesPlaceThePicture) {
    using Mode = UIViewContentMode;
    CGRect const bounds{0, 0, 100, 100};
    struct Place {
        Mode mode;
        CGRect rect;
    };
    for (auto const& [mode, rect] :
         {Place{Mode::scaleToFill, bounds}, Place{Mode::redraw, bounds},
          Place{Mode::scaleAspectFit, {0, 25, 100, 50}}, Place{Mode::scaleAspectFill, {-50, 0, 200, 100}},
          Place{Mode::topLeft, {0, 0, 20, 10}}, Place{Mode::top, {40, 0, 20, 10}},
          Place{Mode::topRight, {80, 0, 20, 10}}, Place{Mode::left, {0, 45, 20, 10}},
          Place{Mode::center, {40, 45, 20, 10}}, Place{Mode::right, {80, 45, 20, 10}},
          Place{Mode::bottomLeft, {0, 90, 20, 10}}, Place{Mode::bottom, {40, 90, 20, 10}},
          Place{Mode::bottomRight, {80, 90, 20, 10}}})
        EXPECT_EQ(UIImageView::contentRect(mode, {20, 10}, bounds), rect) << static_cast<int>(mode);
    EXPECT_TRUE(UIImageView::contentRect(Mode::scaleAspectFit, {}, bounds).isEmpty());
}

TEST_F(ImageTest, ATemplateFollowsTheTint) {
    auto const tinted = load("square")->withRenderingMode(UIImageRenderingMode::alwaysTemplate);
    EXPECT_EQ(load("square")->renderingMode(), UIImageRenderingMode::automatic) << "only the copy changed";
    show(make<UIImageView>(tinted), {50, 50, 20, 10});
    for (auto const& [tint, seen] : {std::pair{UIColor::red(), 0xFFFF0000}, {UIColor(0, 0, 1), 0xFF0000FF}}) {
        shell.window().setTintColor(tint);
        EXPECT_EQ(pixelAt({60, 55}), seen);
    }
}

TEST_F(ImageTest, AFlippedPictureIsMirroredInRightToLeftViews) {
    auto const image = load("left")->imageFlippedForRightToLeftLayoutDirection()->withRenderingMode(
        UIImageRenderingMode::alwaysOriginal);
    auto const view = show(make<UIImageView>(image), {50, 50, 20, 10});
    EXPECT_EQ(pixelAt({55, 55}), 0xFF00FF00);
    view->setSemanticContentAttribute(UISemanticContentAttribute::forceRightToLeft);
    view->setNeedsDisplay();
    EXPECT_NE(pixelAt({55, 55}), 0xFF00FF00);
    EXPECT_EQ(pixelAt({65, 55}), 0xFF00FF00);
}

} // namespace trelundo

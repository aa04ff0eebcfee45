#include "tests/platform/graphics/Drawing.h"
#include "trelundo/platform/graphics/internal/GraphicsSystem.h"
#include "trelundo/platform/graphics/text/SystemFont.h"
#include "trelundo/platform/graphics/text/internal/FaceChoice.h"
#include "trelundo/platform/graphics/text/internal/FontFile.h"

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <gtest/gtest.h>
#include <string>
#include <string_view>
#include <vector>

namespace trelundo {

using namespace test;

namespace {

constexpr auto fontSetting = "FONTCONFIG_FILE";

/// What tells the font library a fact of all files whose name contains a word.
std::string rule(std::string const& name, std::string const& fact, std::string const& value) {
    return R"(<match target="scan"><test name="file" compare="contains"><string>)" + name +
           R"(</string></test><edit name=")" + fact + R"(" mode="assign"><const>)" + value +
           "</const></edit></match>";
}

/// Makes a folder of fonts that are all the installed Arabic one, under names that tell their weight and
/// width. A process that starts afterwards knows no other fonts; the font configuration is read once.
void leaveOnlyArabicFonts(std::filesystem::path const& folder) {
    std::filesystem::create_directories(folder);
    auto const installed = findFontFamily("Noto Sans Arabic").front().path;
    for (auto const* name : {"Regular", "Medium", "Bold", "CondensedMedium", "CondensedRegular"})
        std::filesystem::copy_file(installed, folder / (std::string{name} + ".ttf"));
    auto const configuration = folder / "fonts.conf";
    std::ofstream(configuration) << "<fontconfig><dir>" << folder.string() << "</dir>"
                                 << rule("Regular", "weight", "regular") << rule("Medium", "weight", "medium")
                                 << rule("Bold", "weight", "bold") << rule("Condensed", "width", "condensed")
                                 << "</fontconfig>";
    setenv(fontSetting, configuration.c_str(), 1);
}

/// The names of the files that the letters of a word come from, one after another.
std::string filesOf(std::u16string const& word, int weight) {
    std::vector<std::u16string_view> letters;
    for (std::size_t i = 0; i < word.size(); ++i) letters.push_back(std::u16string_view(word).substr(i, 1));
    FontFace preferred{.file = {}, .weight = weight};
    std::string files;
    for (auto const* face : chooseFaces(letters, preferred))
        files += std::filesystem::path(face->file).stem().string() + " ";
    return files;
}

/// The ink of a text in pixels.
double ink(std::string const& text, int weight) {
    TextLayout const layout({run(text, 40, weight)}, {});
    auto const surface = drawn(300, 60, 1, [&](Canvas& canvas) { layout.draw(canvas, {0, 0}, 300); });
    double sum = 0;
    for (int y = 0; y < surface->pixelHeight(); ++y)
        for (int x = 0; x < surface->pixelWidth(); ++x) sum += alphaAt(*surface, x, y) / 255.0;
    return sum;
}

} // namespace

TEST(FontChoiceTest, AWordComesFromOneFileOfTheWantedWeightAndTheUsualWidth) {
    GTEST_FLAG_SET(death_test_style, "threadsafe");
    auto const folder = std::filesystem::path(testing::TempDir()) / "arabic-fonts";
    if (!getenv(fontSetting)) leaveOnlyArabicFonts(folder); // else this is the process that starts afterwards
    auto const chooseInTurn = [] {
        startGraphics();
        // Letters that one weight has met before another asks for them.
        auto const files = filesOf(u"سنة", 400) + "| " + filesOf(u"سنوات", 500) + "| " + filesOf(u"سنة", 700);
        std::fputs(files.c_str(), stderr);
        std::exit(0);
    };
    EXPECT_EXIT(chooseInTurn(), testing::ExitedWithCode(0),
                "Regular Regular Regular \\| Medium Medium Medium Medium Medium \\| Bold Bold Bold ");
    unsetenv(fontSetting);
    std::filesystem::remove_all(folder);
}

TEST(FontChoiceTest, AHostsFilesBecomeTheSystemFont) {
    GTEST_FLAG_SET(death_test_style, "threadsafe"); // a process of its own: the font stays
    auto const setSerif = [] {
        auto const fileOf = [](int weight) {
            auto const& face = FontLibrary::shared().systemFace(weight, false, 30);
            return std::filesystem::path(face.file).stem().string() + " ";
        };
        std::vector<std::string> paths;
        for (auto const& file : findFontFamily("Noto Serif"))
            if (!file.isItalic && file.width == 100 && (file.weight == 400 || file.weight == 700))
                paths.push_back(file.path);
        auto const refused = setSystemFontFiles({paths.front(), "/dev/null"});
        auto files = fileOf(400);
        if (setSystemFontFiles(paths)) files += fileOf(400) + fileOf(900);
        std::fputs((refused.error().message + ": " + files).c_str(), stderr);
        std::exit(0);
    };
    EXPECT_EXIT(
        setSerif(), testing::ExitedWithCode(0),
        "/dev/null: not a font of one weight: InterDisplay-Regular NotoSerif-Regular NotoSerif-Bold ");
}

TEST(FontChoiceTest, OneFaceHasAllLettersOfARun) {
    startGraphics();
    auto& like = FontLibrary::shared().systemFace(400, false, 17);
    std::u16string_view const letters[] = {u"a", u"ع", u"٣", u"٤", u" ", u"ب", u"漢", u"か"};
    auto const faces = chooseFaces(letters, like);
    EXPECT_EQ(faces[0], &like);
    EXPECT_EQ(faces[1], faces[3]) << "digits that the run's face has";
    EXPECT_EQ(faces[1], faces[5]);
    EXPECT_EQ(faces[6], faces[7]);
    std::u16string_view const digits[] = {u"٤", u"٩"};
    EXPECT_EQ(chooseFaces(digits, like)[0], faces[1]) << "a price that begins with them";
}

TEST(FontChoiceTest, AWeightThatIsNotInstalledIsMade) {
    for (auto const* text : {"اشترك الآن", "להירשם", "続ける"}) {
        EXPECT_GT(ink(text, 500), ink(text, 400) * 1.02) << text;
        EXPECT_LT(ink(text, 500), ink(text, 700)) << text;
        EXPECT_GT(ink(text, 900), ink(text, 700) * 1.02) << text;
    }
    EXPECT_EQ(ink("😀", 500), ink("😀", 400)) << "pictures have no weight";
}

} // namespace trelundo

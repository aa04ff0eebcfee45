#include "trelundo/platform/foundation/Bundle.h"

#include "tests/support/Files.h"
#include "tests/support/ScopedState.h"

#include <array>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <thread>

namespace trelundo {
namespace {

using namespace test;
using testing::ElementsAre;

constexpr std::array files{
    EmbeddedFile{"plain.txt", "plain"},
    EmbeddedFile{"empty.bin", {}},
    EmbeddedFile{"fr.lproj/plain.txt", "hidden by the one that is not localised"},
    EmbeddedFile{"en.lproj/greeting.txt", "hello"},
    EmbeddedFile{"fr.lproj/greeting.txt", "bonjour"},
    EmbeddedFile{"en.lproj/english.txt", "english only"},
    EmbeddedFile{"Base.lproj/base.txt", "base"},
    EmbeddedFile{"en.lproj/T.strings", "\"word\" = \"word!\"; \"rest\" = \"rest!\";"},
    EmbeddedFile{"fr.lproj/T.strings", "\"word\" = \"mot\";"},
    EmbeddedFile{"pt.lproj/T.strings", {}},
    EmbeddedFile{"zh-Hans.lproj/T.strings", {}},
    EmbeddedFile{"de.lproj/T.strings", "\"word\" = \"Wort\";\n\"rest\" = ;"},
    EmbeddedFile{"en.lproj/Localizable.strings", "\"word\" = \"default table\";"},
    EmbeddedFile{"it.lproj/T.strings", {}},
};

class BundleTest : public testing::Test {
protected:
    BundleTest() { bundle.addEmbeddedFiles(files); }

    std::string word(std::vector<std::string> chosen) {
        Locale::setPreferredLanguages(std::move(chosen));
        return bundle.localizedString("word", "", "T");
    }

    ScopedLanguages const languages{{"en-US"}};
    RecordedWarnings warnings;
    Bundle bundle{"Test"};
};

TEST_F(BundleTest, SearchesPlainThenPreferredThenDevelopmentRegion) {
    Locale::setPreferredLanguages({"fr-CA"});
    EXPECT_EQ(bundle.data("plain.txt"), "plain");
    EXPECT_EQ(bundle.data("greeting.txt"), "bonjour");
    EXPECT_EQ(bundle.data("english.txt"), "english only");
    EXPECT_EQ(bundle.data("base.txt"), "base");
    EXPECT_EQ(bundle.path("greeting.txt"), "bundle:Test/fr.lproj/greeting.txt");
    EXPECT_EQ(bundle.path("missing.txt"), std::nullopt);
    Locale::setPreferredLanguages({"ja"});
    EXPECT_EQ(bundle.data("greeting.txt"), "hello");
    EXPECT_EQ(bundle.data("Greeting.txt"), std::nullopt) << "names are case-sensitive";
    EXPECT_EQ(bundle.data("empty.bin"), "") << "an empty file is there";
    EXPECT_TRUE(warnings.lines.empty());
}

TEST_F(BundleTest, RefusesNamesThatLeaveTheBundle) {
    constexpr std::string_view names[] = {
        "../plain.txt", "a/../plain.txt", "..", "/etc/hostname", "", std::string_view{"plain.txt\0", 10}};
    for (auto const name : names) EXPECT_EQ(bundle.data(name), std::nullopt) << name;
    EXPECT_EQ(bundle.localizedString("word", "", "../T"), "word");
    EXPECT_EQ(warnings.lines.size(), std::size(names) + 1);
}

TEST_F(BundleTest, ListsItsLocalizations) {
    EXPECT_THAT(bundle.localizations(), ElementsAre("de", "en", "fr", "it", "pt", "zh-Hans"));
    Locale::setPreferredLanguages({"pt-BR", "ja", "zh-CN", "pt"});
    EXPECT_THAT(bundle.preferredLocalizations(), ElementsAre("pt", "zh-Hans", "en"));
    Locale::setPreferredLanguages({});
    EXPECT_THAT(bundle.preferredLocalizations(), ElementsAre("en"));
    Bundle const other{"Other", "nl"};
    EXPECT_THAT(other.preferredLocalizations(), ElementsAre("nl"));
    EXPECT_TRUE(other.localizations().empty());
}

TEST_F(BundleTest, ATableOverAnotherOverridesKeyByKey) {
    static constexpr EmbeddedFile kit[] = {
        {"fr.lproj/M.strings", R"("a" = "kit a"; "b" = "kit b"; "c" = "kit c";)"},
        {"en.lproj/M.strings", R"("d" = "english";)"}};
    static constexpr EmbeddedFile host[] = {{"fr.lproj/M.strings", R"("b" = "host b";)"}};
    TemporaryFolder const folder;
    writeText(folder / "fr.lproj/M.strings", R"("c" = "folder c";)");
    bundle.addEmbeddedFiles(kit);
    bundle.addEmbeddedFiles(host);
    bundle.addFolder(folder.path());
    Locale::setPreferredLanguages({"fr"});
    std::string texts;
    for (auto const* key : {"a", "b", "c", "d"}) texts += bundle.localizedString(key, {}, "M") + ", ";
    EXPECT_EQ(texts, "kit a, host b, folder c, d, ") << "languages do not mix";
    EXPECT_EQ(bundle.data("fr.lproj/M.strings"), readText(folder / "fr.lproj/M.strings"));
}

TEST_F(BundleTest, TheApplicationSpeaksTheMainBundlesLanguageElseAFrameworks) {
    static auto& framework = *new Bundle{"Framework"}; // must outlive its registration
    static constexpr EmbeddedFile texts[] = {{"pt.lproj/T.strings", {}}, {"he.lproj/T.strings", {}}};
    framework.registerFramework();
    Locale::setPreferredLanguages({"fa", "he-IL", "pt"});
    EXPECT_EQ(Bundle::applicationLocalization(), "en");
    framework.addEmbeddedFiles(texts);
    EXPECT_EQ(Bundle::applicationLocalization(), "he") << "the first that a framework speaks";
    Bundle::main().addEmbeddedFiles({texts, 1});
    EXPECT_EQ(Bundle::applicationLocalization(), "pt");
    Locale::setPreferredLanguages({"he"});
    EXPECT_EQ(Bundle::applicationLocalization(), "en") << "the main bundle has languages of its own";
}

TEST_F(BundleTest, TextsComeFromOneLanguageOrAreTheValueOrTheKey) {
    EXPECT_EQ(word({"zh-Hant-TW"}), "word!");
    EXPECT_EQ(word({"it"}), "word") << "an empty table is there";
    EXPECT_EQ(word({"ja", "fr-CA"}), "mot");
    EXPECT_EQ(bundle.localizedString("rest", "", "T"), "rest") << "another language does not fill in";
    EXPECT_EQ(bundle.localizedString("rest", "fall-back", "T"), "fall-back");
    EXPECT_EQ(bundle.localizedString("word", "fall-back", "NoTable"), "fall-back");
    EXPECT_EQ(bundle.localizedString("word", "", ""), "default table");
    EXPECT_TRUE(warnings.lines.empty());
}

TEST_F(BundleTest, ABrokenTableIsReportedOnceAndBehavesAsMissing) {
    std::string heard;
    setWarningSink([&](std::string_view line) { // which may look up texts
        heard += std::string{line} + " " + bundle.localizedString("word", "", "Localizable");
    });
    EXPECT_EQ(word({"de"}), "word");
    EXPECT_EQ(bundle.localizedString("word", "fall-back", "T"), "fall-back");
    EXPECT_EQ(heard, "bundle:Test/de.lproj/T.strings:2: expected a value default table");
}

TEST_F(BundleTest, FoldersComeBeforeWhatIsCompiledInAndLaterOnesFirst) {
    TemporaryFolder const first, second;
    writeText(first / "greeting.txt", "first");
    writeText(first / "only.txt", "only");
    writeText(first / "sv.lproj/T.strings", "\"word\" = \"ord\";");
    writeText(first / "fr.lproj/T.strings", "\"word\" = \"");
    writeText(second / "greeting.txt", "second");
    writeText(second / "zero.bin", "");
    EXPECT_EQ(word({"sv"}), "word!");
    bundle.addFolder(first.path().string());
    bundle.addFolder(second.path().string());
    bundle.addFolder((second / "missing").string());
    EXPECT_EQ(bundle.data("greeting.txt"), "second");
    EXPECT_EQ(bundle.data("only.txt"), "only");
    EXPECT_EQ(bundle.data("zero.bin"), "");
    EXPECT_EQ(bundle.data("sv.lproj"), std::nullopt) << "a folder is no resource";
    EXPECT_EQ(bundle.path("only.txt"), (first / "only.txt").string());
    EXPECT_EQ(word({"sv"}), "ord") << "a new folder brings its languages";
    EXPECT_EQ(word({"fr"}), "mot") << "what lies under a broken table serves";
    EXPECT_THAT(warnings.lines,
                ElementsAre((first / "fr.lproj/T.strings").string() + ":1: a quoted text without end"));
}

TEST_F(BundleTest, LooksUpFromSeveralThreads) {
    std::array<std::thread, 4> threads;
    for (auto& thread : threads)
        thread = std::thread{[this] {
            for (int i = 0; i < 200; ++i) EXPECT_EQ(bundle.localizedString("word", "", "T"), "word!");
        }};
    for (auto& thread : threads) thread.join();
}

} // namespace
} // namespace trelundo

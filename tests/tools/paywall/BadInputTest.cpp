#include "tests/tools/paywall/Program.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace trelundo::paywall::test {
namespace {

using testing::AllOf;
using testing::EndsWith;
using testing::HasSubstr;

std::string const describe = "describe PremiumViewController ";
std::string const run = "run PremiumViewController --script ";

/// One line, no crash, the status, and every part of the message.
void expectFailure(std::string const& commandLine, int status, std::vector<std::string> const& parts) {
    auto const result = runPaywall(commandLine);
    EXPECT_EQ(result.status, status) << result.output;
    EXPECT_EQ(std::ranges::count(result.output, '\n'), 1) << result.output;
    for (auto const& part : parts) EXPECT_THAT(result.output, HasSubstr(part));
}

TEST(BadUsageTest, EndsWithStatus2AndNamesTheCulprit) {
    expectFailure("describe NoSuchScreen", 2, {"NoSuchScreen"});
    expectFailure(describe + "--device toaster", 2, {"toaster"});
    expectFailure(describe + "--language qq", 2, {"qq"});
    expectFailure(describe + "--no-such-option", 2, {"--no-such-option"});
    expectFailure(describe + "--set colour", 2, {"colour"});
    expectFailure(describe + "--set shoeSize=44", 2, {"shoeSize"});
    expectFailure(describe + "--set selectedProductIndex=many", 2, {"selectedProductIndex", "many"});
    expectFailure(describe + "--set features=none", 2, {"features", "at least one"});
    expectFailure(describe + "--select ''", 2, {"--select"});
    expectFailure("store approve --store x", 2, {"ID"});
    expectFailure("store clear 1 --store x", 2, {"ID"});
    expectFailure("frobnicate", 2, {"frobnicate"});
    EXPECT_EQ(runPaywall("").status, 2);
}

class BadFileTest : public testing::Test {
protected:
    std::string write(std::string const& name, std::string const& text) {
        return writeText(folder / name, text);
    }
    void expectBadCatalogue(std::string const& text, std::string const& part) {
        auto const path = write("Broken.storekit", text);
        expectFailure("products --catalogue " + quoted(path), 1, {path, part});
    }
    void expectBadScript(std::string const& text, std::vector<std::string> const& parts) {
        auto const path = write("broken.paywall", text);
        expectFailure(run + quoted(path) + " --log /dev/null", 1, parts);
    }
    TemporaryFolder folder;
};

TEST_F(BadFileTest, CataloguesAreRefusedWithTheirPlace) {
    expectFailure("products --catalogue /nowhere/x.storekit", 1, {"/nowhere/x.storekit"});
    expectBadCatalogue("<<<<<<< HEAD\n", ":1:");
    expectBadCatalogue("{\"products\": [\n", "");
    expectBadCatalogue(std::string(100'000, '['), "");
    expectBadCatalogue("{\"products\": 7}", "products");
    expectBadCatalogue(std::string(9'000'000, ' ') + "{}", "8 MB");
    expectFailure("products --catalogue " + quoted(folder / "."), 1, {});
}

TEST_F(BadFileTest, ScriptsAreRefusedWithTheirLine) {
    expectBadScript("advance 1\n\njump\n", {"broken.paywall:3", "jump"});
    expectBadScript("tapp x\n", {"unknown step", "did you mean \"tap\"?"});
    expectBadScript("tap \"\x1b" + std::string(1000, 'x') + "\"\n",
                    {"\"\\u001b" + std::string(59, 'x') + "…\""});
    expectBadScript("tap\n", {"broken.paywall:1", "tap NAME"});
    expectBadScript("tap \"no end\n", {"broken.paywall:1"});
    expectBadScript("tap nothingThere\n", {"broken.paywall:1", "nothingThere"});
    expectBadScript("advance soon\n", {"soon"});
    expectBadScript("alert OK\n", {"no alert"});
    expectBadScript("tap \"\"\n", {"no such view"});
    expectBadScript("drag collectionView nan 0\n", {"nan"});
    expectBadScript("drag collectionView 0 1e300\n", {"1e300"});
    expectBadScript("store next maybe\n", {"maybe"});
    expectBadScript("store next purchased 7\n", {"too many"});
    expectBadScript("store approve 1000001001\n", {"too many"});
    expectBadScript("release continueButton\n", {"nothing is held"});
    expectBadScript("press continueButton\npress continueButton\n", {"broken.paywall:2", "held already"});
    expectBadScript("uncover\n", {"nothing covers"});
    expectBadScript("cover\nuncover\n", {"broken.paywall:2", "advance first"});
    expectBadScript("cover\ncover\n", {"broken.paywall:2", "already"});
    expectBadScript("expect event name=Buy\n", {"broken.paywall:1", "no such line"});
    expectFailure(run + "/nowhere.paywall", 1, {"/nowhere.paywall"});
    expectFailure(run + "/", 1, {"/: cannot be read"});
}

TEST_F(BadFileTest, OnlyFilesAreReadAndWhatCannotBeWrittenStays) {
    auto const pipe = quoted(folder / "pipe");
    ASSERT_EQ(runShell("mkfifo " + pipe).status, 0);
    expectFailure("products --catalogue " + pipe, 1, {"pipe: cannot be read (not a file)"});
    expectFailure(run + pipe, 1, {"pipe: cannot be read (not a file)"});
    expectFailure("render BillingViewController --out /dev/full", 1, {"/dev/full: cannot be written"});
    EXPECT_TRUE(std::filesystem::is_character_file("/dev/full"));
}

TEST_F(BadFileTest, ScriptsFromOtherEditorsAreRead) {
    auto const path = write("script.paywall", "\xEF\xBB\xBFtap continueButton\r\nadvance 1\r\n"
                                              "expect payment t=0 product=app.premium.yearly\r\n"
                                              "expect products identifiers=[\"app.premium.yearly\","
                                              "\"app.premium.monthly\",\"app.premium.weekly\"]");
    auto const result = runPaywall(run + quoted(path) + " --log /dev/null");
    EXPECT_EQ(result.status, 0) << result.output;
}

TEST_F(BadFileTest, BytesThatAreNoTextAreShownAsSuch) {
    auto const result = runPaywall("describe BillingViewController --set 'updateDetailsText=\xFF!'");
    EXPECT_EQ(result.status, 0);
    EXPECT_THAT(result.output, HasSubstr("\"text\": \"\uFFFD!\""));
}

TEST_F(BadFileTest, LostOutputFails) {
    auto const script = write("script.paywall", "advance 1\n");
    expectFailure(run + quoted(script) + " --log /dev/full", 1, {"/dev/full: the log cannot be written"});
    auto const result = runShell(quoted(TRELUNDO_PAYWALL_PROGRAM) + " screens 2>&1 >/dev/full");
    EXPECT_EQ(result.status, 1);
    EXPECT_THAT(result.output, HasSubstr("standard output cannot be written"));
}

TEST_F(BadFileTest, AStoreThatIsNoneIsRefusedAndABrokenOneSetAside) {
    expectFailure("store list --store " + quoted(folder / "missing.sqlite"), 1, {"missing.sqlite"});
    auto const notes = write("notes.txt", "buy milk");
    for (auto const* command : {"store list --store ", "store clear --store "})
        expectFailure(command + quoted(notes), 1, {"notes.txt: not a store"});
    EXPECT_EQ(readText(notes), "buy milk");
    auto const script =
        write("buy.paywall", "tap continueButton\nadvance 2\nexpect transaction state=purchased\n");
    auto const store = folder / "store.sqlite";
    auto const buy = run + quoted(script) + " --store " + quoted(store);
    EXPECT_EQ(runPaywall(buy).status, 0);
    writeText(store, readText(store).substr(0, 5000));
    expectFailure("store list --store " + quoted(store), 1, {"store.sqlite: the store is broken"});
    auto const result = runPaywall(buy);
    EXPECT_EQ(result.status, 0) << result.output;
    EXPECT_THAT(result.output, HasSubstr(store)) << "the broken file is reported";
    auto const listed = runPaywall("store list --store " + quoted(store));
    EXPECT_THAT(listed.output, AllOf(HasSubstr("purchased"), HasSubstr("finished")));
}

TEST_F(BadFileTest, PicturesAreMissedNotFatal) {
    write("pictures/premium_background.png", "not a picture");
    auto const result = runPaywall(describe + "--pictures " + quoted(folder / "pictures") +
                                   " --set 'features=One:../../etc/passwd;Two:/etc/passwd;Three:missing'");
    EXPECT_EQ(result.status, 0);
    EXPECT_THAT(result.output, HasSubstr("premium_background.png"));
    EXPECT_THAT(result.output, HasSubstr("../../etc/passwd"));
}

TEST(MissingFontTest, NamesThePackageOfEachScriptOnce) {
    TemporaryFolder const folder;
    auto const nothing = quoted(writeText(folder / "fonts.conf", "<fontconfig></fontconfig>"));
    auto const warnings = [&](std::string const& language) {
        return runShell("FONTCONFIG_FILE=" + nothing + " " + quoted(TRELUNDO_PAYWALL_PROGRAM) +
                        " describe BillingViewController --language " + language + " 2>&1 >/dev/null")
            .output;
    };
    EXPECT_THAT(warnings("ja"), EndsWith("No font for Chinese, Japanese and Korean; install the package "
                                         "fonts-noto-cjk.\nNo font for Latin; install the package "
                                         "fonts-noto-core.\n"));
    EXPECT_THAT(warnings("he"), HasSubstr("No font for Hebrew; install the package fonts-noto-core.\n"));
}

} // namespace
} // namespace trelundo::paywall::test

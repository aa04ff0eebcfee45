#include "trelundo/platform/foundation/Locale.h"

#include "tests/support/ScopedState.h"
#include "trelundo/platform/foundation/internal/MatchingLocalizations.h"
#include "trelundo/platform/foundation/posix/LocaleVariables.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <map>

namespace trelundo {
namespace {

using namespace test;
using testing::ElementsAre;
using testing::IsEmpty;

TEST(LocaleTest, IsCanonicalAndTakesTheCurrencyFromTheKeywordThenFromTheRegion) {
    struct {
        char const *written, *identifier, *language, *currency;
    } const rows[] = {
        {"en-us", "en_US", "en", "USD"},
        {"zh-Hant-TW", "zh_Hant_TW", "zh", "TWD"},
        {"en_US@currency=JPY", "en_US@currency=JPY", "en", "JPY"},
        {"de@currency=chf", "de@currency=chf", "de", "CHF"},
        {"en-US-u-cu-eur", "en_US@currency=eur", "en", "EUR"},
        {"xx_JP", "xx_JP", "xx", "JPY"},
        {"en", "en", "en", "XXX"},
        {"root", "", "", "XXX"},
        {"en_US@currency=dollars", "en_US@currency=dollars", "en", "USD"},
        {"@=;=;;", "", "", "XXX"},
    };
    for (auto const& row : rows) {
        Locale const locale{row.written};
        EXPECT_EQ(locale.identifier(), row.identifier);
        EXPECT_EQ(locale, Locale{row.identifier});
        EXPECT_EQ(locale.languageCode(), row.language) << row.written;
        EXPECT_EQ(locale.currencyCode(), row.currency) << row.written;
    }
    EXPECT_NE(Locale{"en_US@currency=USD"}, Locale{"en_US"});
    EXPECT_EQ(Locale{std::string(5000, 'x')}, Locale{""});
    EXPECT_EQ(Locale{std::string_view("en_US\0evil", 10)}, Locale{""});
}

TEST(LocaleTest, KnowsTheDirectionOfItsScript) {
    for (auto const* identifier : {"ar", "he-IL", "fa_IR", "ur", "az-Arab"})
        EXPECT_TRUE(Locale{identifier}.isRightToLeft()) << identifier;
    for (auto const* identifier : {"en", "ja-JP", "az", "", "xx"})
        EXPECT_FALSE(Locale{identifier}.isRightToLeft()) << identifier;
}

TEST(LocaleTest, CurrentFollowsThePreferredLanguages) {
    ScopedLanguages const scope{{"fr-CA", "en"}};
    EXPECT_EQ(Locale::current().identifier(), "fr_CA");
    EXPECT_THAT(Locale::preferredLanguages(), ElementsAre("fr-CA", "en"));
    Locale::setPreferredLanguages({});
    EXPECT_EQ(Locale::current().identifier(), "en");
    EXPECT_THAT(Locale::preferredLanguages(), IsEmpty());
}

TEST(LanguageTagsTest, ReadTheEnvironment) {
    using Environment = std::map<std::string, std::string>;
    using Tags = std::vector<std::string>;
    std::pair<Environment, Tags> const rows[] = {
        {{}, {}},
        {{{"LANG", "de_CH.UTF-8"}}, {"de-CH"}},
        {{{"LANG", "C.UTF-8"}}, {}},
        {{{"LANG", "_@."}}, {}},
        {{{"LANG", "de"}, {"LC_MESSAGES", "fr_FR"}, {"LC_ALL", ""}}, {"fr-FR"}},
        {{{"LC_ALL", "C"}, {"LANG", "de"}}, {}},
        {{{"LANGUAGE", "pt_BR::pt:en"}, {"LANG", "pt_BR.UTF-8"}}, {"pt-BR", "pt", "en"}},
        {{{"LANG", "sr_RS.UTF-8@latin"}}, {"sr-Latn-RS"}},
        {{{"LANG", "ca_ES@euro"}}, {"ca-ES"}},
    };
    for (auto const& [environment, tags] : rows) {
        auto const valueOf = [&](char const* name) -> char const* {
            auto const variable = environment.find(name);
            return variable == environment.end() ? nullptr : variable->second.c_str();
        };
        EXPECT_EQ(languageTags(valueOf), tags) << testing::PrintToString(environment);
    }
}

TEST(LanguageTagsTest, ChooseTheNearestLocalizationOfEachLanguage) {
    using List = std::vector<std::string>;
    struct {
        List wanted, offered, chosen;
    } const rows[] = {
        {{"zh-Hans-CN"}, {"en", "zh", "zh-Hans"}, {"zh-Hans"}},
        {{"zh-TW"}, {"zh-Hans", "zh-Hant"}, {"zh-Hant"}},
        {{"zh-HK"}, {"zh", "en"}, {}},
        {{"pt-BR"}, {"pt", "pt_BR"}, {"pt_BR"}},
        {{"en-GB"}, {"en", "en-US"}, {"en"}},
        {{"iw-IL", "no", "tl"}, {"da", "en", "fil", "he", "nb"}, {"he", "nb", "fil"}},
        {{"sr-Latn-RS"}, {"hr", "sr"}, {"sr"}}, // who writes Serbian in Latin letters reads it in both
        {{"bs"}, {"hr", "sl"}, {"hr"}},
        {{"pt", "pt-AO"}, {"pt-BR", "pt-PT"}, {"pt-BR", "pt-PT"}},
        {{"es-MX", "es-ES"}, {"es", "es-419"}, {"es-419", "es"}},
        {{"fr-BE", "fr-CA"}, {"fr-CA", "fr"}, {"fr", "fr-CA"}},
        {{"ca-ES", "be", "da"}, {"es", "ru", "nb"}, {}}, // near, yet not asked for
        {{"fr-CA", "de-AT", "fr"}, {"de", "en", "fr"}, {"fr", "de"}},
        {{"", "x", "not a tag"}, {"en", "fr"}, {}},
    };
    for (auto const& row : rows)
        EXPECT_EQ(matchingLocalizations(row.wanted, row.offered), row.chosen) << row.wanted.front();
}

} // namespace
} // namespace trelundo

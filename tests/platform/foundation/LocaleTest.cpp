#include "platform/foundation/Locale.h"

#include "platform/foundation/LanguageTags.h"
#include "tests/platform/foundation/ScopedState.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <map>

namespace trelundo {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

TEST(Locale, ComparesInCanonicalForm) {
    EXPECT_EQ(Locale{"en-US"}, Locale{"en_US"});
    EXPECT_EQ(Locale{"en-us"}.identifier(), "en_US");
    EXPECT_EQ(Locale{"zh-Hans-CN"}.identifier(), "zh_Hans_CN");
    EXPECT_EQ(Locale{"en_US@currency=USD"}.identifier(), "en_US@currency=USD");
    EXPECT_NE(Locale{"en_US@currency=USD"}, Locale{"en_US"});
    EXPECT_EQ(Locale{"root"}, Locale{""});
}

TEST(Locale, TakesTheCurrencyFromTheKeywordThenFromTheRegion) {
    struct {
        char const *identifier, *language, *region, *currency;
    } const rows[] = {{"en_US", "en", "US", "USD"},
                      {"en_US@currency=JPY", "en", "US", "JPY"},
                      {"de@currency=chf", "de", "", "CHF"},
                      {"en-US-u-cu-eur", "en", "US", "EUR"},
                      {"zh-Hant-TW", "zh", "TW", "TWD"},
                      {"xx_JP", "xx", "JP", "JPY"},
                      {"en", "en", "", "XXX"},
                      {"", "", "", "XXX"}};
    for (auto const& row : rows) {
        Locale const locale{row.identifier};
        EXPECT_EQ(locale.languageCode(), row.language) << row.identifier;
        EXPECT_EQ(locale.regionCode(), row.region) << row.identifier;
        EXPECT_EQ(locale.currencyCode(), row.currency) << row.identifier;
    }
}

TEST(Locale, KnowsTheDirectionOfItsScript) {
    for (auto const* identifier : {"ar", "he-IL", "fa_IR", "ur", "az-Arab"})
        EXPECT_TRUE(Locale{identifier}.isRightToLeft()) << identifier;
    for (auto const* identifier : {"en", "ja-JP", "az", "", "xx"})
        EXPECT_FALSE(Locale{identifier}.isRightToLeft()) << identifier;
}

TEST(Locale, TakesAnyTextWithoutFailing) {
    EXPECT_EQ(Locale{std::string(5000, 'x')}, Locale{""});
    EXPECT_EQ(Locale{std::string_view("en_US\0evil", 10)}, Locale{""});
    EXPECT_EQ(Locale{"@=;=;;"}.currencyCode(), "XXX");
    EXPECT_EQ(Locale{"en_US@currency=dollars"}.currencyCode(), "USD");
}

TEST(Locale, CurrentFollowsThePreferredLanguages) {
    ScopedLanguages const scope{{"fr-CA", "en"}};
    EXPECT_EQ(Locale::current().identifier(), "fr_CA");
    EXPECT_THAT(Locale::preferredLanguages(), ElementsAre("fr-CA", "en"));
    Locale::setPreferredLanguages({});
    EXPECT_EQ(Locale::current().identifier(), "en");
    EXPECT_THAT(Locale::preferredLanguages(), IsEmpty());
}

std::vector<std::string> tagsIn(std::map<std::string, std::string> const& environment) {
    return languageTags([&](char const* name) -> char const* {
        auto const variable = environment.find(name);
        return variable == environment.end() ? nullptr : variable->second.c_str();
    });
}

TEST(LanguageTags, ReadTheEnvironment) {
    EXPECT_THAT(tagsIn({}), IsEmpty());
    EXPECT_THAT(tagsIn({{"LANG", "de_CH.UTF-8"}}), ElementsAre("de-CH"));
    EXPECT_THAT(tagsIn({{"LANG", "C.UTF-8"}}), IsEmpty());
    EXPECT_THAT(tagsIn({{"LANG", "POSIX"}}), IsEmpty());
    EXPECT_THAT(tagsIn({{"LANG", "de"}, {"LC_MESSAGES", "fr_FR"}, {"LC_ALL", ""}}), ElementsAre("fr-FR"));
    EXPECT_THAT(tagsIn({{"LC_ALL", "C"}, {"LANG", "de"}}), IsEmpty());
    EXPECT_THAT(tagsIn({{"LANGUAGE", "pt_BR::pt:en"}, {"LANG", "pt_BR.UTF-8"}}),
                ElementsAre("pt-BR", "pt", "en"));
    EXPECT_THAT(tagsIn({{"LANG", "sr_RS.UTF-8@latin"}}), ElementsAre("sr-Latn-RS"));
    EXPECT_THAT(tagsIn({{"LANG", "ca_ES@euro"}}), ElementsAre("ca-ES"));
    EXPECT_THAT(tagsIn({{"LANG", "_@."}}), IsEmpty());
}

TEST(LanguageTags, ChooseTheNearestLocalizationOfEachLanguage) {
    using List = std::vector<std::string>;
    struct {
        List wanted, offered, chosen;
    } const rows[] = {
        {{"zh-Hans-CN"}, {"en", "zh", "zh-Hans"}, {"zh-Hans"}},
        {{"zh-Hans-CN"}, {"en", "zh"}, {"zh"}},
        {{"zh-Hans-CN"}, {"zh-Hans", "zh-Hant"}, {"zh-Hans"}},
        {{"zh-TW"}, {"zh-Hans", "zh-Hant"}, {"zh-Hant"}},
        {{"zh-HK"}, {"zh", "en"}, {}},
        {{"pt-BR"}, {"pt", "pt-PT"}, {"pt"}},
        {{"pt-BR"}, {"pt", "pt_BR"}, {"pt_BR"}},
        {{"pt"}, {"pt-PT"}, {"pt-PT"}},
        {{"en-GB"}, {"en", "en-US"}, {"en"}},
        {{"iw-IL"}, {"he"}, {"he"}},
        {{"sr-Latn-RS"}, {"sr"}, {}},
        {{"fr-CA", "de-AT", "fr"}, {"de", "en", "fr"}, {"fr", "de"}},
        {{"", "x", "not a tag"}, {"en", "fr"}, {}},
    };
    for (auto const& row : rows)
        EXPECT_EQ(matchingLocalizations(row.wanted, row.offered), row.chosen) << row.wanted.front();
}

} // namespace
} // namespace trelundo

#include "tools/paywall/output/EventLog.h"

#include <gtest/gtest.h>

namespace trelundo::paywall::test {
namespace {

TEST(EventLogTest, FindsValuesAsAScriptSpellsThem) {
    EventLog log{"/dev/null"};
    log.write("transaction", {{"id", "7"},
                              {"error", {{"domain", "SKErrorDomain"}, {"code", 2}}},
                              {"arguments", {"a", "b"}},
                              {"share", 0.5},
                              {"empty", Json::array()}});
    auto const holds = [&](std::string const& key, std::string const& value) {
        return log.holds("transaction", {{key, value}});
    };
    EXPECT_TRUE(holds("share", "0.50"));
    EXPECT_TRUE(holds("error.code", "2"));
    EXPECT_TRUE(holds("error.code", "2.0"));
    EXPECT_TRUE(holds("error", "{domain:SKErrorDomain,code:2}"));
    EXPECT_TRUE(holds("arguments", "a,b"));
    EXPECT_TRUE(holds("arguments", "[\"a\",\"b\"]"));
    EXPECT_TRUE(holds("empty", "[]"));
    EXPECT_FALSE(holds("error.code", "2x"));
    EXPECT_FALSE(holds("error.code", ""));
    EXPECT_FALSE(holds("arguments", "a"));
    EXPECT_FALSE(holds("id", "7.0")) << "a text is no number";
    EXPECT_FALSE(holds("error.domain.code", "2"));
}

} // namespace
} // namespace trelundo::paywall::test

#include "tests/support/FakeStore.h"
#include "tests/support/FaultyDisk.h"
#include "tests/support/Files.h"
#include "tests/support/Products.h"
#include "tests/support/ScopedState.h"
#include "trelundo/kit/store/PremiumManager.h"

#include <gmock/gmock.h>
#include <sys/wait.h>
#include <unistd.h>

namespace trelundo::test {
namespace {

using State = SKPaymentTransactionState;
using Standing = Entitlement::Standing;

constexpr double day = 86400;
constexpr double january31 = 30 * day; // 2001
constexpr double february28 = 58 * day;

/// Ends the process where a store would be told that a transaction is finished.
class DyingStore : public FakeStore {
public:
    Result<void> finish(std::string const& /*key*/) override { _exit(0); }
};

class EntitlementsTest : public testing::Test {
protected:
    ~EntitlementsTest() override {
        manager.setEntitlements(nullptr);
        SKPaymentQueue::defaultQueue().removeTransactionObserver(manager);
    }

    /// What the queue hears at start-up, and with what catalogue.
    void start(FakeStore& store, std::map<std::string, Ref<SKProduct>> const& catalogue = {}) {
        manager.setEntitlements(entitlements());
        SKPaymentQueue::defaultQueue().addTransactionObserver(strong(manager));
        load(store, catalogue);
    }
    void load(FakeStore& store, std::map<std::string, Ref<SKProduct>> const& catalogue) {
        store.catalogue = catalogue;
        manager.setState(PremiumManagerState::notStarted);
        std::vector<std::string> identifiers;
        for (auto const& [identifier, product] : catalogue) identifiers.push_back(identifier);
        manager.start(identifiers);
        RunLoop::main().runUntilIdle();
    }
    void tell(FakeStore& store, std::string const& product, State state, double date = 0) {
        store.tell({{.key = std::to_string(++keys),
                     .payment = {.productIdentifier = product},
                     .state = state,
                     .transactionIdentifier = std::to_string(1000 + keys),
                     .date = date,
                     .receipt = std::string{"\0signed", 7}}});
        RunLoop::main().runUntilIdle();
    }
    Ref<Entitlements> const& entitlements() {
        if (!opened) opened = *Entitlements::open(file);
        return opened;
    }
    Entitlement find(std::string const& product) { return entitlements()->find(product).value(); }

    ScopedVirtualClock time;
    FaultyDisk disk;
    TemporaryFolder folder;
    std::filesystem::path file = folder / "owned.db";
    PremiumManager& manager = PremiumManager::sharedInstance();
    int keys = 0;
    Ref<Entitlements> opened;
};

TEST_F(EntitlementsTest, APurchaseIsOnDiskBeforeItIsFinished) {
    auto const child = fork();
    if (child == 0) {
        DyingStore store;
        start(store);
        tell(store, "lifetime", State::purchased);
        _exit(1);
    }
    int status = 0;
    waitpid(child, &status, 0);
    ASSERT_EQ(status, 0) << "died elsewhere";
    EXPECT_TRUE(entitlements()->owns("lifetime"));
    EXPECT_EQ(find("lifetime").transactionIdentifier, "1001");
    EXPECT_EQ(find("lifetime").receipt, (std::string{"\0signed", 7}));
}

TEST_F(EntitlementsTest, WhatCannotBeKeptIsNotFinishedAndComesAgain) {
    FakeStore store;
    start(store);
    disk.fail(FaultyDisk::Call::write);
    RecordedWarnings const warnings;
    tell(store, "lifetime", State::purchased);
    EXPECT_THAT(warnings.lines, testing::ElementsAre(testing::HasSubstr("Entitlements: " + file.string())));
    EXPECT_TRUE(store.finished.empty());
    EXPECT_FALSE(entitlements()->owns("lifetime"));
    tell(store, "lifetime", State::purchased);
    EXPECT_EQ(store.finished.size(), 1U);
    EXPECT_TRUE(entitlements()->owns("lifetime"));
}

TEST_F(EntitlementsTest, ASubscriptionLastsForItsCalendarPeriodAsFarAsThatIsKnown) {
    FakeStore store;
    auto const free = Offer{.period = week};
    start(store, {{"plain", makeProduct("plain", "4.99", month)},
                  {"trial", makeProduct("trial", "4.99", month, free)},
                  {"lifetime", makeProduct("lifetime", "99", std::nullopt)}});
    for (auto const* product : {"plain", "trial", "lifetime"})
        tell(store, product, State::purchased, january31 + 3600);
    tell(store, "restored", State::restored, january31);
    EXPECT_EQ(find("plain").until, february28 + 3600) << "of the shorter month";
    EXPECT_EQ(find("trial").until, std::nullopt) << "the first period may have been the trial";
    time.clock.setNow(february28 + 3599);
    EXPECT_EQ(find("plain").standing, Standing::owned);
    time.clock.setNow(february28 + 3600);
    EXPECT_EQ(find("plain").standing, Standing::periodIsOver);
    EXPECT_EQ(find("trial").standing, Standing::ownedSoFar);
    EXPECT_EQ(find("restored").standing, Standing::ownedSoFar);
    EXPECT_EQ(find("lifetime").standing, Standing::owned);
    EXPECT_FALSE(entitlements()->owns("plain"));
    EXPECT_TRUE(entitlements()->owns("trial"));

    tell(store, "plain", State::purchased, february28);
    EXPECT_TRUE(entitlements()->owns("plain")) << "renewed";
    auto const renewed = find("plain");
    tell(store, "plain", State::purchased, january31);
    tell(store, "plain", State::restored, february28 + 1800);
    EXPECT_EQ(find("plain").transactionIdentifier, renewed.transactionIdentifier) << "nothing new";
}

TEST_F(EntitlementsTest, AnApprovalAfterARestartCountsAndTheCatalogueTellsItsTermsLater) {
    FakeStore store;
    start(store);
    tell(store, "plan", State::deferred);
    EXPECT_EQ(find("plan").standing, Standing::waiting);
    EXPECT_FALSE(entitlements()->owns("plan"));

    manager.setEntitlements(nullptr);
    opened = nullptr;
    manager.setEntitlements(entitlements());
    EXPECT_EQ(find("plan").standing, Standing::waiting);
    tell(store, "plan", State::purchased, january31);
    EXPECT_EQ(find("plan").standing, Standing::ownedSoFar);
    load(store, {{"plan", makeProduct("plan", "4.99", month)}});
    EXPECT_EQ(find("plan").until, february28);
}

TEST_F(EntitlementsTest, WhatWasDeclinedIsForgottenAndWhatIsOwnedIsNot) {
    FakeStore store;
    start(store);
    tell(store, "declined", State::deferred);
    tell(store, "declined", State::failed);
    EXPECT_FALSE(entitlements()->find("declined"));
    tell(store, "owned", State::purchased);
    tell(store, "owned", State::deferred);
    tell(store, "owned", State::failed);
    EXPECT_TRUE(entitlements()->owns("owned"));
}

TEST_F(EntitlementsTest, ChangesAreToldOnceForAll) {
    FakeStore store;
    start(store);
    int changes = 0;
    entitlements()->setChangeHandler([&] { ++changes; });
    store.tell({FakeStore::transaction("1", State::restored), FakeStore::transaction("2", State::restored)});
    RunLoop::main().runUntilIdle();
    EXPECT_EQ(changes, 1);
    EXPECT_EQ(entitlements()->all().size(), 2U);
    tell(store, "p1", State::failed);
    EXPECT_EQ(changes, 1);
}

TEST_F(EntitlementsTest, AFileThatIsNoneOfOursIsRefusedWithItsName) {
    writeText(file, "");
    auto const first = Entitlements::open(file);
    ASSERT_TRUE(first) << "an empty file becomes one";
    auto const second = Entitlements::open(file);
    ASSERT_FALSE(second);
    EXPECT_THAT(second.error().message, testing::HasSubstr(file.string() + ": the store is in use"));
}

} // namespace
} // namespace trelundo::test

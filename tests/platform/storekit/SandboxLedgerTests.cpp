#include "StoreTestSupport.h"

#include "trelundo/platform/storekit/sandbox/internal/SandboxLedger.h"

#include <SQLiteCpp/SQLiteCpp.h>
#include <fstream>
#include <iterator>
#include <optional>
#include <sys/stat.h>
#include <sys/wait.h>

namespace trelundo {
namespace {

using State = LedgerState;

std::string contentsOf(std::filesystem::path const& file) {
    std::ifstream stream{file, std::ios::binary};
    return {std::istreambuf_iterator<char>{stream}, {}};
}

/// Runs `work` in a process of its own and returns its exit status.
int inChild(std::function<int()> const& work) {
    auto const child = ::fork();
    if (child == 0) ::_exit(work());
    int status = 0;
    ::waitpid(child, &status, 0);
    return WIFEXITED(status) ? WEXITSTATUS(status) : -1;
}

class SandboxLedgerTest : public ::testing::Test {
protected:
    SandboxLedger::Opened open() const { return SandboxLedger::open({.file = file}); }
    void fill(int purchases) const {
        auto const opened = open();
        ASSERT_TRUE(opened.ledger) << opened.error;
        for (int i = 0; i < purchases; ++i) opened.ledger->recordPurchase({.productIdentifier = "p"}, true);
    }
    void expectRefusal(std::string const& reason) const {
        auto const before = contentsOf(file);
        auto const opened = open();
        EXPECT_FALSE(opened.ledger);
        EXPECT_EQ(opened.error, file.string() + ": " + reason);
        EXPECT_EQ(opened.setAside, "");
        EXPECT_EQ(contentsOf(file), before) << "nothing lost";
    }

    TemporaryFolder folder;
    std::filesystem::path file = folder / "store.db";
};

TEST_F(SandboxLedgerTest, ItsFilesBelongToTheirOwnerAlone) {
    auto const mask = ::umask(0);
    {
        auto const opened = open();
        ASSERT_TRUE(opened.ledger);
        opened.ledger->recordPurchase({.productIdentifier = "p"}, true);
        for (auto const& entry : std::filesystem::directory_iterator{folder.path()})
            EXPECT_EQ(static_cast<int>(entry.status().permissions()), 0600) << entry.path();
    }
    ::umask(mask);
    std::filesystem::permissions(file, std::filesystem::perms::all);
    open();
    EXPECT_EQ(static_cast<int>(std::filesystem::status(file).permissions()), 0600);
}

TEST_F(SandboxLedgerTest, SetsABrokenFileAside) {
    std::string const garbage(5000, 'x');
    for (auto const* name : {"store.db.broken-1", "store.db.broken-2"}) {
        std::ofstream{file, std::ios::binary} << garbage;
        auto const opened = open();
        ASSERT_TRUE(opened.ledger) << opened.error;
        EXPECT_EQ(opened.setAside, (folder / name).string());
        EXPECT_EQ(contentsOf(folder / name), garbage) << "kept as it was";
        EXPECT_TRUE(opened.ledger->recordPurchase({.productIdentifier = "p"}, true));
    }
}

TEST_F(SandboxLedgerTest, NoDamageIsFatal) {
    fill(60);
    auto const sound = contentsOf(file);
    for (std::size_t at = 0; at < sound.size(); at += at < 128 ? 5 : 379) {
        auto damaged = sound;
        damaged[at] = static_cast<char>(damaged[at] ^ 0x5a);
        std::ofstream{file, std::ios::binary} << damaged;
        auto const opened = open();
        EXPECT_TRUE(opened.ledger || !opened.error.empty());
        if (!opened.ledger) continue;
        EXPECT_TRUE(opened.ledger->recordPurchase({.productIdentifier = "p"}, true)) << at;
        EXPECT_EQ(opened.ledger->records().size(), opened.setAside.empty() ? 61U : 1U) << at;
    }
    for (std::size_t const length : {0UL, 50UL, 4096UL, sound.size() - 4096}) {
        std::ofstream{file, std::ios::binary} << sound.substr(0, length);
        auto const opened = open();
        EXPECT_TRUE(opened.ledger) << opened.error;
        EXPECT_EQ(opened.setAside.empty(), length == 0) << length;
    }
}

TEST_F(SandboxLedgerTest, RefusesFilesOfOthersOfAnotherSchemaOrInUse) {
    auto const change = [&](char const* sql) {
        SQLite::Database{file.string(), SQLite::OPEN_READWRITE | SQLite::OPEN_CREATE}.exec(
            std::string{"PRAGMA journal_mode = DELETE; "} + sql);
    };
    change("CREATE TABLE notes (text)");
    expectRefusal("the file belongs to another application");
    std::filesystem::remove(file);
    fill(1);
    change("PRAGMA user_version = 2");
    expectRefusal("the store has schema version 2, not 1");
    change("PRAGMA user_version = 1; CREATE INDEX more ON transactions (product)");
    expectRefusal("the store has another schema");
    change("DROP INDEX more");

    auto const first = open();
    EXPECT_EQ(first.ledger->records().size(), 1U);
    expectRefusal("the store is in use by another process");
    EXPECT_EQ(inChild([&] { return open().error.ends_with("in use by another process") ? 0 : 1; }), 0);
    EXPECT_TRUE(first.ledger->recordPurchase({.productIdentifier = "p"}, true));
}

TEST_F(SandboxLedgerTest, RefusesWhatItCannotWrite) {
    fill(1);
    std::filesystem::permissions(folder.path(), std::filesystem::perms::all);
    std::filesystem::permissions(file, std::filesystem::perms{0444});
    // The superuser may write anything, so the child becomes nobody.
    auto const openAsNobody = [&] {
        if (::geteuid() == 0 && ::setuid(65534) != 0) return 2;
        return open().error == file.string() + ": the store is read-only" ? 0 : 1;
    };
    EXPECT_EQ(inChild(openAsNobody), 0);
    EXPECT_EQ(SandboxLedger::open({.file = folder.path()}).error, folder.path().string() + ": not a file");
    EXPECT_EQ(SandboxLedger::open({.file = folder / "none/store.db"}).error,
              (folder / "none/store.db").string() +
                  ": the store cannot be created: No such file or directory");
}

TEST_F(SandboxLedgerTest, AFullDiskLosesNothing) {
    std::size_t recorded = 0;
    {
        auto const opened = open();
        auto const record = [&] { return opened.ledger->recordPurchase({.productIdentifier = "p"}, true); };
        ASSERT_TRUE(record());
        auto full = std::make_optional<FullDisk>(60'000);
        while (recorded < 200 && record()) ++recorded;
        auto const kept = opened.ledger->records().size();
        full.reset();
        EXPECT_TRUE(recorded > 0 && recorded < 200) << recorded;
        EXPECT_TRUE(opened.ledger->lastError().starts_with(file.string() + ": the disk"));
        EXPECT_EQ(kept, recorded + 1);
        EXPECT_TRUE(record()) << "it goes on";
    }
    EXPECT_EQ(open().ledger->records().size(), recorded + 2);
}

TEST_F(SandboxLedgerTest, AnOperationInTheWrongStateChangesNothing) {
    auto const opened = SandboxLedger::open({});
    auto& ledger = *opened.ledger;
    auto const identifier = ledger.recordPurchase({.productIdentifier = "p"}, true)->identifier;
    EXPECT_FALSE(ledger.finish(identifier)) << "still purchasing";
    EXPECT_FALSE(ledger.settle("approval", identifier, State::deferred, {}));
    EXPECT_TRUE(ledger.settle("outcome", identifier, State::purchasing, {.date = 3}));
    EXPECT_FALSE(ledger.settle("outcome", identifier, State::purchasing, {}));
    EXPECT_TRUE(ledger.finish(identifier));
    EXPECT_FALSE(ledger.finish(identifier));
    EXPECT_FALSE(ledger.finish(identifier + 1));
    EXPECT_EQ(ledger.find(identifier)->date, 3);
    EXPECT_TRUE(ledger.unfinished().empty());
}

} // namespace
} // namespace trelundo

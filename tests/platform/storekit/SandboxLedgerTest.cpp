#include "tests/support/Files.h"
#include "tests/support/ScopedState.h"
#include "trelundo/platform/storekit/sandbox/internal/SandboxLedger.h"

#include <SQLiteCpp/Database.h>
#include <csignal>
#include <fstream>
#include <gtest/gtest.h>
#include <iterator>
#include <optional>
#include <sys/resource.h>
#include <sys/stat.h>
#include <sys/wait.h>

namespace trelundo {

using test::RecordedWarnings;
using test::TemporaryFolder;

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

/// While it lives, no file grows beyond a limit, as on a full disk.
class FullDisk {
public:
    explicit FullDisk(::rlim_t bytes = 0)
        : handler_(std::signal(SIGXFSZ, SIG_IGN)) {
        ::getrlimit(RLIMIT_FSIZE, &limit_);
        rlimit const full{bytes, limit_.rlim_max};
        ::setrlimit(RLIMIT_FSIZE, &full);
    }
    ~FullDisk() {
        ::setrlimit(RLIMIT_FSIZE, &limit_);
        std::signal(SIGXFSZ, handler_);
    }
    FullDisk(FullDisk const&) = delete;
    FullDisk& operator=(FullDisk const&) = delete;

private:
    void (*handler_)(int);
    rlimit limit_{};
};

class SandboxLedgerTest : public ::testing::Test {
protected:
    Result<std::unique_ptr<SandboxLedger>> open() const { return SandboxLedger::open(file); }
    static bool record(SandboxLedger& ledger) {
        return ledger.recordPurchase({.productIdentifier = "p"}, true).has_value();
    }
    void fill(int purchases) const {
        auto const ledger = *open();
        for (int i = 0; i < purchases; ++i) record(*ledger);
    }
    void expectRefusal(std::string const& reason) const {
        auto const before = contentsOf(file);
        EXPECT_EQ(open().error().message, file.string() + ": " + reason);
        EXPECT_EQ(warnings.lines, std::vector<std::string>{}) << "not set aside";
        EXPECT_EQ(contentsOf(file), before) << "nothing lost";
    }

    TemporaryFolder folder;
    std::filesystem::path file = folder / "store.db";
    RecordedWarnings warnings;
};

TEST_F(SandboxLedgerTest, ItsFilesBelongToTheirOwnerAlone) {
    auto const mask = ::umask(0);
    {
        auto const ledger = *open();
        record(*ledger);
        for (auto const& entry : std::filesystem::directory_iterator{folder.path()})
            EXPECT_EQ(static_cast<int>(entry.status().permissions()), 0600) << entry.path();
    }
    ::umask(mask);
    std::filesystem::permissions(file, std::filesystem::perms::all);
    EXPECT_TRUE(open());
    EXPECT_EQ(static_cast<int>(std::filesystem::status(file).permissions()), 0600);
}

TEST_F(SandboxLedgerTest, SetsABrokenFileAside) {
    std::string const garbage(5000, 'x');
    for (auto const* name : {"store.db.broken-1", "store.db.broken-2"}) {
        std::ofstream{file, std::ios::binary} << garbage;
        auto const ledger = *open();
        EXPECT_EQ(warnings.lines.back(),
                  file.string() + ": the store was broken; it was kept as " + (folder / name).string());
        EXPECT_EQ(contentsOf(folder / name), garbage) << "kept as it was";
        EXPECT_TRUE(record(*ledger));
    }
}

TEST_F(SandboxLedgerTest, NoDamageIsFatal) {
    fill(60);
    auto const sound = contentsOf(file);
    for (std::size_t at = 0; at < sound.size(); at += at < 128 ? 5 : 379) {
        auto damaged = sound;
        damaged[at] = static_cast<char>(damaged[at] ^ 0x5a);
        std::ofstream{file, std::ios::binary} << damaged;
        warnings.lines.clear();
        auto const opened = open();
        if (!opened) continue;
        EXPECT_TRUE(record(**opened)) << at;
        EXPECT_EQ((*opened)->records()->size(), warnings.lines.empty() ? 61U : 1U) << at;
    }
    for (std::size_t const length : {0UL, 50UL, 4096UL, sound.size() - 4096}) {
        std::ofstream{file, std::ios::binary} << sound.substr(0, length);
        warnings.lines.clear();
        EXPECT_TRUE(open());
        EXPECT_EQ(warnings.lines.empty(), length == 0) << length;
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

    auto const first = *open();
    EXPECT_EQ(first->records()->size(), 1U);
    expectRefusal("the store is in use by another process");
    EXPECT_EQ(inChild([&] { return open().error().message.ends_with("in use by another process") ? 0 : 1; }),
              0);
    EXPECT_TRUE(record(*first));
}

TEST_F(SandboxLedgerTest, RefusesWhatItCannotWrite) {
    fill(1);
    std::filesystem::permissions(folder.path(), std::filesystem::perms::all);
    std::filesystem::permissions(file, std::filesystem::perms{0444});
    // The superuser may write anything, so the child becomes nobody.
    auto const openAsNobody = [&] {
        if (::geteuid() == 0 && ::setuid(65534) != 0) return 2;
        return open().error().message == file.string() + ": the store is read-only" ? 0 : 1;
    };
    EXPECT_EQ(inChild(openAsNobody), 0);
    EXPECT_EQ(SandboxLedger::open(folder.path()).error().message, folder.path().string() + ": not a file");
    auto const homeless = folder / "none/store.db";
    EXPECT_EQ(SandboxLedger::open(homeless).error().message,
              homeless.string() + ": the store cannot be created: No such file or directory");
}

TEST_F(SandboxLedgerTest, AFullDiskLosesNothing) {
    std::size_t recorded = 1;
    {
        auto const ledger = *open();
        ASSERT_TRUE(record(*ledger));
        auto full = std::make_optional<FullDisk>(60'000);
        while (recorded < 200 && record(*ledger)) ++recorded;
        auto const kept = ledger->records()->size();
        full.reset();
        EXPECT_TRUE(recorded > 1 && recorded < 200) << recorded;
        EXPECT_EQ(kept, recorded);
        EXPECT_TRUE(record(*ledger)) << "it goes on";
    }
    EXPECT_EQ((*open())->records()->size(), recorded + 1);
}

TEST_F(SandboxLedgerTest, AnOperationInTheWrongStateChangesNothing) {
    auto const ledger = *SandboxLedger::open();
    auto const identifier = ledger->recordPurchase({.productIdentifier = "p"}, true)->identifier;
    EXPECT_FALSE(ledger->finish(identifier)) << "still purchasing";
    EXPECT_FALSE(*ledger->settle(identifier, State::deferred, {}));
    EXPECT_EQ((*ledger->settle(identifier, State::purchasing, {.date = 3}))->date, 3);
    EXPECT_FALSE(*ledger->settle(identifier, State::purchasing, {}));
    EXPECT_TRUE(ledger->finish(identifier));
    for (auto const refused : {identifier, identifier + 1})
        EXPECT_EQ(ledger->finish(refused).error().message,
                  "transaction " + std::to_string(refused) + " cannot be finished");
    EXPECT_EQ(ledger->records()->at(0).date, 3);
    EXPECT_TRUE(ledger->unfinished()->empty());
}

} // namespace
} // namespace trelundo

#include "trelundo/platform/storekit/sandbox/internal/SandboxLedger.h"

#include "tests/support/FaultyDisk.h"
#include "tests/support/Files.h"
#include "tests/support/ScopedState.h"

#include <SQLiteCpp/Database.h>
#include <fstream>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <map>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

namespace trelundo {

using namespace test;
using testing::ElementsAre;
using testing::EndsWith;
using testing::HasSubstr;
using testing::IsEmpty;

namespace {

namespace fs = std::filesystem;
using Call = FaultyDisk::Call;
using State = LedgerState;

constexpr int forEver = 1'000'000;

/// Whether a process ends well.
bool hasSucceeded(::pid_t process) {
    int status = -1;
    ::waitpid(process, &status, 0);
    return status == 0;
}

/// Names, modes and contents.
std::map<std::string, std::pair<int, std::string>> contentsOf(fs::path const& folder) {
    std::map<std::string, std::pair<int, std::string>> contents;
    for (auto const& entry : fs::directory_iterator{folder})
        contents[entry.path().filename()] = {static_cast<int>(entry.status().permissions()),
                                             entry.is_regular_file() ? readText(entry.path()) : ""};
    return contents;
}

void damage(fs::path const& file, std::size_t at) {
    auto bytes = readText(file);
    bytes.at(at) = static_cast<char>(bytes[at] ^ 0x5a);
    writeText(file, bytes);
}

class SandboxLedgerTest : public ::testing::Test {
protected:
    Result<std::unique_ptr<SandboxLedger>> open() const { return SandboxLedger::open(file); }
    static bool record(SandboxLedger& ledger, std::string product = "p") {
        return ledger.recordPurchase({.productIdentifier = std::move(product)}, true).has_value();
    }
    void fill(int purchases) const {
        auto const ledger = *open();
        for (int i = 0; i < purchases; ++i) record(*ledger);
    }
    /// Leaves the files that a process leaves behind which dies after `purchases`.
    void die(int purchases) const {
        fill(0);
        {
            auto const ledger = *open();
            for (int i = 0; i < purchases; ++i) record(*ledger);
            fs::copy_file(file, folder / "left");
            fs::copy_file(log, folder / "left-wal");
        }
        fs::rename(folder / "left", file);
        fs::rename(folder / "left-wal", log);
    }
    void change(char const* sql) const {
        SQLite::Database{file.string(), SQLite::OPEN_READWRITE | SQLite::OPEN_CREATE}.exec(
            std::string{"PRAGMA journal_mode = DELETE; "} + sql);
    }
    void expectRefusal(std::string const& reason) const {
        auto const before = contentsOf(folder.path());
        EXPECT_EQ(open().error().message, file.string() + ": " + reason);
        EXPECT_FALSE(SandboxLedger::read(file));
        EXPECT_THAT(warnings.lines, IsEmpty());
        EXPECT_EQ(contentsOf(folder.path()), before) << reason;
    }
    std::size_t count() const { return (*open())->records()->size(); }

    TemporaryFolder folder;
    fs::path file = folder / "store.db";
    fs::path log = folder / "store.db-wal";
    RecordedWarnings warnings;
};

// What is on the disk

TEST_F(SandboxLedgerTest, ItsFilesBelongToTheirOwnerAloneBeforeAnythingIsWritten) {
    FaultyDisk disk;
    disk.setJudge([&](Call call, std::string_view) {
        if (call != Call::write) return false;
        for (auto const& [name, part] : contentsOf(folder.path())) EXPECT_EQ(part.first, 0600) << name;
        return false;
    });
    auto const mask = ::umask(0);
    { EXPECT_TRUE(record(**open())); }
    EXPECT_EQ(contentsOf(folder.path()).size(), 1U) << "the lock and the log go with their holder";
    fs::permissions(file, fs::perms::all);
    { EXPECT_TRUE(record(**open())); }
    ::umask(mask);
}

TEST_F(SandboxLedgerTest, WhatReturnsIsBeyondTheReachOfAPowerFailure) {
    FaultyDisk const disk;
    auto const ledger = *open();
    EXPECT_THAT(disk.unsynchronized(), IsEmpty());
    for (int i = 1; i < 60; ++i) {
        auto const identifier = ledger->recordPurchase({.productIdentifier = "p"}, true)->identifier;
        ASSERT_THAT(disk.unsynchronized(), IsEmpty());
        ASSERT_TRUE(*ledger->settle(identifier, State::purchasing, {}));
        ASSERT_TRUE(ledger->finish(identifier));
        ASSERT_TRUE(ledger->restore(0));
        ASSERT_THAT(disk.unsynchronized(), IsEmpty()) << i;
    }
    EXPECT_LT(fs::file_size(log), 1'000'000) << "little stands in the log alone";
}

/// Fails calls while purchases are recorded; whether the first of them came. Whatever happens: what was told
/// as recorded is found again after a kill, and what was told as failed is not.
bool meetsFault(Call call, int first, int count) {
    TemporaryFolder const folder;
    auto const path = folder / "store.db", copy = folder / "copy.db";
    std::map<std::string, bool> told{
        {"p", (*SandboxLedger::open(path))->recordPurchase({.productIdentifier = "p"}, true).has_value()}};
    FaultyDisk disk;
    disk.fail(call, first, count);
    {
        auto const opened = SandboxLedger::open(path);
        for (auto const* product : {"a", "b", "c", "d"}) {
            if (!opened) break;
            bool const isRecorded =
                (*opened)->recordPurchase({.productIdentifier = product}, true).has_value();
            if (isRecorded || !(*opened)->isInDoubt()) told[product] = isRecorded;
        }
        fs::copy_file(path, copy);
        std::error_code none;
        fs::copy_file(path.string() + "-wal", copy.string() + "-wal", none);
    }
    bool const hasFailed = disk.countedCalls() >= first;
    disk.setJudge(nullptr);
    std::set<std::string> found;
    for (auto const records = *SandboxLedger::read(copy); auto const& each : records)
        found.insert(each.payment.productIdentifier);
    for (auto const& [product, isRecorded] : told) EXPECT_EQ(found.contains(product), isRecorded) << product;
    EXPECT_TRUE(SandboxLedger::open(path));
    return hasFailed;
}

TEST_F(SandboxLedgerTest, NoFaultOfTheDiskLosesOrForgesAnything) {
    int faults = 0;
    for (auto const call : {Call::open, Call::read, Call::write, Call::synchronize, Call::truncate,
                            Call::remove, Call::size, Call::lock})
        for (int const count : {1, forEver})
            for (int first = 1; meetsFault(call, first, count); ++first, ++faults)
                ASSERT_FALSE(HasFailure()) << static_cast<int>(call) << " " << first << " x" << count;
    EXPECT_THAT(warnings.lines, IsEmpty());
    EXPECT_GT(faults, 70);
}

TEST_F(SandboxLedgerTest, AReadThatFailsIsTriedAgainAndNeverTakenForDamage) {
    fill(20);
    FaultyDisk disk;
    int first = 1;
    do {
        disk.fail(Call::read, first);
        EXPECT_EQ(count(), 20U) << first;
    } while (disk.countedCalls() >= first++);
    EXPECT_GT(first, 5);
    disk.fail(Call::read, 1, forEver);
    expectRefusal("the disk cannot be read or written");
}

TEST_F(SandboxLedgerTest, ACommitThatCannotBeSynchronizedIsUndoneOrInDoubt) {
    FaultyDisk disk;
    auto const ledger = *open();
    disk.fail(Call::synchronize, 1);
    EXPECT_FALSE(record(*ledger));
    EXPECT_FALSE(ledger->isInDoubt());
    EXPECT_EQ(fs::file_size(log), 0U) << "nothing comes back";
    disk.fail(Call::synchronize, 1, forEver);
    EXPECT_FALSE(record(*ledger));
    EXPECT_TRUE(ledger->isInDoubt());
    EXPECT_FALSE(ledger->finish(1)) << "nothing goes on while it may come back";
    disk.setJudge(nullptr);
    EXPECT_TRUE(record(*ledger));
    EXPECT_FALSE(ledger->isInDoubt());
    EXPECT_EQ(ledger->records()->size(), 1U);
}

// What cannot serve

TEST_F(SandboxLedgerTest, LeavesAloneWhatIsNoLedger) {
    for (std::string const text : {"buy milk", "SQLite format 3", "x"}) {
        writeText(file, text);
        expectRefusal("not a store");
    }
    writeText(file, std::string(5000, '\0'));
    expectRefusal("not a store");
    fs::remove(file);
    change("CREATE TABLE notes (text)");
    damage(file, 4096 + 50);
    fs::permissions(file, fs::perms{0644});
    expectRefusal("the file belongs to another application");
    fs::remove(file);
    fill(1);
    change("PRAGMA user_version = 2");
    expectRefusal("the store has schema version 2, not 1");
    change("PRAGMA user_version = 1; CREATE INDEX more ON transactions (product)");
    expectRefusal("the store has another schema");
    change("DROP INDEX more");
    fs::create_hard_link(file, folder / "other");
    EXPECT_THAT(open().error().message, HasSubstr("second name"));
    fs::remove(folder / "other");
    EXPECT_EQ(count(), 1U);
    writeText(file.string() + "-lock", "somebody else's");
    EXPECT_THAT(open().error().message, EndsWith("cannot be locked: store.db-lock is no lock"));
    EXPECT_EQ(readText(file.string() + "-lock"), "somebody else's");
    EXPECT_EQ(SandboxLedger::open(folder.path()).error().message, folder.path().string() + ": not a file");
    EXPECT_THAT(SandboxLedger::open(folder / "none/store.db").error().message,
                EndsWith(": No such file or directory"));
}

TEST_F(SandboxLedgerTest, IsNobodyElsesWhileItIsOpen) {
    auto const isInUse = [&] { return open().error().message.ends_with("in use by another process"); };
    int start[2];
    ASSERT_EQ(::pipe(start), 0);
    auto const other = ::fork(); // before the library knows of any lock
    if (other == 0) {
        char word = 0;
        ::_exit(::read(start[0], &word, 1) == 1 && isInUse() ? 0 : 1);
    }
    auto const ledger = *open();
    EXPECT_TRUE(isInUse());
    std::ifstream{file}; // whoever closes any descriptor of a file loses his process's locks on it
    ASSERT_EQ(::write(start[1], "!", 1), 1);
    EXPECT_TRUE(hasSucceeded(other));
    fs::create_symlink(file, folder / "link");
    EXPECT_FALSE(SandboxLedger::open(folder / "link"));
    EXPECT_THAT(SandboxLedger::read(file).error().message, HasSubstr("in use"));
    EXPECT_TRUE(record(*ledger));
}

TEST_F(SandboxLedgerTest, RefusesWhatItCannotWrite) {
    fill(1);
    fs::permissions(folder.path(), fs::perms::all);
    fs::permissions(file, fs::perms{0444});
    auto const child = ::fork();
    if (child == 0) { // which becomes nobody, as the superuser may write anything
        bool const isNobody = ::geteuid() != 0 || ::setuid(65534) == 0;
        ::_exit(isNobody && open().error().message == file.string() + ": the store is read-only" ? 0 : 1);
    }
    EXPECT_TRUE(hasSucceeded(child));
}

TEST_F(SandboxLedgerTest, NoticesThatItsFileIsGoneBeforeItCommits) {
    auto const ledger = *open();
    ASSERT_TRUE(record(*ledger));
    for (std::string const part : {"", "-wal"}) {
        auto const name = file.string() + part, elsewhere = (folder / "elsewhere").string();
        fs::rename(name, elsewhere);
        EXPECT_THAT(ledger->recordPurchase({.productIdentifier = "p"}, true).error().message,
                    HasSubstr("was removed, replaced or linked"));
        EXPECT_FALSE(ledger->isInDoubt());
        fs::copy_file(elsewhere, name);
        EXPECT_FALSE(record(*ledger)) << "a copy is another file";
        fs::rename(elsewhere, name);
        EXPECT_TRUE(record(*ledger));
    }
    EXPECT_EQ(ledger->records()->size(), 3U);
}

TEST_F(SandboxLedgerTest, ReadingChangesNothing) {
    die(20);
    fs::permissions(file, fs::perms{0644});
    auto const before = contentsOf(folder.path());
    EXPECT_EQ(SandboxLedger::read(file)->size(), 20U) << "the log included";
    EXPECT_EQ(contentsOf(folder.path()), before);
    EXPECT_THAT(SandboxLedger::read(folder / "none").error().message, EndsWith("no such file"));
}

// What is damaged

TEST_F(SandboxLedgerTest, SetsABrokenLedgerAsideAsItWas) {
    for (auto const* name : {"store.db.broken-1", "store.db.broken-2"}) {
        die(20);
        damage(file, 4096 + 3);
        writeText(log, "");
        auto const before = readText(file);
        EXPECT_EQ(SandboxLedger::read(file).error().message, file.string() + ": the store is broken");
        EXPECT_EQ(count(), 0U);
        EXPECT_EQ(warnings.lines.back(),
                  file.string() + ": the store was broken; it was kept as " + (folder / name).string());
        EXPECT_EQ(readText(folder / name), before);
        fs::remove(file);
    }
}

TEST_F(SandboxLedgerTest, KeepsWhatStandsBehindDamageInTheLog) {
    die(29);
    auto const sound = readText(log), left = readText(file);
    auto const countWith = [&](std::string const& inFile, std::size_t damagedAt) {
        warnings.lines.clear();
        writeText(file, inFile);
        writeText(log, sound);
        if (damagedAt > 0) damage(log, damagedAt);
        return count();
    };
    auto const frames = (sound.size() - 32) / (24 + 4096);
    std::size_t const middle = 32 + frames / 2 * (24 + 4096);
    for (auto const at : {std::size_t{9}, middle + 2, middle + 10, middle + 24 + 100}) {
        EXPECT_LT(countWith(left, at), 29U) << at;
        ASSERT_THAT(warnings.lines, ElementsAre(HasSubstr("behind the damage"))) << at;
        auto const kept = folder.path().string() + warnings.lines[0].substr(warnings.lines[0].rfind('/'));
        writeText(log, sound);
        damage(log, at);
        EXPECT_EQ(readText(kept + "-wal"), readText(log)) << at;
        EXPECT_EQ(readText(kept), left) << at;
    }
    EXPECT_EQ(countWith(left, sound.size() - 10), 28U)
        << "the writer may not have lived to end the last frame";
    EXPECT_THAT(warnings.lines, IsEmpty());
    EXPECT_EQ(countWith("", 0), 0U) << "a full log beside an empty file is damage";
    EXPECT_EQ(readText(folder / "store.db.broken-5-wal"), sound);
    fs::remove(file);
    writeText(log, sound);
    EXPECT_EQ(count(), 0U) << "and so it is beside none";
    EXPECT_EQ(readText(folder / "store.db.broken-6-wal"), sound);
}

TEST_F(SandboxLedgerTest, NoDamageIsFatal) {
    fill(60);
    auto const sound = readText(file);
    for (std::size_t at = 0; at < sound.size(); at += at < 128 ? 5 : 379) {
        writeText(file, sound);
        damage(file, at);
        warnings.lines.clear();
        auto const opened = open();
        if (!opened) continue;
        EXPECT_TRUE(record(**opened)) << at;
        EXPECT_EQ((*opened)->records()->size(), warnings.lines.empty() ? 61U : 1U) << at;
    }
    for (std::size_t const length : {0UL, 100UL, 4096UL, sound.size() - 4096}) {
        writeText(file, sound.substr(0, length));
        warnings.lines.clear();
        EXPECT_TRUE(open());
        EXPECT_EQ(warnings.lines.empty(), length == 0) << length;
    }
}

// Names and numbers

TEST_F(SandboxLedgerTest, AnyNameIsAFilesName) {
    auto const previous = fs::current_path();
    fs::current_path(folder.path());
    for (auto const* name : {":memory:", "file:store.db?mode=memory"}) {
        { EXPECT_TRUE(record(**SandboxLedger::open(name))); }
        EXPECT_EQ((*SandboxLedger::open(name))->records()->size(), 1U) << name;
    }
    fs::current_path(previous);
}

TEST_F(SandboxLedgerTest, SaysWhenItsNumbersHaveComeToTheirEnd) {
    auto const ledger = *SandboxLedger::open(file, 8'999'999'999'999'999);
    EXPECT_TRUE(record(*ledger));
    EXPECT_EQ(ledger->recordPurchase({.productIdentifier = "p"}, true).error().message,
              file.string() + ": no number is left for a transaction");
    EXPECT_EQ(ledger->unfinished()->size(), 1U) << "what is there goes on";
}

TEST_F(SandboxLedgerTest, RestoringLeavesNoTrail) {
    std::int64_t last = 0;
    for (int run = 0; run < 3; ++run) {
        auto const ledger = *open();
        if (run == 0) {
            ASSERT_TRUE(*ledger->settle(ledger->recordPurchase({}, true)->identifier, State::purchasing, {}));
        }
        for (int i = 0; i < 5; ++i) {
            auto const restored = *ledger->restore(0);
            ASSERT_EQ(restored.size(), 1U);
            EXPECT_GT(restored[0].identifier, last) << "no number twice";
            last = restored[0].identifier;
            EXPECT_TRUE(ledger->finish(last));
        }
        EXPECT_LE(ledger->records()->size(), 3U);
    }
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

#include "tests/platform/storekit/StoreTestSupport.h"
#include "tests/support/FaultyDisk.h"

#include <algorithm>
#include <array>
#include <csignal>
#include <deque>
#include <map>
#include <sys/mman.h>
#include <sys/wait.h>

namespace trelundo {
namespace {

using State = SKPaymentTransactionState;
using Outcome = SandboxStore::Outcome;

constexpr std::size_t batchSize = 8;                                           // processes at a time
constexpr std::array<std::string_view, 3> products{"badge", "month", "coins"}; // as the scenario buys them

SandboxStore::Options optionsIn(std::filesystem::path const& folder) {
    return {.file = folder / "store.db", .configuration = catalogue(), .seed = 0};
}

/// What a run that may die at any moment has seen, in memory that outlives its process.
struct Journal : SKPaymentQueueMonitor {
    struct Entry {
        std::int64_t identifier = 0;
        State state = State::purchasing; // the last that was told
        std::string_view product;
        bool isFinished = false;
    };

    void transactionUpdated(std::string const& id, SKPaymentTransaction const& transaction) override {
        auto& entry = entryOf(id);
        entry.state = transaction.transactionState();
        entry.product = literal(transaction.payment()->productIdentifier());
    }
    void transactionFinished(std::string const& id, SKPaymentTransaction const&) override {
        entryOf(id).isFinished = true;
        finishing = {};
    }
    bool hasHeard(std::string_view product, State state) const {
        return std::ranges::any_of(
            entries, [&](auto const& each) { return each.product == product && each.state == state; });
    }
    static std::string_view literal(std::string_view product) {
        return *std::ranges::find(products, product);
    }

    std::array<Entry, 16> entries; // those without identifier are free
    std::size_t addedCount = 0;    // of the products
    std::string_view finishing;    // the product of a finish that has not returned
    bool isResumed = false;

private:
    Entry& entryOf(std::string const& id) {
        auto const identifier = std::stoll(id);
        auto& entry = *std::ranges::find_if(
            entries, [&](auto const& each) { return each.identifier == identifier || each.identifier == 0; });
        entry.identifier = identifier;
        return entry;
    }
};

struct Variant {
    bool finishes = true;
    bool approves = true;
};

/// Every kind of operation once or more. Calls `step` before everything that changes a file, from the
/// creation of the store to its end.
void performScenario(std::filesystem::path const& folder, Variant variant, Journal& journal,
                     std::function<void()> const& step) {
    FaultyDisk disk;
    disk.setJudge([&](FaultyDisk::Call call, std::string_view) {
        using Call = FaultyDisk::Call;
        if (call == Call::write || call == Call::truncate || call == Call::remove) step();
        return false;
    });
    auto const store = *SandboxStore::open(optionsIn(folder));
    auto const queue = make<SKPaymentQueue>();
    auto const buyer = make<RecordingObserver>();
    buyer->onUpdate = [&](SKPaymentQueue& told) {
        for (auto const& each : buyer->last) {
            auto const state = each->transactionState();
            if (!variant.finishes || state == State::purchasing || state == State::deferred) continue;
            journal.finishing = Journal::literal(each->payment()->productIdentifier());
            told.finishTransaction(each);
        }
    };
    queue->setMonitor(&journal);
    queue->setBackend(store.get());
    queue->addTransactionObserver(buyer);
    for (auto const kind : {Outcome::Kind::purchased, Outcome::Kind::deferred, Outcome::Kind::interrupted}) {
        store->setNextOutcome({.kind = kind});
        queue->add(paymentFor(std::string{products[journal.addedCount]}));
        ++journal.addedCount;
        RunLoop::main().runUntilIdle();
    }
    queue->restoreCompletedTransactions();
    RunLoop::main().runUntilIdle();
    EXPECT_TRUE(variant.approves ? store->approve() : store->decline());
    RunLoop::main().runUntilIdle();
    EXPECT_TRUE(store->resume());
    journal.isResumed = true;
    RunLoop::main().runUntilIdle();
    queue->setBackend(nullptr);
}

/// In memory that processes share.
std::shared_ptr<Journal> sharedJournal() {
    auto* const memory =
        ::mmap(nullptr, sizeof(Journal), PROT_READ | PROT_WRITE, MAP_SHARED | MAP_ANONYMOUS, -1, 0);
    return {new (memory) Journal, [](Journal* journal) { ::munmap(journal, sizeof(Journal)); }};
}

int countSteps(Variant variant) {
    TemporaryFolder const folder;
    Journal journal;
    int count = 0;
    performScenario(folder.path(), variant, journal, [&] { ++count; });
    return count;
}

/// A process that dies at one step, in a folder of its own, beside others until hasDied() waits for it.
struct DyingRun {
    DyingRun(Variant which, int step)
        : variant(which)
        , lastStep(step) {
        if (process != 0) return;
        int seen = 0;
        performScenario(folder.path(), variant, *journal, [&] {
            if (++seen == lastStep) ::kill(::getpid(), SIGKILL);
        });
        ::_exit(0);
    }

    bool hasDied() const {
        int status = 0;
        ::waitpid(process, &status, 0);
        return WIFSIGNALED(status) && WTERMSIG(status) == SIGKILL;
    }

    Variant variant;
    int lastStep;
    TemporaryFolder folder;
    std::shared_ptr<Journal> journal = sharedJournal();
    ::pid_t process = ::fork();
};

/// Whether a transaction last seen in `before` may be in `after` when it comes back.
bool mayBecome(State before, State after) {
    bool const isOpen = before == State::purchasing || before == State::deferred;
    return isOpen ? after != State::purchasing && after != State::restored : before == after;
}

/// The next run of the program.
class SandboxCrashTest : public SandboxTest {
protected:
    void check(DyingRun const& run) {
        SCOPED_TRACE("step " + std::to_string(run.lastStep));
        auto const& journal = *run.journal;
        open(optionsIn(run.folder.path()));
        EXPECT_EQ(warnings.lines, Lines{});
        for (std::size_t i = 0; i < journal.addedCount; ++i)
            EXPECT_TRUE(isRecorded(products[i])) << products[i];
        checkWhatComesBack(journal);
        observer->lines.clear();
        EXPECT_TRUE(store->resume());
        drain();
        EXPECT_TRUE(!journal.hasHeard("coins", State::failed) || isRecorded("coins", State::purchased))
            << "what was held back arrives in the end";
        EXPECT_TRUE(!journal.isResumed || observer->lines.empty()) << "and once only";
        observer->lines.clear();
        checkWhatIsOwned(restore().front(), journal);
        EXPECT_TRUE(run.variant.approves || !journal.hasHeard("month", State::purchased));
        close();
    }

    void checkWhatComesBack(Journal const& journal) const {
        std::map<std::int64_t, State> back;
        for (auto const records = *store->transactions(); auto const& each : records)
            if (!each.isFinished && !each.isHeld)
                back[std::stoll(each.transaction.key)] = each.transaction.state;
        EXPECT_EQ(queue->transactions().size(), back.size());
        for (auto const& told : journal.entries) {
            if (told.isFinished) {
                EXPECT_FALSE(back.contains(told.identifier))
                    << told.identifier << " came back after its finish";
            } else if (told.identifier != 0 && told.product != journal.finishing) {
                ASSERT_TRUE(back.contains(told.identifier)) << told.identifier << " is lost";
                EXPECT_TRUE(mayBecome(told.state, back[told.identifier])) << told.identifier;
            }
        }
    }

    void checkWhatIsOwned(std::string const& restored, Journal const& journal) const {
        for (std::string const product : {"badge", "month"}) { // coins are not restored
            bool const isOwned = restored.find(product + ":restored") != std::string::npos;
            EXPECT_TRUE(isOwned || !journal.hasHeard(product, State::purchased)) << product;
            EXPECT_EQ(isOwned, isRecorded(product, State::purchased)) << product;
        }
    }

    bool isRecorded(std::string_view product, std::optional<State> state = std::nullopt) const {
        return std::ranges::any_of(*store->transactions(), [&](auto const& each) {
            return each.transaction.payment.productIdentifier == product &&
                   each.transaction.state == state.value_or(each.transaction.state);
        });
    }
};

TEST_F(SandboxCrashTest, NothingIsLostOrRepeatedWhereverTheProcessDies) {
    std::deque<std::pair<Variant, int>> plan;
    for (Variant const variant : {Variant{true, true}, {true, false}, {false, true}, {false, false}}) {
        int const steps = countSteps(variant);
        EXPECT_GE(steps, 3 * 10) << "in the middle of every commit";
        for (int step = 1; step <= steps; ++step) plan.emplace_back(variant, step);
    }
    while (!plan.empty()) {
        std::deque<DyingRun> batch;
        for (; !plan.empty() && batch.size() < batchSize; plan.pop_front())
            batch.emplace_back(plan.front().first, plan.front().second);
        for (auto const& run : batch) {
            EXPECT_TRUE(run.hasDied()) << run.lastStep;
            check(run);
        }
        if (HasFatalFailure()) return;
    }
}

} // namespace
} // namespace trelundo

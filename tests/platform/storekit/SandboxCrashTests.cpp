#include "StoreTestSupport.h"

#include "trelundo/platform/storekit/sandbox/SandboxStore.h"

#include <algorithm>
#include <csignal>
#include <deque>
#include <fcntl.h>
#include <fstream>
#include <map>
#include <set>
#include <sstream>
#include <sys/wait.h>

namespace trelundo {
namespace {

using State = SKPaymentTransactionState;
using Outcome = SandboxStore::Outcome;

constexpr std::size_t batchSize = 8; // processes at a time

std::unique_ptr<SandboxStore> openStore(std::filesystem::path const& folder) {
    auto const catalogue = StoreConfiguration::parse(R"({"products": [
        {"productID": "coins", "displayPrice": "0.99", "type": "Consumable"},
        {"productID": "badge", "displayPrice": "9.99", "type": "NonConsumable"},
        {"productID": "frame", "displayPrice": "9.99", "type": "NonConsumable"}]})",
                                                     "shop");
    return *SandboxStore::open({.file = folder / "store.db", .configuration = *catalogue, .seed = 0});
}

/// What a run that may die at any moment has seen; written line by line past all buffers.
class Journal : public SKPaymentQueueMonitor {
public:
    explicit Journal(std::filesystem::path const& file)
        : file_(::open(file.c_str(), O_WRONLY | O_CREAT | O_APPEND, 0600)) {}
    ~Journal() override { ::close(file_); }
    Journal(Journal const&) = delete;
    Journal& operator=(Journal const&) = delete;

    void write(std::string line) const {
        line += '\n';
        if (::write(file_, line.data(), line.size()) < 0) ::_exit(3);
    }
    void transactionUpdated(std::string const& id, SKPaymentTransaction const& transaction) override {
        write("told " + id + " " + std::to_string(static_cast<int>(transaction.transactionState())) + " " +
              transaction.payment()->productIdentifier());
    }
    void transactionFinished(std::string const& id, SKPaymentTransaction const&) override {
        write("finished " + id);
    }

private:
    int file_;
};

struct Variant {
    bool finishes = true;
    bool approves = true;
};

/// Every kind of operation once or more. Calls `step` before and after what makes an operation durable, from
/// the creation of the store's file to the last commit.
void performScenario(std::filesystem::path const& folder, Variant variant,
                     std::function<void()> const& step) {
    DatabaseProbe const probe{[&](std::string_view sql, bool hasEnded) {
        if (sql.starts_with("COMMIT") || (sql.starts_with("BEGIN") && !hasEnded)) step();
    }};
    Journal journal{folder / "journal"};
    auto const store = openStore(folder);
    auto const queue = make<SKPaymentQueue>();
    auto const buyer = make<RecordingObserver>();
    buyer->onUpdate = [&](SKPaymentQueue& told) {
        for (auto const& each : buyer->last) {
            auto const state = each->transactionState();
            if (!variant.finishes || state == State::purchasing || state == State::deferred) continue;
            journal.write("finishing " + each->payment()->productIdentifier());
            told.finishTransaction(each);
        }
    };
    queue->setMonitor(&journal);
    queue->setBackend(store.get());
    queue->addTransactionObserver(buyer);
    auto const buy = [&](char const* product, Outcome::Kind kind) {
        store->setNextOutcome({.kind = kind});
        queue->add(paymentFor(product));
        journal.write(std::string{"added "} + product);
        RunLoop::main().runUntilIdle();
    };
    buy("badge", Outcome::Kind::purchased);
    buy("frame", Outcome::Kind::deferred);
    buy("coins", Outcome::Kind::interrupted);
    queue->restoreCompletedTransactions();
    RunLoop::main().runUntilIdle();
    EXPECT_TRUE(variant.approves ? store->approve() : store->decline());
    RunLoop::main().runUntilIdle();
    EXPECT_TRUE(store->resume());
    journal.write("resumed");
    RunLoop::main().runUntilIdle();
    queue->setBackend(nullptr);
}

int countSteps(Variant variant) {
    TemporaryFolder const folder;
    int count = 0;
    performScenario(folder.path(), variant, [&] { ++count; });
    return count;
}

/// A process that dies at one step, in a folder of its own, beside others until hasDied() waits for it.
class DyingRun {
public:
    DyingRun(Variant which, int step)
        : variant(which)
        , lastStep(step)
        , process_(::fork()) {
        if (process_ != 0) return;
        int seen = 0;
        performScenario(folder(), variant, [&] {
            if (++seen == lastStep) ::kill(::getpid(), SIGKILL);
        });
        ::_exit(0);
    }

    bool hasDied() const {
        int status = 0;
        ::waitpid(process_, &status, 0);
        return WIFSIGNALED(status) && WTERMSIG(status) == SIGKILL;
    }
    std::filesystem::path const& folder() const { return folder_.path(); }

    Variant const variant;
    int const lastStep;

private:
    TemporaryFolder folder_;
    ::pid_t process_;
};

/// The journal of a run, sorted out.
struct Account {
    struct Told {
        State state = {};
        std::string product;
    };
    std::map<std::string, Told> told; // the last word, by identifier
    std::set<std::string> finished;
    std::string unsure; // product of a finish that did not return
    std::vector<std::string> added;
    bool isResumed = false;

    explicit Account(std::filesystem::path const& file) {
        std::ifstream stream{file};
        for (std::string line; std::getline(stream, line);) read(line);
    }

    bool hasHeard(std::string const& product, State state) const {
        return std::ranges::any_of(told, [&](auto const& each) {
            return each.second.product == product && each.second.state == state;
        });
    }

private:
    void read(std::string const& line) {
        std::istringstream words{line};
        std::string kind;
        std::string word;
        int state = 0;
        words >> kind >> word;
        if (kind == "told")
            words >> state >> told[word].product, told[word].state = static_cast<State>(state);
        if (kind == "finishing") unsure = word;
        if (kind == "finished") finished.insert(word), unsure.clear();
        if (kind == "added") added.push_back(word);
        if (kind == "resumed") isResumed = true;
    }
};

/// Whether a transaction last seen in `before` may be in `after` when it comes back.
bool mayBecome(State before, State after) {
    if (before == State::purchasing) return after != State::restored;
    if (before == State::deferred) return after != State::purchasing && after != State::restored;
    return before == after;
}

/// The next run of the program.
class SandboxCrashTest : public StoreTest {
protected:
    void check(DyingRun const& run) {
        SCOPED_TRACE("step " + std::to_string(run.lastStep));
        Account const account{run.folder() / "journal"};
        auto const store = openStore(run.folder());
        EXPECT_TRUE(warnings.lines.empty()) << warnings.lines.front();
        auto const records = *store->transactions();
        for (auto const& product : account.added)
            EXPECT_TRUE(std::ranges::any_of(records, [&](auto const& each) {
                return each.transaction.payment.productIdentifier == product;
            })) << product;

        auto const queue = make<SKPaymentQueue>();
        auto const observer = make<RecordingObserver>();
        queue->setBackend(store.get());
        queue->addTransactionObserver(observer);
        drain();
        checkWhatComesBack(*store, *queue, account);
        observer->lines.clear();
        EXPECT_TRUE(store->resume());
        drain();
        EXPECT_TRUE(!account.hasHeard("coins", State::failed) || isSold(*store, "coins"))
            << "what was held back arrives in the end";
        EXPECT_TRUE(!account.isResumed || observer->lines.empty()) << "and once only";
        observer->lines.clear();
        queue->restoreCompletedTransactions();
        drain();
        checkWhatIsOwned(*store, observer->lines.front(), account);
        EXPECT_TRUE(run.variant.approves || !account.hasHeard("frame", State::purchased));
        queue->setBackend(nullptr);
    }

    static void checkWhatComesBack(SandboxStore const& store, SKPaymentQueue const& queue,
                                   Account const& account) {
        std::map<std::string, State> back;
        auto const records = *store.transactions();
        for (auto const& each : records)
            if (!each.isFinished && !each.isHeld) back[each.transaction.key] = each.transaction.state;
        EXPECT_EQ(queue.transactions().size(), back.size());
        for (auto const& [id, told] : account.told) {
            if (account.finished.contains(id)) {
                EXPECT_FALSE(back.contains(id)) << id << " came back after its finish";
            } else if (told.product != account.unsure) {
                ASSERT_TRUE(back.contains(id)) << id << " is lost";
                EXPECT_TRUE(mayBecome(told.state, back[id])) << id;
            }
        }
    }

    static void checkWhatIsOwned(SandboxStore const& store, std::string const& restored,
                                 Account const& account) {
        for (std::string const product : {"badge", "frame"}) {
            bool const isOwned = restored.find(product + ":restored") != std::string::npos;
            EXPECT_TRUE(isOwned || !account.hasHeard(product, State::purchased)) << product;
            EXPECT_EQ(isOwned, isSold(store, product)) << product;
        }
    }

    static bool isSold(SandboxStore const& store, std::string const& product) {
        auto const records = *store.transactions();
        return std::ranges::any_of(records, [&](auto const& each) {
            return each.transaction.payment.productIdentifier == product &&
                   each.transaction.state == State::purchased;
        });
    }

    RecordedWarnings warnings;
};

TEST_F(SandboxCrashTest, NothingIsLostOrRepeatedWhereverTheProcessDies) {
    std::deque<std::pair<Variant, int>> plan;
    for (Variant const variant : {Variant{true, true}, {true, false}, {false, true}, {false, false}}) {
        int const steps = countSteps(variant);
        EXPECT_GE(steps, 3 * 10) << "before, inside and after every commit";
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

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

constexpr std::size_t runCount = 200;
constexpr std::size_t batchSize = 8; // processes at a time

StoreConfiguration catalogue() {
    return *StoreConfiguration::parse(R"({"products": [
        {"productID": "coins", "displayPrice": "0.99", "type": "Consumable"},
        {"productID": "badge", "displayPrice": "9.99", "type": "NonConsumable"},
        {"productID": "frame", "displayPrice": "9.99", "type": "NonConsumable"}]})",
                                      "shop")
                .configuration;
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

/// Every kind of operation once or more, on a store that calls `hook` at each step.
void performScenario(std::filesystem::path const& folder, Variant variant,
                     std::function<void(std::string_view)> hook) {
    Journal journal{folder / "journal"};
    auto const opened = SandboxStore::open(
        {.file = folder / "store.db", .configuration = catalogue(), .seed = 0, .stepHook = std::move(hook)});
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
    auto& store = *opened.store;
    queue->setMonitor(&journal);
    queue->setBackend(&store);
    queue->addTransactionObserver(buyer);
    auto const buy = [&](char const* product, SandboxStore::Outcome::Kind kind) {
        store.setNextOutcome({.kind = kind});
        queue->add(paymentFor(product));
        journal.write(std::string{"added "} + product);
        RunLoop::main().runUntilIdle();
    };
    buy("badge", SandboxStore::Outcome::Kind::purchased);
    buy("frame", SandboxStore::Outcome::Kind::deferred);
    buy("coins", SandboxStore::Outcome::Kind::interrupted);
    queue->restoreCompletedTransactions();
    RunLoop::main().runUntilIdle();
    variant.approves ? store.approve() : store.decline();
    RunLoop::main().runUntilIdle();
    store.resume();
    journal.write("resumed");
    RunLoop::main().runUntilIdle();
    queue->setBackend(nullptr);
}

struct Death {
    std::string step;
    int occurrence = 1;
};

/// One death, in a folder of its own. The process runs beside others until ended() waits for it.
class DyingRun {
public:
    DyingRun(Variant variant, Death death)
        : variant_(variant)
        , death_(std::move(death))
        , process_(::fork()) {
        if (process_ != 0) return;
        int seen = 0;
        performScenario(folder_.path(), variant_, [&](std::string_view step) {
            if (step == death_.step && ++seen == death_.occurrence) ::kill(::getpid(), SIGKILL);
        });
        ::_exit(0);
    }

    /// Whether the process has died at its step.
    bool hasDied() const {
        int status = 0;
        ::waitpid(process_, &status, 0);
        return WIFSIGNALED(status) && WTERMSIG(status) == SIGKILL;
    }
    std::filesystem::path const& folder() const { return folder_.path(); }
    Variant variant() const { return variant_; }
    std::string place() const { return death_.step + " " + std::to_string(death_.occurrence); }

private:
    TemporaryFolder folder_;
    Variant variant_;
    Death death_;
    ::pid_t process_;
};

/// Every step of the scenario, as often as it comes.
std::vector<Death> deathsOf(Variant variant) {
    TemporaryFolder const folder;
    std::map<std::string, int, std::less<>> counts;
    performScenario(folder.path(), variant, [&](std::string_view step) { ++counts[std::string{step}]; });
    std::vector<Death> deaths;
    for (auto const& step : SandboxStore::steps()) {
        for (int i = 1; i <= counts[step]; ++i) deaths.push_back({step, i});
    }
    return deaths;
}

/// The journal of a run, sorted out.
struct Account {
    struct Told {
        int state = 0;
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

    bool wasSold(std::string const& product) const {
        return std::ranges::any_of(told, [&](auto const& each) {
            return each.second.product == product && each.second.state == static_cast<int>(State::purchased);
        });
    }

private:
    void read(std::string const& line) {
        std::istringstream words{line};
        std::string kind;
        std::string word;
        words >> kind >> word;
        if (kind == "told") words >> told[word].state >> told[word].product;
        if (kind == "finishing") unsure = word;
        if (kind == "finished") {
            finished.insert(word);
            unsure.clear();
        }
        if (kind == "added") added.push_back(word);
        if (kind == "resumed") isResumed = true;
    }
};

/// Whether a transaction last seen in `before` may be in `after` when it comes back.
bool mayBecome(int before, int after) {
    auto const state = static_cast<State>(before);
    if (state == State::purchasing) return after != static_cast<int>(State::restored);
    if (state == State::deferred) return after == 1 || after == 2 || after == 4;
    return before == after;
}

class SandboxCrashTest : public StoreTest {
protected:
    /// The next run of the program: what comes back by itself, then after resuming and restoring.
    void check(std::filesystem::path const& folder, Variant variant, std::string const& place) {
        SCOPED_TRACE(place);
        Account const account{folder / "journal"};
        auto opened =
            SandboxStore::open({.file = folder / "store.db", .configuration = catalogue(), .seed = 0});
        ASSERT_TRUE(opened.store) << opened.error;
        EXPECT_EQ(opened.warning, "");
        auto const records = opened.store->transactions();
        for (auto const& product : account.added)
            EXPECT_TRUE(std::ranges::any_of(records, [&](auto const& each) {
                return each.transaction.payment.productIdentifier == product;
            })) << product;

        auto const queue = make<SKPaymentQueue>();
        auto const observer = make<RecordingObserver>();
        queue->setBackend(opened.store.get());
        queue->addTransactionObserver(observer);
        drain();
        std::map<std::string, int> back;
        for (auto const& each : opened.store->transactions()) {
            if (!each.isFinished && !each.isHeld)
                back[each.transaction.key] = static_cast<int>(each.transaction.state);
        }
        EXPECT_EQ(queue->transactions().size(), back.size());
        for (auto const& [id, told] : account.told) {
            if (account.finished.contains(id)) {
                EXPECT_FALSE(back.contains(id)) << id << " came back after its finish";
            } else if (told.product != account.unsure) {
                ASSERT_TRUE(back.contains(id)) << id << " is lost";
                EXPECT_TRUE(mayBecome(told.state, back[id])) << id;
            }
        }
        checkEntitlements(*opened.store, *queue, *observer, account, variant);
        queue->setBackend(nullptr);
    }

    void checkEntitlements(SandboxStore& store, SKPaymentQueue& queue, RecordingObserver& observer,
                           Account const& account, Variant variant) {
        observer.lines.clear();
        EXPECT_TRUE(store.resume());
        drain();
        auto const sold = [&](char const* product) {
            return std::ranges::any_of(store.transactions(), [&](auto const& each) {
                return each.transaction.payment.productIdentifier == product &&
                       each.transaction.state == State::purchased;
            });
        };
        bool const wasInterrupted = std::ranges::any_of(account.told, [](auto const& each) {
            return each.second.product == "coins" && each.second.state == 2;
        });
        EXPECT_TRUE(!wasInterrupted || sold("coins")) << "what was held back arrives in the end";
        EXPECT_TRUE(!account.isResumed || observer.lines.empty()) << "and once only";

        observer.lines.clear();
        queue.restoreCompletedTransactions();
        drain();
        std::string const restored = observer.lines.empty() ? "" : observer.lines.front();
        for (auto const* product : {"badge", "frame"}) {
            bool const isOwned = restored.find(std::string{product} + ":restored") != std::string::npos;
            EXPECT_TRUE(isOwned || !account.wasSold(product)) << product;
            EXPECT_EQ(isOwned, sold(product)) << product;
        }
        EXPECT_TRUE(variant.approves || !account.wasSold("frame"));
    }
};

TEST_F(SandboxCrashTest, NothingIsLostOrRepeatedWhereverTheProcessDies) {
    std::vector<std::pair<Variant, Death>> plan;
    for (bool const finishes : {true, false})
        for (bool const approves : {true, false})
            for (auto const& death : deathsOf({finishes, approves}))
                plan.emplace_back(Variant{finishes, approves}, death);
    std::set<std::string> steps;
    for (auto const& each : plan) steps.insert(each.second.step);
    EXPECT_EQ(steps.size(), SandboxStore::steps().size()) << "the scenario passes every step";
    EXPECT_LE(plan.size(), runCount) << "and every passage is a death";

    for (std::size_t begin = 0; begin < runCount; begin += batchSize) {
        std::deque<DyingRun> batch;
        for (auto i = begin; i < begin + batchSize; ++i)
            batch.emplace_back(plan[i % plan.size()].first, plan[i % plan.size()].second);
        for (auto const& run : batch) {
            EXPECT_TRUE(run.hasDied()) << run.place();
            check(run.folder(), run.variant(), run.place());
        }
        if (HasFatalFailure()) return;
    }
}

} // namespace
} // namespace trelundo

#include "tests/platform/storekit/StoreTestSupport.h"

#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <sys/wait.h>
#include <unistd.h>

namespace {

int remaining = 0; // allocations before the one that fails, and that one; 0: none fails
bool hasFailed = false;

} // namespace

[[gnu::noinline]] void* operator new(std::size_t size) {
    if (remaining == 1) hasFailed = true;
    auto* const memory = remaining > 0 && --remaining == 0 ? nullptr : std::malloc(size == 0 ? 1 : size);
    return memory ? memory : throw std::bad_alloc{};
}
[[gnu::noinline]] void operator delete(void* memory) noexcept { std::free(memory); }
[[gnu::noinline]] void operator delete(void* memory, std::size_t) noexcept { std::free(memory); }

namespace trelundo {
namespace {

constexpr auto products = R"({"products": [{"productID": "badge", "displayPrice": "9.99"}]})";

/// What becomes of a process in which an allocation of an operation fails.
enum class End : int { untouched, survived, escaped, stopped, other };

End endOf(std::function<void()> const& operation, int number) {
    auto const child = ::fork();
    if (child == 0) {
        setWarningSink(nullptr); // the recording one needs memory
        if (!std::freopen("/dev/null", "w", stderr)) ::_exit(static_cast<int>(End::other));
        auto end = End::other;
        try {
            remaining = number;
            operation();
            end = hasFailed ? End::survived : End::untouched;
        } catch (std::bad_alloc const&) {
            end = End::escaped;
        }
        ::_exit(static_cast<int>(end));
    }
    int status = 0;
    ::waitpid(child, &status, 0);
    if (WIFSIGNALED(status)) return WTERMSIG(status) == SIGABRT ? End::stopped : End::other;
    return static_cast<End>(WEXITSTATUS(status));
}

using MemoryTest = SandboxTest;

/// Fails every allocation of every operation, one at a time.
TEST_F(MemoryTest, AnOperationWithoutMemoryFailsOrEndsTheProgram) {
    open();
    store->setNextOutcome({.kind = SandboxStore::Outcome::Kind::deferred});
    buy("badge");
    std::filesystem::path const nowhere = "/nowhere/store";
    auto const payment = paymentFor("badge");
    std::function<void()> const operations[] = {
        [] { static_cast<void>(StoreConfiguration::parse(products, "shop")); },
        [] { static_cast<void>(SandboxStore::open({})); },
        [&] { static_cast<void>(SandboxStore::read(nowhere)); },
        [&] { static_cast<void>(store->transactions()); },
        [&] { static_cast<void>(store->approve()); },
        [&] { static_cast<void>(store->clear()); },
        [&] { queue->add(payment), drain(); },
        [&] { queue->restoreCompletedTransactions(), drain(); },
        [&] { queue->finishTransaction(observer->last.at(0)); },
        [&] { queue->setBackend(nullptr); },
        [&] { queue->addTransactionObserver(observer); },
    };
    int failures = 0;
    for (auto const& operation : operations) {
        auto end = End::survived;
        for (int number = 1; end != End::untouched; ++number, ++failures) {
            end = endOf(operation, number);
            ASSERT_TRUE(end != End::escaped && end != End::other)
                << "operation " << &operation - operations << ", allocation " << number;
        }
    }
    EXPECT_GT(failures, 100);
}

} // namespace
} // namespace trelundo

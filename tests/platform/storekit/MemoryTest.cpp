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

/// A sandbox behind a queue, with a purchase that waits for approval.
struct Shop {
    Shop() {
        queue->setBackend(store.get());
        queue->addTransactionObserver(observer);
        store->setNextOutcome({.kind = SandboxStore::Outcome::Kind::deferred});
        queue->add(paymentFor("badge"));
        RunLoop::main().runUntilIdle();
    }
    ~Shop() { queue->setBackend(nullptr); }

    std::unique_ptr<SandboxStore> store =
        *SandboxStore::open({.configuration = *StoreConfiguration::parse(products, "shop"), .seed = 0});
    Ref<SKPaymentQueue> queue = make<SKPaymentQueue>();
    Ref<RecordingObserver> observer = make<RecordingObserver>();
    Ref<SKPayment> payment = paymentFor("badge");
};

/// What becomes of a process in which an allocation of an operation fails.
enum class End : int { untouched, survived, escaped, stopped, other };

End endOf(std::function<void(Shop&)> const& operation, int number) {
    auto const child = ::fork();
    if (child == 0) {
        Shop shop;
        if (!std::freopen("/dev/null", "w", stderr)) ::_exit(static_cast<int>(End::other));
        auto end = End::other;
        try {
            remaining = number;
            operation(shop);
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

/// Fails every allocation of every operation, one at a time.
TEST(MemoryTest, AnOperationWithoutMemoryFailsOrEndsTheProgram) {
    auto const drain = [] { RunLoop::main().runUntilIdle(); };
    std::filesystem::path const nowhere = "/nowhere/store";
    std::function<void(Shop&)> const operations[] = {
        [](Shop&) { static_cast<void>(StoreConfiguration::parse(products, "shop")); },
        [](Shop&) { static_cast<void>(SandboxStore::open({})); },
        [&](Shop&) { static_cast<void>(SandboxStore::read(nowhere)); },
        [](Shop& shop) { static_cast<void>(shop.store->transactions()); },
        [](Shop& shop) { static_cast<void>(shop.store->approve()); },
        [](Shop& shop) { static_cast<void>(shop.store->clear()); },
        [&](Shop& shop) { shop.queue->add(shop.payment), drain(); },
        [&](Shop& shop) { shop.queue->restoreCompletedTransactions(), drain(); },
        [](Shop& shop) { shop.queue->finishTransaction(shop.observer->last.at(0)); },
        [](Shop& shop) { shop.queue->setBackend(nullptr); },
        [](Shop& shop) { shop.queue->addTransactionObserver(shop.observer); },
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

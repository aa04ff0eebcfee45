#include "trelundo/platform/foundation/internal/Context.h"
#include "trelundo/platform/foundation/MainThread.h"

#include "trelundo/platform/foundation/Clock.h"
#include "trelundo/platform/foundation/internal/DispatchQueueState.h"

#include <atomic>

namespace trelundo {

namespace {

thread_local Context* scoped = nullptr; // by the innermost scope; set on the main thread only

std::atomic<Context*> chosenContext = nullptr; // outside of all scopes

/// The contexts of living shells, the chosen one last.
std::vector<Context*>& living() {
    static auto& contexts = *new std::vector<Context*>; // outlives every shell of static lifetime
    return contexts;
}

/// Another context is chosen, or none: what belongs to nobody goes over into its time.
void follow(std::vector<Context*> const& contexts) {
    auto const before = Context::clockOf(nullptr).now();
    chosenContext = contexts.empty() ? nullptr : contexts.back();
    DispatchQueue::main().state().shift(Context::clockOf(nullptr).now() - before);
}

} // namespace

Context::Context(Clock* clock)
    : clock_(clock) {}

/// The parts that were made last go first: they may know earlier ones.
Context::~Context() {
    while (!parts_.empty()) parts_.pop_back();
}

Context& Context::process() {
    static auto& context = *new std::shared_ptr<Context>(std::make_shared<Context>(nullptr));
    context->isNobodys_ = true;
    return *context;
}

Context& Context::current() {
    if (scoped) return *scoped;
    auto* const context = chosenContext.load();
    return context ? *context : process();
}

Context* Context::owner() {
    if (scoped) return scoped->isNobodys_ ? nullptr : scoped;
    return isMainThread() ? chosenContext.load() : nullptr;
}

Clock& Context::currentClock() { return clockOf(scoped); }

Clock& Context::clockOf(Context const* context) {
    if (!context) context = chosenContext.load();
    return resolvedClock(context ? context->clock_ : nullptr);
}

void Context::choose() {
    std::erase(living(), this);
    living().push_back(this);
    follow(living());
}

void Context::end() {
    std::erase(living(), this);
    follow(living());
    DispatchQueue::main().state().release(*this);
    clock_ = nullptr;
    isNobodys_ = true;
}

std::shared_ptr<void>& Context::placeOf(std::size_t slot) {
    if (slot >= parts_.size()) parts_.resize(slot + 1);
    return parts_[slot];
}

ContextScope::ContextScope(Context* context)
    : context_(context ? context->shared_from_this() : nullptr)
    , previous_(scoped) {
    if (context) scoped = context;
}

ContextScope::~ContextScope() { scoped = previous_; }

} // namespace trelundo

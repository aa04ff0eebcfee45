#include "tools/paywall/script/StoreSteps.h"

#include "tools/paywall/screens/PropertyValues.h"
#include "tools/paywall/script/StepArguments.h"

namespace trelundo::paywall {

namespace {

/// The error code after `failed`.
int failureCode(Step const& step) {
    if (step.arguments.size() < 3) fail(step, "the error code is missing");
    return parsed(step, 2, parseInteger);
}

SandboxStore::Outcome purchaseOutcome(Step const& step) {
    using Kind = SandboxStore::Outcome::Kind;
    auto const& name = argument(step, 1);
    if (name == "purchased") return {.kind = Kind::purchased};
    if (name == "failed") return {.kind = Kind::failed, .code = failureCode(step)};
    if (name == "failed-without-error") return {.kind = Kind::failedWithoutError};
    if (name == "deferred") return {.kind = Kind::deferred};
    if (name == "cancelled") return {.kind = Kind::cancelled};
    fail(step, "unknown outcome of a purchase");
}

SandboxStore::RestoreOutcome restoreOutcome(Step const& step) {
    using Kind = SandboxStore::RestoreOutcome::Kind;
    auto const& name = argument(step, 1);
    if (name == "all") return {.kind = Kind::all};
    if (name == "nothing") return {.kind = Kind::nothing};
    if (name == "failed") return {.kind = Kind::failed, .code = failureCode(step)};
    if (name == "failed-without-error") return {.kind = Kind::failedWithoutError};
    fail(step, "unknown outcome of a restore");
}

void checkArguments(Step const& step) {
    auto const& change = argument(step, 0);
    bool const hasOutcome = change == "next" || change == "restore";
    std::size_t expected = hasOutcome || change == "promote" ? 2 : 1;
    if (step.arguments.size() < expected) fail(step, "an argument is missing");
    if (hasOutcome && argument(step, 1) == "failed") ++expected;
    if (step.arguments.size() > expected) fail(step, "there are too many arguments");
}

void require(Step const& step, Result<void> const& change) {
    performed(step, [&] { valueOrFail(change); });
}

} // namespace

void changeStore(SandboxStore& store, Step const& step) {
    auto const& change = argument(step, 0);
    checkArguments(step);

    if (change == "next")
        store.setNextOutcome(purchaseOutcome(step));
    else if (change == "restore")
        store.setRestoreOutcome(restoreOutcome(step));
    else if (change == "interrupt")
        store.interruptNext();
    else if (change == "resume")
        require(step, store.resume());
    else if (change == "approve")
        require(step, store.approve());
    else if (change == "decline")
        require(step, store.decline());
    else if (change == "promote")
        require(step, store.promote(argument(step, 1)));
    else
        fail(step, "unknown change of the store");
}

} // namespace trelundo::paywall

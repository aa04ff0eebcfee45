#pragma once

#include "tools/paywall/script/Script.h"
#include "trelundo/platform/storekit/sandbox/SandboxStore.h"

namespace trelundo::paywall {

/// Performs a `store` step. What the store refuses throws a Failure that names the step.
void changeStore(SandboxStore& store, Step const& step);

} // namespace trelundo::paywall

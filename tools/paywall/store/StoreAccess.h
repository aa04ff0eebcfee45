#pragma once

#include "tools/paywall/Options.h"
#include "trelundo/platform/storekit/SKPayment.h"
#include "trelundo/platform/storekit/sandbox/SandboxStore.h"

#include <memory>
#include <string>

namespace trelundo::paywall {

/// The catalogue that the options name, or the built-in one. Unusable input throws a Failure; what was left
/// out of a usable file is told on standard error.
StoreConfiguration loadCatalogue(std::optional<std::string> const& path);

/// The sandbox store that the options ask for. An unusable store file throws a Failure.
std::unique_ptr<SandboxStore> openSandbox(Options const& options);

/// The same with a catalogue that is loaded already; none for a look into a store file.
std::unique_ptr<SandboxStore> openSandbox(Options const& options,
                                          std::optional<StoreConfiguration> configuration);

/// A payment discount for `offer`, signed as the sandbox accepts it.
Ref<SKPaymentDiscount> signedDiscount(std::string const& offer);

} // namespace trelundo::paywall

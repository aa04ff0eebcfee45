#pragma once

#include "trelundo/platform/storekit/SKProduct.h"

#include <vector>

namespace trelundo {

/// Products in an order that matters: the host's, or that of a screen's rows.
using Products = std::vector<Ref<SKProduct>>;

} // namespace trelundo

#include "trelundo/platform/storekit/SKPayment.h"

#include "trelundo/platform/storekit/SKProduct.h"

namespace trelundo {

SKPayment::SKPayment(SKProduct const& product)
    : fields_{.productIdentifier = product.productIdentifier()} {}

} // namespace trelundo

#include "trelundo/platform/storekit/sandbox/internal/LedgerRecord.h"

#include <string>

namespace trelundo {

StoreTransaction LedgerRecord::report() const {
    bool const isHeld = state == LedgerState::held;
    StoreTransaction report{.key = std::to_string(identifier),
                            .payment = payment,
                            .state = isHeld ? SKPaymentTransactionState::purchasing
                                            : static_cast<SKPaymentTransactionState>(state),
                            .error = error};
    if (state == LedgerState::purchased || state == LedgerState::restored)
        report.transactionIdentifier = report.key;
    report.date = date.value_or(0);
    if (original) report.originalIdentifier = std::to_string(*original);
    report.originalDate = originalDate;
    return report;
}

} // namespace trelundo

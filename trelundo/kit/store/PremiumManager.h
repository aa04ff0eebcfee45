#pragma once

#include "trelundo/kit/store/Entitlements.h"
#include "trelundo/kit/store/PremiumManagerDelegate.h"
#include "trelundo/platform/foundation/NumberFormatter.h"
#include "trelundo/platform/storekit/SKProductsRequest.h"

#include <functional>

namespace trelundo {

enum class PremiumManagerState : int { notStarted = 0, loading = 1, loaded = 2, failed = 3 };
/// None for any value but 0 to 3.
std::optional<PremiumManagerState> premiumManagerState(int rawValue);

/// The one store client of the process. Set the delegate, call start() with the product identifiers, wait for
/// premiumManagerDidLoadProducts(), then present a screen; screens buy and restore through it. It observes
/// the default payment queue from its creation, so transactions of earlier runs reach it at any time.
class PremiumManager : public NSObject,
                       public SKProductsRequestDelegate,
                       public SKPaymentTransactionObserver {
public:
    /// success: only for a purchased transaction; payment: the transaction's, or the one passed in when the
    /// device cannot pay; deferred: waiting for approval; error: of a failed transaction, null otherwise and
    /// when the store gave none.
    using BuyCompletion = std::function<void(bool success, Ref<SKPayment> const& payment, bool deferred,
                                             Ref<NSError> const& error)>;
    /// success: whether the store came to the end of the restore, also when it gave nothing back; error: why
    /// it did not, null when the store gave none.
    using RestoreCompletion = std::function<void(bool success, Ref<NSError> const& error)>;

    /// A payment and who asked for it. The texts travel in the events.
    struct Purchase {
        Ref<SKPayment> payment;
        std::string source;
        std::string screen;
        std::string premiumId;
        std::string abTest;
        BuyCompletion completion = nullptr;
    };
    struct Price {
        Decimal price;
        Locale priceLocale;
        int div = 1;
        NumberFormatter::RoundingMode roundingMode = NumberFormatter::RoundingMode::down;
    };
    struct Period {
        SKProductPeriodUnit unit;
        int numberOfPeriods;
        bool capitalizeFirstLetter = false;
    };

    PremiumManager();
    ~PremiumManager() override;
    /// Created on first access, once, from any thread. On the main thread it observes the default queue when
    /// this returns, elsewhere from the next turn of the main queue on. Everything else is for the main
    /// thread.
    static PremiumManager& sharedInstance();

    Ref<PremiumManagerDelegate> delegate() const { return delegate_.lock(); }
    void setDelegate(Weak<PremiumManagerDelegate> delegate) { delegate_ = std::move(delegate); }
    PremiumManagerState state() const { return state_; }
    void setState(PremiumManagerState state) { state_ = state; }
    Ref<SKProductsRequest> productsRequest() const { return productsRequest_; }
    std::vector<std::string> const& productIdentifiers() const { return productIdentifiers_; }
    Products const& products() const { return products_; }
    /// The delegate's, asked each time; absent without a delegate.
    std::optional<std::string> applicationUsername() const;

    /// Keeps what transactions say before they are finished; one that could not be kept is not finished and
    /// comes again in another run. Null, as at first: nothing is kept.
    void setEntitlements(Ref<Entitlements> entitlements) { entitlements_ = std::move(entitlements); }
    Ref<Entitlements> const& entitlements() const { return entitlements_; }

    /// Loads the catalogue, in the order of the identifiers. Does nothing while loading or once loaded; a
    /// failed load may be started again.
    void start(std::vector<std::string> productIdentifiers);

    /// Buys. Whatever comes of it, texts and completion take the place of those of the call before, whose
    /// completion is not called any more. The completion stays: it hears of every transaction that ends or is
    /// deferred from now on, in later turns of the main queue, so it may be called several times (deferred,
    /// then approved) and for purchases of earlier calls or runs. Only where the device cannot pay it is
    /// called inside this call, which then returns false. An absent payment counts as started: nothing is
    /// added, and the completion hears of what the store has begun.
    bool purchase(Purchase purchase);
    /// Brings back what the user owns. The completion takes the place of the one before, which is not called
    /// any more, and stays: each end of a restore calls it, in a later turn of the main queue. That is once
    /// for a call, also where nothing comes back or the restore fails; once more when another restore was
    /// still running; and once for restored transactions that an earlier run left unfinished.
    void restore(std::string const& source, RestoreCompletion completion);
    /// Inside a buy completion the transaction that it tells of; null otherwise, and for a payment that the
    /// device refused.
    Ref<SKPaymentTransaction> const& reportedTransaction() const { return reportedTransaction_; }
    /// What the last restore has given back so far, in the order in which it came.
    SKPaymentTransactions const& restoredTransactions() const { return restoredTransactions_; }
    /// Whether a purchase or restore ended by the user's own cancelling: no failure to tell of.
    static bool isCancellation(NSError const& error);

    /// `price / div` as a currency text of at most two fraction digits.
    static std::string price(Price const& price);
    /// The share of a product's price, or of one of its discounts', rounded down. Both are shown in the
    /// product's locale, whatever the discount's own.
    static std::string price(SKProduct const& product, int div = 1);
    static std::string price(SKProductDiscount const& discount, SKProduct const& product, int div = 1);
    /// Such as "1 week" or "3 Months"; empty for an unknown unit.
    static std::string period(Period const& period);

    // The store framework's callbacks.
    void productsRequestDidReceive(SKProductsRequest& request, SKProductsResponse const& response) override;
    void requestDidFinish(SKRequest& request) override;
    void requestDidFailWithError(SKRequest& request, Ref<NSError> const& error) override;
    void paymentQueueUpdatedTransactions(SKPaymentQueue& queue,
                                         SKPaymentTransactions const& transactions) override;
    void paymentQueueRestoreCompletedTransactionsFinished(SKPaymentQueue& queue) override;
    void paymentQueueRestoreCompletedTransactionsFailed(SKPaymentQueue& queue,
                                                        Ref<NSError> const& error) override;
    bool paymentQueueShouldAddStorePayment(SKPaymentQueue& queue, Ref<SKPayment> const& payment,
                                           Ref<SKProduct> const& product) override;

private:
    static std::string periodTemplate(SKProductPeriodUnit unit, int numberOfPeriods);
    void refuse(Ref<SKPayment> const& payment);
    void finish(Ref<SKPaymentTransaction> const& transaction) const;
    bool keep(SKPaymentTransaction const& transaction) const;
    void completePurchase(Ref<SKPaymentTransaction> const& transaction);
    void failPurchase(Ref<SKPaymentTransaction> const& transaction);
    void deferPurchase(Ref<SKPaymentTransaction> const& transaction);
    void completeRestored(Ref<SKPaymentTransaction> const& transaction);
    void reportPurchase(bool success, Ref<SKPayment> const& payment, bool deferred,
                        Ref<NSError> const& error);
    void reportRestored();
    void log(std::string const& name) const;
    void log(std::string const& name, EventParameters const& parameters) const;

    Weak<PremiumManagerDelegate> delegate_;
    PremiumManagerState state_ = PremiumManagerState::notStarted;
    Ref<SKProductsRequest> productsRequest_;
    std::vector<std::string> productIdentifiers_;
    Products products_;
    std::string buySource_;
    std::string buyScreen_;
    std::string buyPremiumId_;
    std::string buyABTest_;
    Ref<Entitlements> entitlements_;
    BuyCompletion buyCompletion_; // never cleared after use
    Ref<SKPaymentTransaction> reportedTransaction_;
    SKPaymentTransactions restoredTransactions_;
    int restoreCount_ = 0;
    RestoreCompletion restoreCompletion_; // never cleared after use
};

} // namespace trelundo

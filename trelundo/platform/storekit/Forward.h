#pragma once

namespace trelundo {

class NSError;
class SKPayment;
class SKPaymentDiscount;
class SKPaymentQueue;
class SKPaymentTransaction;
class SKProduct;
class SKProductsRequest;
class SKProductsResponse;
class SKRequest;
class StoreBackend;

} // namespace trelundo

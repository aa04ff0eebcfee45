#include "Shop.h"

#include <cstdio>

using namespace trelundo;

class Shop::Host : public NSObject, public PremiumManagerDelegate {
public:
    void premiumManagerDidLoadProducts(Products const& products) override {
        auto const root = root_.lock();
        if (!root) return;
        auto paywall = make<PremiumViewController>();
        paywall->setFeatures({{"Everything", "picture"}});
        paywall->setProducts(products);
        paywall->setModalPresentationStyle(UIModalPresentationStyle::fullScreen);
        root->present(paywall, true, [] { std::puts("shown"); });
    }
    void setRoot(Weak<UIViewController> root) { root_ = std::move(root); }

private:
    Weak<UIViewController> root_;
};

Result<std::unique_ptr<Shop>> Shop::open(int argc, char** argv) {
    std::setvbuf(stdout, nullptr, _IOLBF, 0);
    if (argc < 3) return Error{std::string("usage: ") + argv[0] + " CATALOGUE.storekit PRODUCT..."};
    auto const catalogue = StoreConfiguration::load(argv[1]);
    if (!catalogue) return catalogue.error();
    auto store = SandboxStore::open({.configuration = *catalogue});
    if (!store) return store.error();
    return std::unique_ptr<Shop>(new Shop(*std::move(store), {argv + 2, argv + argc}));
}

Shop::Shop(std::unique_ptr<SandboxStore> store, std::vector<std::string> products)
    : store_(std::move(store))
    , products_(std::move(products))
    , host_(make<Host>()) {
    SKPaymentQueue::defaultQueue().setBackend(store_.get());
    PremiumManager::sharedInstance().setDelegate(host_);
    dismissal_ = NotificationCenter::defaultCenter().addObserver(
        BaseViewController::TrelundoKitPremiumDidDismissNotificationName, nullptr,
        [this](Notification const&) {
            std::printf("sold: %s\n", soldProduct().c_str());
            if (closed_) closed_();
        });
}

Shop::~Shop() {
    NotificationCenter::defaultCenter().removeObserver(dismissal_);
    SKPaymentQueue::defaultQueue().setBackend(nullptr);
}

void Shop::openPaywall(UIWindow& window) {
    window.setRootViewController(make<UIViewController>());
    host_->setRoot(window.rootViewController());
    auto& manager = PremiumManager::sharedInstance();
    if (manager.products().empty()) return manager.start(products_);
    host_->premiumManagerDidLoadProducts(manager.products());
}

std::string Shop::soldProduct() const {
    auto const transactions = store_->transactions();
    if (!transactions) return {};
    for (auto const& stored : *transactions)
        if (stored.isFinished) return stored.transaction.payment.productIdentifier;
    return {};
}

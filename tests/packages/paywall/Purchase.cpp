#include "Purchase.h"

#include <trelundo/Premium.h>
#include <trelundo/Window.h>

#include <cstdio>

using namespace trelundo;

namespace {

class Host : public NSObject, public PremiumManagerDelegate {
public:
    using PremiumManagerDelegate::logEvent;
    void logEvent(std::string const& name, EventParameters const& /*parameters*/) override {
        std::printf("event: %s\n", name.c_str());
    }
    void premiumManagerDidLoadProducts(Products const& products) override {
        std::printf("products: %zu\n", products.size());
    }
};

Ref<UIView> find(Ref<UIView> const& view, std::string const& identifier) {
    if (view->accessibilityIdentifier() == identifier) return view;
    for (auto const& subview : view->subviews())
        if (auto found = find(subview, identifier)) return found;
    return nullptr;
}

void tapContinue(OffscreenShell& shell, PremiumViewController& paywall) {
    auto const button = find(paywall.view(), "continueButton");
    auto const bounds = button->bounds();
    shell.tap(button->convertPointTo({bounds.midX(), bounds.midY()}, nullptr));
    shell.advance(2);
}

/// The identifier of what is on record as purchased and finished; empty when nothing is.
std::string soldProduct(SandboxStore const& store) {
    auto const transactions = *store.transactions();
    for (auto const& stored : transactions)
        if (stored.isFinished) return stored.transaction.payment.productIdentifier;
    return {};
}

} // namespace

int buyFirstPlan(char const* catalogue) {
    auto loaded = StoreConfiguration::load(catalogue);
    if (!loaded) return std::fprintf(stderr, "%s\n", loaded.error().message.c_str()), 1;
    auto const sandbox = *SandboxStore::open({.configuration = *loaded});
    SKPaymentQueue::defaultQueue().setBackend(sandbox.get());

    OffscreenShell shell{{.device = DeviceProfile::find("phone-390x844")}};
    auto const root = make<UIViewController>();
    shell.window().setRootViewController(root);
    shell.window().makeKeyAndVisible();

    auto const host = make<Host>();
    auto& manager = PremiumManager::sharedInstance();
    manager.setDelegate(host);
    manager.start({"app.premium.yearly", "app.premium.monthly"});
    shell.advance(1);

    auto const paywall = make<PremiumViewController>();
    paywall->setFeatures({{"Everything", "picture"}});
    paywall->setProducts(manager.products());
    root->present(paywall, false);
    shell.advance(1);
    shell.render();
    tapContinue(shell, *paywall);

    auto const sold = soldProduct(*sandbox);
    std::printf("sold: %s\n", sold.c_str());
    SKPaymentQueue::defaultQueue().setBackend(nullptr);
    return sold.empty() ? 1 : 0;
}

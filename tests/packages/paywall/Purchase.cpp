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
    void premiumManagerDidLoadProducts(Products const& /*products*/) override {}
};

void pressContinue(EmbeddedShell& shell) {
    for (auto const& view : shell.accessibleViews())
        if (view.name == "Continue") shell.press(view);
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
    bool isSold = false;
    paywall->setOutcomeHandler([&](PaywallOutcome const& outcome) {
        isSold = outcome.kind == PaywallOutcome::Kind::purchased;
        std::printf("%s: %s\n", isSold ? "sold" : "not sold", outcome.product->productIdentifier().c_str());
    });
    pressContinue(shell.embedded());
    shell.advance(2);
    SKPaymentQueue::defaultQueue().setBackend(nullptr);
    return isSold ? 0 : 1;
}

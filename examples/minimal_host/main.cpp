// The smallest host: opens a window, loads two plans from a catalogue, and sells one of them.
// usage: minimal_host CATALOGUE.storekit PRODUCT...
#include <trelundo/Premium.h>
#include <trelundo/Window.h>

#include <cstdio>

using namespace trelundo;

class Host : public NSObject, public PremiumManagerDelegate {
public:
    explicit Host(UIWindow& window)
        : window_(window) {}
    void premiumManagerDidLoadProducts(Products const& products) override {
        auto paywall = make<PremiumViewController>();
        paywall->setFeatures({{"Everything", "picture"}});
        paywall->setProducts(products);
        paywall->setModalPresentationStyle(UIModalPresentationStyle::fullScreen);
        window_.rootViewController()->present(paywall, true, [] { std::puts("shown"); });
    }

private:
    UIWindow& window_;
};

/// Tells what is on record as purchased and finished. Returns a program's status.
int tellSales(SandboxStore const& store) {
    auto const transactions = store.transactions();
    if (!transactions || transactions->empty()) return std::puts("nothing was sold"), 1;
    std::printf("sold: %s\n", transactions->front().transaction.payment.productIdentifier.c_str());
    return 0;
}

int main(int argc, char** argv) {
    std::setvbuf(stdout, nullptr, _IOLBF, 0);
    if (argc < 3) return std::fprintf(stderr, "usage: minimal_host CATALOGUE.storekit PRODUCT...\n"), 2;
    auto catalogue = StoreConfiguration::load(argv[1]);
    if (!catalogue) return std::fprintf(stderr, "%s\n", catalogue.error().message.c_str()), 1;
    auto const sandbox = SandboxStore::open({.configuration = *catalogue});
    if (!sandbox) return std::fprintf(stderr, "%s\n", sandbox.error().message.c_str()), 1;
    SKPaymentQueue::defaultQueue().setBackend(sandbox->get());

    auto const opened = WindowShell::open(
        argc, argv, {.device = DeviceProfile::find("phone-390x844"), .title = "Minimal host"});
    if (!opened) return std::fprintf(stderr, "%s\n", opened.error().message.c_str()), 1;
    auto& shell = **opened;
    shell.window().setRootViewController(make<UIViewController>());
    auto const host = make<Host>(shell.window());
    auto const dismissal = NotificationCenter::defaultCenter().addObserver(
        BaseViewController::TrelundoKitPremiumDidDismissNotificationName, nullptr,
        [&](Notification const&) { shell.quit(); });
    PremiumManager::sharedInstance().setDelegate(host);
    PremiumManager::sharedInstance().start({argv + 2, argv + argc});
    auto const status = shell.run();
    return status ? status : tellSales(**sandbox);
}

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
        window_.rootViewController()->present(paywall, true);
    }

private:
    UIWindow& window_;
};

int main(int argc, char** argv) {
    if (argc < 3) return std::fprintf(stderr, "usage: minimal_host CATALOGUE.storekit PRODUCT...\n"), 2;
    WindowShell shell{argc, argv, {.device = DeviceProfile::find("phone-390x844"), .title = "Minimal host"}};
    auto catalogue = StoreConfiguration::load(argv[1]);
    if (!catalogue) return std::fprintf(stderr, "%s\n", catalogue.error().message.c_str()), 1;
    auto const sandbox = SandboxStore::open({.configuration = *catalogue});
    if (!sandbox) return std::fprintf(stderr, "%s\n", sandbox.error().message.c_str()), 1;
    SKPaymentQueue::defaultQueue().setBackend(sandbox->get());

    shell.window().setRootViewController(make<UIViewController>());
    shell.window().makeKeyAndVisible();
    auto const host = make<Host>(shell.window());
    PremiumManager::sharedInstance().setDelegate(host);
    PremiumManager::sharedInstance().start({argv + 2, argv + argc});
    return shell.run();
}

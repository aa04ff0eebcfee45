// Pictures of a purchase, step by step, without a display and without waiting: time passes only where it is
// told to. usage: pictures CATALOGUE.storekit PRODUCT...
#include "Shop.h"

#include <trelundo/Window.h>

#include <algorithm>
#include <cstdio>

using namespace trelundo;

namespace {

/// Writes NAME.png and tells so.
bool draw(OffscreenShell& shell, std::string const& name) {
    auto const written = shell.snapshot(name + ".png");
    std::printf("%s\n", written ? (name + ".png").c_str() : written.error().message.c_str());
    return written.has_value();
}

/// Taps what assistive programs know by this name, in English.
void tap(OffscreenShell& shell, std::string const& name) {
    auto const views = shell.embedded().accessibleViews();
    auto const found = std::ranges::find(views, name, &AccessibleView::name);
    if (found == views.end()) return;
    shell.tap({found->frame.midX(), found->frame.midY()});
}

int sell(Shop& shop) {
    OffscreenShell shell{{.device = DeviceProfile::find("phone-390x844")}};
    shop.openPaywall(shell.window());
    shell.advance(2);
    bool isDrawn = draw(shell, "light");
    shell.setUserInterfaceStyle(UIUserInterfaceStyle::dark);
    isDrawn = draw(shell, "dark") && isDrawn;
    tap(shell, "Continue");
    shell.advance(0.1);
    isDrawn = draw(shell, "buying") && isDrawn;
    shell.advance(2);
    return isDrawn && !shop.soldProduct().empty() ? 0 : 1;
}

} // namespace

int main(int argc, char** argv) {
    auto const shop = Shop::open(argc, argv);
    if (!shop) return std::fprintf(stderr, "%s\n", shop.error().message.c_str()), 2;
    Locale::setPreferredLanguages({"en"});
    return sell(**shop);
}

#pragma once

#include "tools/paywall/Options.h"
#include "tools/paywall/output/EventLog.h"
#include "tools/paywall/screens/Screens.h"
#include "tools/paywall/session/Host.h"
#include "trelundo/platform/foundation/NotificationCenter.h"
#include "trelundo/platform/storekit/sandbox/SandboxStore.h"
#include "trelundo/platform/uikit/views/UIWindow.h"

#include <memory>

namespace trelundo::paywall {

/// Everything behind a screen but the shell: the user's language, the host with its pictures, the sandbox
/// store, and the listeners that write the log. Make the shell first, then the session; then load the
/// products and show the screen in the shell's window.
class ScreenSession : public SKPaymentQueueMonitor {
public:
    /// A catalogue or store file that cannot be used throws a Failure.
    ScreenSession(Options const& options, EventLog& log);
    /// With a store that is open already; `options` and `log` must live as long as the session.
    ScreenSession(Options const& options, EventLog& log, std::unique_ptr<SandboxStore> store);
    ~ScreenSession() override;
    ScreenSession(ScreenSession const&) = delete;
    ScreenSession& operator=(ScreenSession const&) = delete;

    /// Sets the screen up in the order of a host: flags, discounts and settings, then the products, then the
    /// view; presents it full screen over a plain host screen.
    void show(UIWindow& window);

    /// The screen; null once it was dismissed.
    Ref<UIViewController> const& screen() const { return screen_; }
    ScreenType const& screenType() const { return *screenType_; }
    UIViewController& hostScreen() const { return *hostScreen_; }
    Host& host() const { return *host_; }
    SandboxStore& store() const { return *store_; }
    EventLog& log() const { return log_; }

    void paymentAdded(SKPayment const& payment) override;
    void transactionUpdated(std::string const& id, SKPaymentTransaction const& transaction) override;
    void transactionFinished(std::string const& id, SKPaymentTransaction const& transaction) override;

private:
    void loadProducts();
    void listen();
    void didPresent(UIViewController& controller, bool animated);
    void didDismiss(UIViewController& controller, bool animated);
    void applyOptions(UIViewController& screen);
    void applyDiscounts(UIViewController& screen) const;
    void makeHostScreen();

    Options const& options_;
    EventLog& log_;
    Ref<Host> host_;
    std::unique_ptr<SandboxStore> store_;
    ScreenType const* screenType_;
    Ref<UIViewController> hostScreen_;
    Ref<UIViewController> screen_;
    Ref<NotificationCenter::Token> notifications_;
};

} // namespace trelundo::paywall

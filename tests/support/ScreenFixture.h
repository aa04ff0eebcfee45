#pragma once

#include "tests/support/FakeStore.h"
#include "tests/support/MainThread.h"
#include "trelundo/kit/store/PremiumManager.h"
#include "trelundo/platform/uikit/controllers/UIAlertController.h"
#include "trelundo/platform/uikit/controls/UIButton.h"
#include "trelundo/platform/window/OffscreenShell.h"

#include <gtest/gtest.h>

namespace trelundo::test {

/// A small phone with a host screen and a store; views are found by their names. English texts.
class ScreenFixture : public testing::Test {
protected:
    ScreenFixture() {
        Locale::setPreferredLanguages({"en"});
        SKPaymentQueue::defaultQueue().addTransactionObserver(strong(PremiumManager::sharedInstance()));
        shell.window().setRootViewController(host);
        RunLoop::main().runUntilIdle();
    }

    ~ScreenFixture() override {
        SKPaymentQueue::defaultQueue().removeTransactionObserver(PremiumManager::sharedInstance());
    }

    template <class Screen> Ref<Screen> show(Ref<Screen> screen) {
        screen->setModalPresentationStyle(UIModalPresentationStyle::fullScreen);
        host->present(screen, false);
        shell.advance(0.1);
        shown = screen;
        return screen;
    }
    void takeAway() {
        host->dismiss(false);
        shell.advance(0.1);
    }
    /// A paywall with plans, or with the first of them, and a feature, as far as it takes them.
    template <class Screen> static Ref<Screen> paywall(Products products) {
        auto screen = make<Screen>();
        if constexpr (requires { screen->setProduct(nullptr); }) screen->setProduct(products.front());
        if constexpr (requires { screen->setProducts({}); }) screen->setProducts(std::move(products));
        if constexpr (requires { screen->setFeatures({}); }) screen->setFeatures({{"All Templates", "none"}});
        return screen;
    }
    /// The alert over the shown screen, a second after its arrival.
    Ref<UIAlertController> alert() {
        shell.advance(1);
        auto const over = shown->presentedViewController();
        return over ? cast<UIAlertController>(over) : nullptr;
    }
    void chooseFirstAction() {
        auto const asked = alert();
        asked->performAction(*asked->actions().front());
        shell.advance(1);
    }

    /// Gives the window another display.
    void resize(char const* device, bool landscape = false) {
        UIScreen::main().configure(*DeviceProfile::find(device), landscape);
        shell.window().screenDidChange();
        shell.advance(0.1);
    }

    /// Null when no such view is in the tree.
    template <class View = UIView> Ref<View> find(std::string const& name) {
        auto const found = find(*shown->view(), name);
        return found ? cast<View>(found) : nullptr;
    }
    Ref<UIButton> planButton(int index) {
        return find<UIButton>("premiumButtons[" + std::to_string(index) + "]");
    }
    void tap(UIControl& control) { control.sendActions(UIControlEvents::touchUpInside); }
    void tap(std::string const& name) { tap(*find<UIControl>(name)); }
    std::string textOf(std::string const& name) {
        auto const view = find(name);
        if (auto const* label = dynamic_cast<UILabel*>(view.get())) return label->text().value_or("");
        auto* button = dynamic_cast<UIButton*>(view.get());
        return button ? button->titleLabel()->text().value_or("") : "";
    }

    MainThreadScope mainThread;
    OffscreenShell shell{{.device = DeviceProfile::find("phone-320x568")}};
    FakeStore store;
    Ref<UIViewController> host = make<UIViewController>();
    Ref<UIViewController> shown;

private:
    static Ref<UIView> find(UIView& view, std::string const& name) {
        if (view.accessibilityIdentifier() == name) return strong(view);
        for (auto const& subview : view.subviews())
            if (auto found = find(*subview, name)) return found;
        return nullptr;
    }
};

} // namespace trelundo::test

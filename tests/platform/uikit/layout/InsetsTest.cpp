#include "tests/platform/uikit/layout/LayoutStage.h"

namespace trelundo {
namespace {

class Screen : public UIViewController {
public:
    void viewWillLayoutSubviews() override { calls.emplace_back("will layout"); }
    void viewDidLayoutSubviews() override { calls.emplace_back("did layout"); }
    void viewSafeAreaInsetsDidChange() override { calls.emplace_back("safe area"); }
    void viewDidLoad() override { safeAreaAtLoad = view()->safeAreaInsets(); }
    std::vector<std::string> calls;
    std::optional<UIEdgeInsets> safeAreaAtLoad;
};

class InsetsTest : public LayoutStage {
protected:
    InsetsTest() { UIScreen::main().configure(*DeviceProfile::find("phone-390x844"), false); }
    void show() {
        window = make<UIWindow>();
        screen = make<Screen>();
        window->setRootViewController(screen);
    }
    void turn() {
        UIScreen::main().configure(*DeviceProfile::find("phone-390x844"), true);
        window->screenDidChange();
        window->layoutWindow();
    }
    Ref<UIWindow> window;
    Ref<Screen> screen;
};

TEST_F(InsetsTest, ControllersHearOfTheSafeAreaBeforeTheirLayout) {
    std::vector<std::string> const expectedCalls{"safe area", "will layout", "did layout"};
    show();
    EXPECT_EQ(screen->safeAreaAtLoad, UIEdgeInsets{});
    window->makeKeyAndVisible();
    EXPECT_EQ(screen->calls, expectedCalls);
    EXPECT_EQ(screen->view()->safeAreaInsets(), (UIEdgeInsets{47, 0, 34, 0}));
    screen->calls.clear();
    turn();
    EXPECT_EQ(screen->calls, expectedCalls);
    EXPECT_EQ(screen->view()->safeAreaInsets(), (UIEdgeInsets{0, 47, 21, 47}));
}

TEST_F(InsetsTest, GuidesFollowTheSafeAreaAndTheMargins) {
    show();
    auto const within = add(*screen->view());
    auto const guide = screen->view()->safeAreaLayoutGuide();
    auto const margins = screen->view()->layoutMarginsGuide();
    activate({
        within->topAnchor() == margins->topAnchor(),
        within->heightAnchor() == margins->heightAnchor() * 0.5,
        within->leadingAnchor() == margins->leadingAnchor(),
        within->trailingAnchor() == margins->trailingAnchor(),
    });
    window->makeKeyAndVisible();
    EXPECT_EQ(guide->layoutFrame(), CGRect(0, 47, 390, 763));
    EXPECT_EQ(within->frame(), CGRect(16, 47, 358, roundToPixel(763 / 2.0, 3)));
    turn();
    EXPECT_EQ(guide->layoutFrame(), CGRect(47, 0, 750, 369));
    EXPECT_EQ(within->frame().minX(), 67); // the margin of a wide view, inside the safe area
    screen->view()->setLayoutMargins({10, 40, 0, 5});
    window->layoutWindow();
    EXPECT_EQ(within->frame().origin, (CGPoint{87, 10}));
    EXPECT_EQ(within->frame().maxX(), 844 - 47 - 20);
    EXPECT_TRUE(warnings.empty());
}

TEST_F(InsetsTest, DeepViewsHaveTheirPartOnly) {
    show();
    auto const inside = add(*screen->view());
    auto const top = add(*screen->view());
    auto const child = add(*top);
    place(*inside, {0, 100, 100, 100});
    place(*top, {0, 20, 100, 100});
    auto const guide = top->safeAreaLayoutGuide();
    activate({child->topAnchor() == guide->topAnchor(), child->bottomAnchor() == guide->bottomAnchor(),
              child->leadingAnchor() == guide->leadingAnchor(),
              child->trailingAnchor() == guide->trailingAnchor()});
    window->makeKeyAndVisible();
    EXPECT_EQ(inside->safeAreaInsets(), UIEdgeInsets{});
    EXPECT_EQ(inside->safeAreaChanges, 0);
    EXPECT_EQ(top->safeAreaInsets(), (UIEdgeInsets{27, 0, 0, 0}));
    EXPECT_EQ(top->safeAreaChanges, 1);
    EXPECT_EQ(child->frame(), CGRect(0, 27, 100, 73));
    EXPECT_EQ(child->safeAreaInsets(), UIEdgeInsets{});
    top->removeFromSuperview();
    EXPECT_EQ(top->safeAreaInsets(), UIEdgeInsets{});
}

TEST_F(InsetsTest, MarginsAreTwoFacesOfOneValue) {
    auto const view = make<UIView>(CGRect{0, 0, 100, 100});
    EXPECT_EQ(view->layoutMargins(), (UIEdgeInsets{8, 8, 8, 8}));
    view->setDirectionalLayoutMargins({1, 2, 3, 4});
    EXPECT_EQ(view->layoutMargins(), (UIEdgeInsets{1, 2, 3, 4}));
    view->setSemanticContentAttribute(UISemanticContentAttribute::forceRightToLeft);
    EXPECT_EQ(view->layoutMargins(), (UIEdgeInsets{1, 4, 3, 2}));
    view->setLayoutMargins({5, 6, 7, 8});
    EXPECT_EQ(view->directionalLayoutMargins(), (NSDirectionalEdgeInsets{5, 8, 7, 6}));
}

} // namespace
} // namespace trelundo

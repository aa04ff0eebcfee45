#include "trelundo/platform/uikit/controllers/PresentationListener.h"
#include "trelundo/platform/uikit/controllers/UIApplication.h"
#include "trelundo/platform/uikit/controllers/UIViewController.h"

#include "tests/platform/uikit/DeviceFixture.h"

namespace trelundo {
namespace {

void note(std::string const& text) { journal.push_back(text); }

class WitnessController : public UIViewController {
public:
    explicit WitnessController(std::string name)
        : name_(std::move(name)) {
        setModalPresentationStyle(UIModalPresentationStyle::fullScreen);
    }
    ~WitnessController() override { note(name_ + " destroyed"); }

    void viewDidLoad() override { note(name_ + " loaded"); }
    void viewWillAppear(bool) override { note(name_ + " will appear" + flags()); }
    void viewDidAppear(bool) override {
        note(name_ + " did appear" + flags());
        if (onDidAppear) onDidAppear();
    }
    void viewWillDisappear(bool) override { note(name_ + " will disappear" + flags()); }
    void viewDidDisappear(bool) override { note(name_ + " did disappear" + flags()); }
    void viewWillLayoutSubviews() override { note(name_ + " layout"); }

    std::function<void()> onDidAppear;

private:
    std::string flags() const {
        return isBeingPresented() ? " (coming)" : isBeingDismissed() ? " (going)" : "";
    }

    std::string name_;
};

class PresentationTest : public DeviceFixture {
protected:
    PresentationTest() {
        shell.window().setRootViewController(host);
        journal.clear();
    }
    ~PresentationTest() override { setPresentationListener({}); }

    Ref<WitnessController> showOver(Ref<WitnessController> const& presenter, std::string name,
                                    UIModalPresentationStyle style = UIModalPresentationStyle::fullScreen) {
        auto controller = make<WitnessController>(std::move(name));
        controller->setModalPresentationStyle(style);
        presenter->present(controller, true);
        shell.advance(1);
        journal.clear();
        return controller;
    }

    Ref<WitnessController> const host = make<WitnessController>("host");
};

TEST_F(PresentationTest, AFullScreenPresentationAndItsDismissalRunTheirCourse) {
    for (bool const animated : {true, false}) {
        SCOPED_TRACE(animated ? "animated" : "not animated");
        auto screen = make<WitnessController>("screen");
        journal.clear();
        host->present(screen, animated, [] { note("presented"); });
        EXPECT_EQ(host->presentedViewController(), screen);
        EXPECT_EQ(screen->presentingViewController(), host.get());
        EXPECT_EQ(screen->view()->convertRectTo(screen->view()->bounds(), nullptr), shell.window().bounds());
        EXPECT_THAT(journal, ElementsAre("screen loaded", "host will disappear",
                                         "screen will appear (coming)", "screen layout"));
        journal.clear();
        if (animated) shell.advance(0.35);
        EXPECT_THAT(journal, IsEmpty());
        EXPECT_EQ(host->view()->window(), &shell.window()) << "in sight until the transition ends";
        shell.advance(animated ? 0.1 : 0); // even without an animation the end comes on a later turn
        EXPECT_THAT(journal, ElementsAre("screen did appear (coming)", "host did disappear", "presented"));
        EXPECT_EQ(host->view()->window(), nullptr);
        EXPECT_EQ(shell.window().topViewController(), screen);
        journal.clear();
        screen->dismiss(animated, [this] {
            EXPECT_EQ(host->presentedViewController(), nullptr);
            note("dismissed");
        });
        EXPECT_THAT(journal, ElementsAre("screen will disappear (going)", "host will appear"));
        EXPECT_EQ(host->view()->window(), &shell.window());
        screen = nullptr;
        journal.clear();
        shell.advance(animated ? 0.5 : 0);
        EXPECT_THAT(journal, ElementsAre("host did appear", "screen did disappear (going)", "dismissed",
                                         "screen destroyed"));
        EXPECT_EQ(shell.window().subviews().size(), 1u);
        EXPECT_FALSE(UIApplication::shared().needsFrames());
    }
}

TEST_F(PresentationTest, ASheetLeavesItsPresenterInSightAndDimsItsTint) {
    auto const sheet = showOver(host, "sheet", UIModalPresentationStyle::automatic);
    EXPECT_EQ(host->view()->window(), &shell.window());
    EXPECT_EQ(host->view()->tintAdjustmentMode(), UIViewTintAdjustmentMode::dimmed);
    auto const area = sheet->view()->convertRectTo(sheet->view()->bounds(), nullptr);
    EXPECT_EQ(area, (CGRect{0, 30, 320, 538}));
    sheet->dismiss(true);
    EXPECT_EQ(host->view()->tintAdjustmentMode(), UIViewTintAdjustmentMode::automatic);
    shell.advance(1);
    EXPECT_THAT(journal, ElementsAre("sheet will disappear (going)", "sheet did disappear (going)"));

    UIScreen::main().configure(*DeviceProfile::find("tablet-820x1180"), false);
    shell.window().screenDidChange();
    auto const form = showOver(host, "form", UIModalPresentationStyle::formSheet);
    EXPECT_EQ(form->view()->bounds().size, (CGSize{540, 620}));
    EXPECT_EQ(form->traitCollection().horizontalSizeClass, UIUserInterfaceSizeClass::compact);
    EXPECT_EQ(form->traitCollection().verticalSizeClass, UIUserInterfaceSizeClass::regular);
    EXPECT_EQ(host->traitCollection().horizontalSizeClass, UIUserInterfaceSizeClass::regular);
}

TEST_F(PresentationTest, MisuseIsLoggedAndDoesNothing) {
    auto const screen = showOver(host, "screen");
    auto const other = make<WitnessController>("other");
    host->present(other, true, [] { note("completion"); });
    EXPECT_THAT(warnings.back(), ::testing::HasSubstr("already presenting"));
    make<WitnessController>("stray")->present(other, true, [] { note("completion"); });
    EXPECT_THAT(warnings.back(), ::testing::HasSubstr("not in a window"));
    screen->present(nullptr, true);
    screen->present(host, true);
    EXPECT_EQ(warnings.size(), 4u);
    shell.advance(1);
    EXPECT_THAT(journal, ElementsAre("stray destroyed"));
    EXPECT_EQ(screen->presentedViewController(), nullptr);
}

TEST_F(PresentationTest, ADismissalDuringATransitionIsDroppedAndWithoutAScreenOnlyCompletes) {
    auto const screen = make<WitnessController>("screen");
    host->present(screen, true);
    screen->dismiss(true, [] { note("completion"); });
    EXPECT_EQ(warnings.size(), 1u);
    shell.advance(1);
    EXPECT_EQ(host->presentedViewController(), screen);
    screen->dismiss(true, [] { note("first"); });
    screen->dismiss(true, [] { note("second"); });
    EXPECT_EQ(warnings.size(), 2u);
    journal.clear();
    shell.advance(1);
    EXPECT_THAT(journal, ElementsAre("host did appear", "screen did disappear (going)", "first"));
    journal.clear();
    host->dismiss(true, [] { note("nothing to dismiss"); });
    EXPECT_THAT(journal, IsEmpty());
    shell.advance(0);
    EXPECT_THAT(journal, ElementsAre("nothing to dismiss"));
}

TEST_F(PresentationTest, DismissingFromBelowTakesEverythingAbove) {
    auto middle = showOver(host, "middle");
    auto top = showOver(middle, "top");
    std::vector<Ref<UIViewController>> gone;
    setPresentationListener({.dismissed = [&](UIViewController& controller, bool animated) {
        EXPECT_TRUE(animated);
        gone.push_back(strong(controller));
    }});
    host->dismiss(true);
    shell.advance(1);
    EXPECT_THAT(journal, ElementsAre("top will disappear (going)", "host will appear", "host did appear",
                                     "top did disappear (going)", "middle did disappear (going)"));
    EXPECT_THAT(gone, ElementsAre(top, middle));
    EXPECT_EQ(shell.window().topViewController(), host);
    EXPECT_EQ(shell.window().subviews().size(), 1u);
    EXPECT_FALSE(middle->isBeingDismissed());
}

TEST_F(PresentationTest, AScreenMayPresentAndDismissFromItsOwnCallbacks) {
    auto const screen = make<WitnessController>("screen");
    screen->onDidAppear = [&] { screen->dismiss(true, [] { note("gone"); }); };
    host->present(screen, true);
    shell.advance(2);
    EXPECT_THAT(warnings, IsEmpty());
    EXPECT_EQ(journal.back(), "gone");
    EXPECT_EQ(host->view()->window(), &shell.window());

    auto const next = make<WitnessController>("next");
    showOver(host, "first")->dismiss(true);
    host->onDidAppear = [&] {
        host->onDidAppear = nullptr;
        host->present(next, true);
    };
    shell.advance(2);
    EXPECT_THAT(warnings, IsEmpty());
    EXPECT_EQ(host->presentedViewController(), next);
    EXPECT_EQ(next->view()->window(), &shell.window());
    EXPECT_EQ(host->view()->window(), nullptr);
}

TEST_F(PresentationTest, ACoveredScreenComesBackInTheNewSize) {
    auto const screen = showOver(host, "screen");
    shell.rotate(true);
    shell.advance(0);
    EXPECT_EQ(screen->view()->bounds().size, (CGSize{568, 320}));
    screen->dismiss(true);
    EXPECT_EQ(host->view()->frame(), (CGRect{0, 0, 568, 320}));
    EXPECT_EQ(host->traitCollection().verticalSizeClass, UIUserInterfaceSizeClass::compact);
    shell.advance(1);
}

TEST_F(PresentationTest, TheScreenTurnsOnlyWhereTheControllerOverTheWholeWindowAllowsIt) {
    class Upright : public WitnessController {
    public:
        using WitnessController::WitnessController;
        UIInterfaceOrientationMask supportedInterfaceOrientations() const override {
            return UIInterfaceOrientationMask::portrait;
        }
    };
    auto const width = [this] { return shell.window().bounds().width(); };
    auto const upright = make<Upright>("upright");
    shell.rotate(true);
    EXPECT_EQ(width(), 568);
    host->present(upright, false);
    shell.advance(0.1);
    EXPECT_EQ(width(), 320);
    shell.rotate(true);
    EXPECT_EQ(width(), 320);
    host->dismiss(false);
    shell.advance(0.1);
    EXPECT_EQ(width(), 568) << "the device is still held so";
    upright->setModalPresentationStyle(UIModalPresentationStyle::pageSheet);
    host->present(upright, false);
    shell.advance(0.1);
    EXPECT_EQ(width(), 568) << "a sheet does not decide";
}

TEST_F(PresentationTest, CrossDissolveFadesAndCoverSlidesWhileTouchesGoNowhere) {
    auto const screen = make<WitnessController>("screen");
    screen->setModalTransitionStyle(UIModalTransitionStyle::crossDissolve);
    host->present(screen, true);
    auto const& carrier = screen->view()->superview()->layer();
    EXPECT_EQ(carrier.presentationValues().opacity, 0);
    shell.advance(0.2);
    EXPECT_NEAR(carrier.presentationValues().opacity, 0.5, 0.02);
    auto const hit = shell.window().hitTest({100, 100});
    ASSERT_TRUE(hit);
    EXPECT_FALSE(hit->isDescendantOf(*host->view()));
    EXPECT_FALSE(hit->isDescendantOf(*screen->view()));
    shell.advance(0.5);
    EXPECT_EQ(shell.window().hitTest({100, 100}), screen->view());

    auto const slider = make<WitnessController>("slider");
    screen->present(slider, true);
    auto const& slide = slider->view()->superview()->layer();
    EXPECT_EQ(slide.presentationValues().transform.ty, 568);
    shell.advance(0.2);
    EXPECT_NEAR(slide.presentationValues().transform.ty, 284, 12);
    shell.advance(0.5);
}

TEST_F(PresentationTest, ReplacingTheRootDropsWhatItPresented) {
    showOver(host, "screen");
    shell.window().setRootViewController(make<WitnessController>("other"));
    EXPECT_EQ(shell.window().subviews().size(), 1u);
    EXPECT_EQ(host->presentedViewController(), nullptr);
    EXPECT_THAT(journal, ::testing::Contains("screen destroyed"));
}

TEST_F(PresentationTest, ClosingTheWindowDuringATransitionIsHarmless) {
    auto window = make<UIWindow>();
    auto const root = make<WitnessController>("root");
    window->setRootViewController(root);
    window->makeKeyAndVisible();
    root->present(make<WitnessController>("screen"), true, [] { note("completion"); });
    window = nullptr;
    journal.clear();
    shell.advance(1);
    EXPECT_THAT(journal, ::testing::Not(::testing::Contains("completion")));
    EXPECT_EQ(root->presentedViewController(), nullptr);
}

} // namespace
} // namespace trelundo

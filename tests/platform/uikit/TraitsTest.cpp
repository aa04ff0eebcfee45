#include "trelundo/platform/uikit/controllers/UIApplication.h"
#include "trelundo/platform/uikit/controllers/UIViewController.h"

#include "tests/platform/uikit/DeviceFixture.h"

#include <cmath>

namespace trelundo {
namespace {

std::string styleName(UITraitCollection const* traits) {
    if (!traits) return "none";
    return traits->userInterfaceStyle == UIUserInterfaceStyle::dark ? "dark" : "light";
}

class TraitView : public UIView {
public:
    explicit TraitView(std::string name)
        : name_(std::move(name)) {}

    void traitCollectionDidChange(UITraitCollection const* previous) override {
        journal.push_back(name_ + " " + styleName(previous) + ">" + styleName(&traitCollection()));
        EXPECT_EQ(UITraitCollection::current(), traitCollection());
    }
    void layoutSubviews() override {
        UIView::layoutSubviews();
        journal.push_back(name_ + " layout");
    }
    void tintColorDidChange() override { journal.push_back(name_ + " tint"); }

private:
    std::string name_;
};

class TraitController : public UIViewController {
public:
    void loadView() override { setView(make<TraitView>("view")); }
    void viewDidLoad() override { view()->addSubview(make<TraitView>("child")); }
    void viewWillAppear(bool) override { journal.push_back("will appear"); }
    void viewDidAppear(bool) override { journal.push_back("did appear"); }
    void traitCollectionDidChange(UITraitCollection const* previous) override {
        journal.push_back("controller " + styleName(previous) + ">" + styleName(&traitCollection()));
    }
};

class TraitsTest : public DeviceFixture {
protected:
    ~TraitsTest() override { UIApplication::shared().setUserInterfaceLayoutDirection(std::nullopt); }
};

TEST_F(TraitsTest, TraitsAreToldBetweenWillAppearAndLayoutAndThenOnlyWhenTheyChange) {
    auto const controller = make<TraitController>();
    shell.window().setRootViewController(controller);
    EXPECT_THAT(journal, ElementsAre("will appear", "controller none>light", "view none>light",
                                     "child none>light", "view layout", "child layout", "did appear"));
    journal.clear();
    auto const view = controller->view();
    view->removeFromSuperview();
    shell.window().addSubview(view);
    shell.window().screenDidChange();
    EXPECT_THAT(journal, IsEmpty()) << "back in the same environment";
    shell.setUserInterfaceStyle(UIUserInterfaceStyle::dark);
    EXPECT_THAT(journal, ElementsAre("controller light>dark", "view light>dark", "child light>dark"));
}

TEST_F(TraitsTest, TraitsArePredictedBeforeTheWindowWithTheApplicationsDirection) {
    auto const view = make<UIView>();
    auto const clip = make<UIView>();
    clip->setSemanticContentAttribute(UISemanticContentAttribute::playback);
    EXPECT_EQ(view->traitCollection(), shell.window().traitCollection());
    EXPECT_EQ(make<UIViewController>()->traitCollection().horizontalSizeClass,
              UIUserInterfaceSizeClass::compact);
    EXPECT_FALSE(view->isRightToLeft());
    shell.rotate(true);
    UIApplication::shared().setUserInterfaceLayoutDirection(UIUserInterfaceLayoutDirection::rightToLeft);
    EXPECT_EQ(view->traitCollection().verticalSizeClass, UIUserInterfaceSizeClass::compact);
    EXPECT_EQ(view->traitCollection().layoutDirection, UITraitLayoutDirection::rightToLeft);
    EXPECT_TRUE(view->isRightToLeft());
    EXPECT_FALSE(clip->isRightToLeft());
}

TEST_F(TraitsTest, DynamicColoursAndDrawingFollowTheAppearance) {
    class Painter : public UIView {
    public:
        bool drawsContents() const override { return true; }
        void draw(CGRect, Canvas&) override { drawnUnder = UITraitCollection::current().userInterfaceStyle; }
        UIUserInterfaceStyle drawnUnder = UIUserInterfaceStyle::unspecified;
    };
    auto const view = show(make<Painter>(), {0, 0, 10, 10});
    auto const detached = make<UIView>();
    view->setBackgroundColor(UIColor::label());
    detached->setBackgroundColor(UIColor::label());
    auto const fixed = view->backgroundColor()->cgColor();
    EXPECT_EQ(view->layer().backgroundColor(), (CGColor{0, 0, 0, 1}));
    shell.render();
    EXPECT_EQ(view->drawnUnder, UIUserInterfaceStyle::light);
    shell.setUserInterfaceStyle(UIUserInterfaceStyle::dark);
    EXPECT_EQ(view->layer().backgroundColor(), (CGColor{1, 1, 1, 1}));
    EXPECT_EQ(fixed, (CGColor{0, 0, 0, 1}));
    shell.render();
    EXPECT_EQ(view->drawnUnder, UIUserInterfaceStyle::dark);
    shell.window().addSubview(detached);
    EXPECT_EQ(detached->layer().backgroundColor(), (CGColor{1, 1, 1, 1}));
}

TEST_F(TraitsTest, TintIsInheritedReadsGrayWhileDimmedAndItsChangesReachWhoInheritsIt) {
    auto const parent = make<TraitView>("parent");
    auto const child = make<TraitView>("child");
    auto const own = make<TraitView>("own");
    parent->addSubview(child);
    parent->addSubview(own);
    EXPECT_EQ(child->tintColor().cgColor(), UIColor::systemBlue().cgColor());
    own->setTintColor(UIColor(0, 0, 1));
    journal.clear();
    parent->setTintColor(UIColor::red());
    EXPECT_THAT(journal, ElementsAre("parent tint", "child tint"));
    EXPECT_EQ(child->tintColor(), UIColor::red());
    own->setTintAdjustmentMode(UIViewTintAdjustmentMode::normal);
    parent->setTintAdjustmentMode(UIViewTintAdjustmentMode::dimmed);
    EXPECT_EQ(child->tintAdjustmentMode(), UIViewTintAdjustmentMode::dimmed);
    EXPECT_EQ(child->tintColor(), UIColor(0.2126, 0.2126, 0.2126)) << "as bright as red";
    EXPECT_EQ(own->tintColor(), UIColor(0, 0, 1));
    parent->setTintAdjustmentMode(UIViewTintAdjustmentMode::automatic);
    EXPECT_EQ(child->tintColor(), UIColor::red());
    parent->setTintColor(std::nullopt);
    shell.window().setTintColor(UIColor::white());
    journal.clear();
    shell.window().addSubview(parent);
    EXPECT_EQ(child->tintColor(), UIColor::white());
    EXPECT_THAT(journal, ::testing::IsSupersetOf({"parent tint", "child tint"}));
    EXPECT_THAT(journal, ::testing::Not(::testing::Contains("own tint")));
}

TEST_F(TraitsTest, TheScreenTurnsWithItsNativePixelsStayingUprightAndIsNamedByItsSize) {
    auto& screen = UIScreen::main();
    screen.configure(*DeviceProfile::find("phone-414x736"), true);
    EXPECT_EQ(screen.bounds(), (CGRect{0, 0, 736, 414}));
    EXPECT_EQ(screen.nativeBounds(), (CGRect{0, 0, 1080, 1920}));
    EXPECT_NEAR(screen.nativeScale(), 2.608, 0.001);
    EXPECT_EQ(screen.traitCollection().horizontalSizeClass, UIUserInterfaceSizeClass::regular);
    EXPECT_EQ(screen.safeAreaInsets(), UIEdgeInsets{});
    screen.configure(*DeviceProfile::find("phone-430x932"), true);
    EXPECT_EQ(screen.safeAreaInsets(), (UIEdgeInsets{0, 59, 21, 59}));
    for (auto const& device : DeviceProfile::all()) {
        auto const size = std::to_string(std::lround(device.points.width)) + "x" +
                          std::to_string(std::lround(device.points.height));
        EXPECT_EQ(DeviceProfile::find(device.name), &device) << device.name << " is there twice";
        EXPECT_NE(device.name.find(size), std::string_view::npos) << device.name;
    }
}

TEST_F(TraitsTest, RotationTellsTheControllerBeforeAnythingChanges) {
    class Turning : public UIViewController {
    public:
        void viewWillTransitionToSize(CGSize size) override {
            journal.push_back("to " + std::to_string(static_cast<int>(size.width)) + " from " +
                              std::to_string(static_cast<int>(view()->bounds().size.width)));
        }
        void traitCollectionDidChange(UITraitCollection const*) override {
            journal.push_back("traits at " + std::to_string(static_cast<int>(view()->bounds().size.width)));
        }
        void viewDidLayoutSubviews() override { journal.push_back("layout"); }
    };
    auto const controller = make<Turning>();
    shell.window().setRootViewController(controller);
    journal.clear();
    shell.rotate(true);
    shell.advance(0);
    EXPECT_THAT(journal, ElementsAre("to 568 from 320", "traits at 568", "layout"));
    EXPECT_EQ(controller->view()->frame(), (CGRect{0, 0, 568, 320}));
}

TEST_F(TraitsTest, AHiddenStatusBarTakesItsInsetAlongWhereThereIsNoCutOut) {
    class Bare : public UIViewController {
    public:
        bool prefersStatusBarHidden() const override { return hides; }
        bool hides = true;
    };
    auto const controller = make<Bare>();
    shell.window().setRootViewController(controller);
    EXPECT_EQ(shell.window().windowSafeAreaInsets().top, 0);
    controller->hides = false;
    controller->setNeedsStatusBarAppearanceUpdate();
    EXPECT_EQ(shell.window().windowSafeAreaInsets().top, 20);
    controller->hides = true;
    UIScreen::main().configure(*DeviceProfile::find("phone-390x844"), false);
    shell.window().screenDidChange();
    EXPECT_EQ(shell.window().windowSafeAreaInsets().top, 47);
}

} // namespace
} // namespace trelundo

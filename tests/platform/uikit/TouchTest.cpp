#include "trelundo/platform/uikit/collection/UIScrollView.h"
#include "trelundo/platform/uikit/controls/UIControl.h"

#include "tests/platform/uikit/DeviceFixture.h"

namespace trelundo {
namespace {

class TouchedView : public UIView {
public:
    explicit TouchedView(CGRect frame, std::string name = "view")
        : UIView(frame)
        , name_(std::move(name)) {}

    void touchesBegan(UITouch& touch) override { note("began", touch); }
    void touchesMoved(UITouch& touch) override { note("moved", touch); }
    void touchesEnded(UITouch& touch) override { note("ended", touch); }
    void touchesCancelled(UITouch& touch) override { note("cancelled", touch); }

    CGPoint lastLocation;
    UITouchPhase lastPhase = UITouchPhase::stationary;

private:
    void note(std::string const& what, UITouch& touch) {
        journal.push_back(name_ + " " + what);
        lastLocation = touch.locationIn(*this);
        lastPhase = touch.phase();
    }

    std::string name_;
};

class PressedTags : public NSObject {
public:
    void pressed(UIControl& sender) { tags.push_back(sender.tag()); }
    std::vector<int> tags;
};

using TouchTest = DeviceFixture;

TEST_F(TouchTest, HitTestingFindsTheFrontmostTouchableView) {
    auto const back = show(make<UIView>(), {0, 0, 100, 100});
    auto const front = show(make<UIView>(), {50, 50, 100, 100});
    auto& window = shell.window();
    EXPECT_EQ(window.hitTest({60, 60}), front);
    EXPECT_EQ(window.hitTest({10, 10}), back);
    front->setHidden(true);
    EXPECT_EQ(window.hitTest({60, 60}), back);
    front->setHidden(false);
    front->setAlpha(0.009);
    EXPECT_EQ(window.hitTest({60, 60}), back);
    front->setAlpha(0.01);
    EXPECT_EQ(window.hitTest({60, 60}), front);
    front->setUserInteractionEnabled(false);
    EXPECT_EQ(window.hitTest({60, 60}), back);
    back->addSubview(make<UIView>(CGRect{90, 0, 50, 20}));
    EXPECT_EQ(window.hitTest({95, 10}), back->subviews().front());
    EXPECT_EQ(window.hitTest({110, 10}).get(), &window) << "outside its parent";
    EXPECT_EQ(window.hitTest({150, 150}).get(), &window);
    EXPECT_EQ(window.hitTest({320, 10}), nullptr);
}

TEST_F(TouchTest, ATouchStaysWithTheViewThatItBeganInUntilThatLeaves) {
    auto const view = show(make<TouchedView>(CGRect{}), {10, 10, 50, 50});
    view->addSubview(make<UIView>(view->bounds())); // leaves its touches to the views above
    auto& window = shell.window();
    window.touchBegan(1, {20, 20});
    EXPECT_EQ(view->lastLocation, (CGPoint{10, 10}));
    window.touchMoved(1, {200, 200});
    EXPECT_EQ(view->lastLocation, (CGPoint{190, 190}));
    window.touchEnded(1, {210, 200});
    EXPECT_EQ(view->lastPhase, UITouchPhase::ended);
    window.touchMoved(1, {20, 20});
    window.touchBegan(1, {20, 20});
    view->removeFromSuperview();
    window.touchEnded(1, {20, 20});
    EXPECT_THAT(journal,
                ElementsAre("view began", "view moved", "view ended", "view began", "view cancelled"));
}

TEST_F(TouchTest, AViewFollowsOneFingerAtATime) {
    auto const view = show(make<TouchedView>(CGRect{}, "first"), {0, 0, 50, 50});
    show(make<TouchedView>(CGRect{}, "second"), {100, 0, 50, 50});
    auto& window = shell.window();
    window.touchBegan(1, {10, 10});
    window.touchBegan(2, {20, 20});
    window.touchBegan(3, {110, 10});
    window.touchEnded(2, {20, 20});
    window.touchEnded(1, {10, 10});
    window.touchCancelled(3);
    EXPECT_THAT(journal, ElementsAre("first began", "second began", "first ended", "second cancelled"));
}

TEST_F(TouchTest, ADragGoesOnWhenTheTouchedContentIsTakenAway) {
    auto const scrollView = show(make<UIScrollView>(), {0, 0, 200, 200});
    scrollView->setContentSize({200, 1000});
    auto const content = make<TouchedView>(CGRect{0, 0, 200, 1000});
    scrollView->addSubview(content);
    shell.window().touchBegan(1, {20, 180});
    shell.window().touchMoved(1, {20, 150});
    content->removeFromSuperview();
    double const before = scrollView->contentOffset().y;
    shell.window().touchMoved(1, {20, 100});
    EXPECT_GE(scrollView->contentOffset().y, before + 50);
    shell.window().touchEnded(1, {20, 100});
}

TEST_F(TouchTest, AnimatedViewsRefuseTouchesUnlessAllowedOrScrolling) {
    auto const view = show(make<UIView>(), {0, 0, 50, 50});
    auto const still = show(make<UIView>(), {100, 0, 50, 50});
    auto const scrollView = show(make<UIScrollView>(), {200, 0, 50, 50});
    scrollView->setContentSize({200, 1000});
    UIView::animate({.duration = 0.5, .animations = [&] { view->setCenter({26, 26}); }});
    UIView::animate({.duration = 1, .animations = [&] {
                         view->setAlpha(0.5);
                         still->setAlpha(1);
                         scrollView->setContentOffset({0, 100});
                     }});
    EXPECT_EQ(shell.window().hitTest({110, 10}), still) << "nothing about it changed";
    EXPECT_EQ(shell.window().hitTest({210, 10}), scrollView) << "a drift can be touched";
    EXPECT_EQ(shell.window().hitTest({10, 10}).get(), &shell.window());
    shell.advance(0.7);
    EXPECT_EQ(shell.window().hitTest({10, 10}).get(), &shell.window()) << "one of two animations goes on";
    shell.advance(0.4);
    EXPECT_EQ(shell.window().hitTest({10, 10}), view);
    UIView::animate({.duration = 1,
                     .options = UIViewAnimationOptions::allowUserInteraction,
                     .animations = [&] { view->setAlpha(1); }});
    EXPECT_EQ(shell.window().hitTest({10, 10}), view);
}

TEST_F(TouchTest, TabMovesTheFocusAndSpacePresses) {
    auto const root = make<UIViewController>();
    shell.window().setRootViewController(root);
    auto const target = make<PressedTags>();
    for (int tag = 1; tag <= 3; ++tag) {
        auto const control = make<UIControl>(CGRect{0, tag * 50.0, 40, 40});
        control->setTag(tag);
        control->addTarget(target.get(), &PressedTags::pressed, UIControlEvents::touchUpInside);
        control->setEnabled(tag != 2);
        root->view()->addSubview(control);
    }
    using Key = UIWindow::Key;
    for (auto const key : {Key::space, Key::tab, Key::space, Key::tab, Key::space, Key::tab, Key::space,
                           Key::backtab, Key::returnKey})
        shell.window().keyPressed(key);
    EXPECT_THAT(target->tags, ElementsAre(1, 3, 1, 3));
}

} // namespace
} // namespace trelundo

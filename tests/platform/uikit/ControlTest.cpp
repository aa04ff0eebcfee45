#include "tests/platform/uikit/DeviceFixture.h"
#include "trelundo/platform/uikit/controls/UIControl.h"

#include <functional>

namespace trelundo {

namespace {

using Events = UIControlEvents;

/// Writes down which events a control sends, together with its highlight at that moment.
class Recorder : public NSObject {
public:
    void down(UIControl& control) { note("down", control); }
    void inside(UIControl& control) { note("dragInside", control); }
    void outside(UIControl& control) { note("dragOutside", control); }
    void enter(UIControl& control) { note("enter", control); }
    void exit(UIControl& control) { note("exit", control); }
    void up(UIControl& control) { note("up", control); }
    void upOutside(UIControl& control) { note("upOutside", control); }
    void cancel(UIControl& control) { note("cancel", control); }
    void plain() {
        log.emplace_back("plain");
        if (whenCalled) whenCalled();
    }

    void listenTo(UIControl& control) {
        control.addTarget(this, &Recorder::down, Events::touchDown);
        control.addTarget(this, &Recorder::inside, Events::touchDragInside);
        control.addTarget(this, &Recorder::outside, Events::touchDragOutside);
        control.addTarget(this, &Recorder::enter, Events::touchDragEnter);
        control.addTarget(this, &Recorder::exit, Events::touchDragExit);
        control.addTarget(this, &Recorder::up, Events::touchUpInside);
        control.addTarget(this, &Recorder::upOutside, Events::touchUpOutside);
        control.addTarget(this, &Recorder::cancel, Events::touchCancel);
    }

    std::vector<std::string> log;
    std::function<void()> whenCalled;

private:
    void note(std::string const& event, UIControl const& control) {
        log.push_back(event + (control.isHighlighted() ? "*" : ""));
    }
};

using Log = std::vector<std::string>;

} // namespace

class ControlTest : public DeviceFixture {
protected:
    void SetUp() override {
        control = show(make<UIControl>(), {100, 100, 100, 50});
        recorder->listenTo(*control);
    }

    Ref<UIControl> control;
    Ref<Recorder> recorder = make<Recorder>();
};

TEST_F(ControlTest, AFingerIsInsideUpToSeventyPointsAway) {
    auto& window = shell.window();
    window.touchBegan(1, {150, 120});
    window.touchMoved(1, {150, 215}); // 65 below
    window.touchMoved(1, {150, 225}); // 75 below
    window.touchMoved(1, {150, 400});
    window.touchMoved(1, {150, 110});
    window.touchMoved(1, {20, 110}); // 80 to the left
    window.touchEnded(1, {20, 110});
    EXPECT_EQ(recorder->log, (Log{"down*", "dragInside*", "exit", "dragOutside", "dragOutside", "enter*",
                                  "dragInside*", "exit", "dragOutside", "upOutside"}));
}

TEST_F(ControlTest, ACancelledTouchSendsOnlyCancelAndADisabledControlNothing) {
    shell.window().touchBegan(1, {150, 120});
    shell.window().touchCancelled(1);
    EXPECT_EQ(recorder->log, (Log{"down*", "cancel"}));
    EXPECT_FALSE(control->isHighlighted());
    shell.window().touchBegan(1, {150, 120});
    control->setEnabled(false);
    EXPECT_FALSE(control->isHighlighted());
    shell.window().touchEnded(1, {150, 120});
    EXPECT_EQ(recorder->log, (Log{"down*", "cancel", "down*"}));
}

TEST_F(ControlTest, TouchesOfAnInnerViewReachTheControlAndASecondFingerIsIgnored) {
    control->addSubview(make<UIView>(CGRect{0, 0, 50, 50}));
    auto& window = shell.window();
    window.touchBegan(1, {110, 120});
    window.touchBegan(2, {160, 120});
    window.touchEnded(2, {160, 120});
    EXPECT_EQ(recorder->log, (Log{"down*"}));
    window.touchEnded(1, {110, 120});
    EXPECT_EQ(recorder->log, (Log{"down*", "up"})) << "highlighted until just before the action";
    EXPECT_FALSE(control->isTracking());
}

TEST_F(ControlTest, ADisabledControlSwallowsTouches) {
    control->addSubview(make<UIView>(CGRect{0, 0, 100, 50}));
    control->setEnabled(false);
    EXPECT_EQ(shell.window().hitTest({150, 120}), control);
    shell.tap({150, 120});
    EXPECT_TRUE(recorder->log.empty());
    control->sendActions(Events::touchUpInside);
    EXPECT_EQ(recorder->log, (Log{"up"}));
}

TEST_F(ControlTest, TargetsFireOnceInTheOrderOfRegistrationAndDieQuietly) {
    auto second = make<Recorder>();
    Log order;
    recorder->whenCalled = [&] { order.emplace_back("first"); };
    second->whenCalled = [&] { order.emplace_back("second"); };
    auto const button = make<UIControl>();
    for (auto const events :
         {Events::valueChanged, Events::valueChanged, Events::valueChanged | Events::touchDown})
        button->addTarget(recorder.get(), &Recorder::plain, events);
    button->addTarget(second.get(), &Recorder::plain, Events::touchDown);
    button->sendActions(Events::valueChanged);
    EXPECT_EQ(order, (Log{"first"}));
    button->sendActions(Events::touchDown);
    EXPECT_EQ(order, (Log{"first", "first", "second"}));
    second = nullptr;
    button->sendActions(Events::allEvents);
    EXPECT_EQ(order, (Log{"first", "first", "second", "first"}));
}

TEST_F(ControlTest, ActionsMayRemoveTargetsAndDestroyTheControl) {
    auto const second = make<Recorder>();
    auto button = make<UIControl>();
    Weak<UIControl> const watched{button};
    recorder->whenCalled = [&] {
        button->removeTarget(*second);
        button = nullptr;
    };
    button->addTarget(recorder.get(), &Recorder::plain, Events::touchDown);
    button->addTarget(second.get(), &Recorder::plain, Events::touchDown);
    button->sendActions(Events::touchDown);
    EXPECT_EQ(recorder->log, (Log{"plain"}));
    EXPECT_TRUE(second->log.empty());
    EXPECT_FALSE(watched.lock());
}

} // namespace trelundo

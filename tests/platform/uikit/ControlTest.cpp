#include "tests/platform/uikit/DeviceFixture.h"
#include "trelundo/platform/uikit/controls/UIControl.h"

#include <functional>
#include <map>

namespace trelundo {

namespace {

using Events = UIControlEvents;

/// Writes down which events a control sends, together with its highlight at that moment.
class Recorder : public NSObject {
public:
    template <Events event> void hear(UIControl& control) {
        static std::map<Events, std::string> const names{
            {Events::touchDown, "down"},           {Events::touchDragInside, "dragInside"},
            {Events::touchDragEnter, "enter"},     {Events::touchDragOutside, "dragOutside"},
            {Events::touchDragExit, "exit"},       {Events::touchUpInside, "up"},
            {Events::touchUpOutside, "upOutside"}, {Events::touchCancel, "cancel"}};
        log.push_back(names.at(event) + (control.isHighlighted() ? "*" : ""));
    }
    template <Events... events> void listenTo(UIControl& control) {
        (control.addTarget(this, &Recorder::hear<events>, events), ...);
    }
    void plain() {
        log.emplace_back("plain");
        if (whenCalled) whenCalled();
    }

    std::vector<std::string> log;
    std::function<void()> whenCalled;
};

using Log = std::vector<std::string>;

} // namespace

class ControlTest : public DeviceFixture {
protected:
    void SetUp() override {
        control = show(make<UIControl>(), {100, 100, 100, 50});
        recorder->listenTo<Events::touchDown, Events::touchDragInside, Events::touchDragOutside,
                           Events::touchDragEnter, Events::touchDragExit, Events::touchUpInside,
                           Events::touchUpOutside, Events::touchCancel>(*control);
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
    control->addSubview(make<UIView>(CGRect{0, 0, 100, 50}));
    EXPECT_EQ(shell.window().hitTest({150, 120}), control) << "it swallows touches";
    shell.tap({150, 120});
    control->sendActions(Events::touchUpInside);
    EXPECT_EQ(recorder->log, (Log{"down*", "cancel", "down*", "up"}));
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

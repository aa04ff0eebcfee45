#pragma once

#include "tools/paywall/script/Script.h"
#include "tools/paywall/session/ScreenSession.h"
#include "trelundo/platform/window/OffscreenShell.h"

#include <map>
#include <string>
#include <vector>

namespace trelundo::paywall {

/// Performs the steps of a script on a screen without a display. Time moves by `advance` alone.
class ScriptRunner {
public:
    ScriptRunner(OffscreenShell& shell, ScreenSession& session)
        : shell_(shell)
        , session_(session) {}

    /// Performs all steps; the first that cannot be done, or whose expectation is not met, throws a Failure
    /// naming it.
    void play(std::vector<Step> const& steps);

private:
    void perform(Step const& step);
    void tap(Step const& step);
    void press(Step const& step);
    void release(Step const& step);
    void drag(Step const& step);
    void chooseAction(Step const& step);
    void advance(Step const& step);
    void rotate(Step const& step);
    void setAppearance(Step const& step);
    void takeSnapshot(Step const& step);
    void writeDescription(Step const& step);
    void expect(Step const& step);
    void assign(Step const& step);
    void instructHost(Step const& step);
    void cover(Step const& step);
    void uncover(Step const& step);
    bool isCovered() const;
    void dismissScreen(Step const& step);

    /// The visible view that a step's argument names, frontmost first.
    Ref<UIView> find(Step const& step);
    CGPoint middleOf(UIView& view) const;
    UIViewController& screen(Step const& step) const;

    OffscreenShell& shell_;
    ScreenSession& session_;
    Ref<UIViewController> cover_;
    std::map<std::string, int> presses_; // the touch that holds a control, by its name
    int nextTouch_ = 100;                // apart from those of tap and drag
};

} // namespace trelundo::paywall

#include "tools/paywall/script/ScriptRunner.h"

#include "tools/paywall/Failure.h"
#include "tools/paywall/output/Describe.h"
#include "tools/paywall/output/VisibleText.h"
#include "tools/paywall/screens/PropertyValues.h"
#include "tools/paywall/script/StepArguments.h"
#include "tools/paywall/script/StoreSteps.h"
#include "trelundo/platform/foundation/FileContents.h"
#include "trelundo/platform/uikit/controllers/UIAlertController.h"

#include <algorithm>
#include <cmath>
#include <fmt/core.h>
#include <map>
#include <ranges>

namespace trelundo::paywall {

namespace {

constexpr int longestDrag = 1'000'000; // points

/// Depth first from the front; hidden subtrees do not count.
Ref<UIView> findView(UIView& view, Step::Word const& word) {
    if (view.isHidden() || word.text.empty()) return nullptr;
    for (auto const& subview : std::views::reverse(view.subviews()))
        if (auto const found = findView(*subview, word)) return found;
    auto const& shown = word.isQuoted ? visibleText(view) : view.accessibilityIdentifier();
    return shown == word.text ? strong(view) : nullptr;
}

} // namespace

void ScriptRunner::play(std::vector<Step> const& steps) {
    for (auto const& step : steps) perform(step);
}

void ScriptRunner::perform(Step const& step) {
    using Action = std::function<void(ScriptRunner&, Step const&)>;
    static std::map<std::string, Action, std::less<>> const actions{
        {"tap", &ScriptRunner::tap},
        {"press", &ScriptRunner::press},
        {"release", &ScriptRunner::release},
        {"drag", &ScriptRunner::drag},
        {"alert", &ScriptRunner::chooseAction},
        {"advance", &ScriptRunner::advance},
        {"store", [](ScriptRunner& runner, Step const& s) { changeStore(runner.session_.store(), s); }},
        {"can-make-payments",
         [](ScriptRunner& runner, Step const& s) {
             runner.session_.store().setCanMakePayments(choice(s, 0, "on", "off"));
         }},
        {"rotate", &ScriptRunner::rotate},
        {"appearance", &ScriptRunner::setAppearance},
        {"snapshot", &ScriptRunner::takeSnapshot},
        {"describe", &ScriptRunner::writeDescription},
        {"expect", &ScriptRunner::expect},
        {"set", &ScriptRunner::assign},
        {"host", &ScriptRunner::instructHost},
        {"cover", &ScriptRunner::cover},
        {"uncover", &ScriptRunner::uncover},
        {"dismiss", &ScriptRunner::dismissScreen},
    };
    actions.at(step.command)(*this, step);
}

// Touches

Ref<UIView> ScriptRunner::find(Step const& step) {
    shell_.window().layoutWindow();
    auto view = findView(shell_.window(), step.arguments.front());
    if (!view) fail(step, "no such view is visible");
    return view;
}

CGPoint ScriptRunner::middleOf(UIView& view) const {
    auto const bounds = view.bounds();
    return view.convertPointTo({bounds.midX(), bounds.midY()}, nullptr);
}

void ScriptRunner::tap(Step const& step) { shell_.tap(middleOf(*find(step))); }

void ScriptRunner::press(Step const& step) {
    auto const place = middleOf(*find(step));
    auto const [held, isNew] = presses_.try_emplace(argument(step, 0), nextTouch_);
    if (!isNew) fail(step, "held already");
    shell_.window().touchBegan(nextTouch_++, place);
}

void ScriptRunner::release(Step const& step) {
    if (presses_.empty()) fail(step, "nothing is held by a press");
    auto const place = middleOf(*find(step));
    auto held = presses_.find(argument(step, 0));
    // Another name than the pressed one lifts the finger there.
    if (held == presses_.end()) held = presses_.begin();
    auto const touch = held->second;
    presses_.erase(held);
    shell_.window().touchEnded(touch, place);
}

void ScriptRunner::drag(Step const& step) {
    double const dx = parsed(step, 1, parseNumber);
    double const dy = parsed(step, 2, parseNumber);
    if (!(std::hypot(dx, dy) <= longestDrag))
        fail(step, fmt::format("the way must not be longer than {} points", longestDrag));
    shell_.drag(middleOf(*find(step)), dx, dy, 0);
}

void ScriptRunner::chooseAction(Step const& step) {
    auto const alert = cast<UIAlertController>(shell_.window().topViewController());
    if (!alert) fail(step, "no alert is shown");
    auto const action = std::ranges::find(alert->actions(), argument(step, 0), &UIAlertAction::title);
    if (action == alert->actions().end()) fail(step, "the alert has no such action");
    alert->performAction(**action);
}

// Surroundings

void ScriptRunner::advance(Step const& step) {
    double const seconds = parsed(step, 0, parseNumber);
    if (!(seconds >= 0 && seconds <= 86400)) fail(step, "the seconds must be between 0 and 86400");
    shell_.advance(seconds);
}

void ScriptRunner::rotate(Step const& step) { shell_.rotate(choice(step, 0, "landscape", "portrait")); }

void ScriptRunner::setAppearance(Step const& step) {
    shell_.setUserInterfaceStyle(choice(step, 0, "dark", "light") ? UIUserInterfaceStyle::dark
                                                                  : UIUserInterfaceStyle::light);
}

void ScriptRunner::takeSnapshot(Step const& step) {
    performed(step, [&] { valueOrFail(shell_.snapshot(argument(step, 0))); });
}

void ScriptRunner::writeDescription(Step const& step) {
    auto& shown = screen(step);
    shell_.window().layoutWindow();
    performed(step, [&] { valueOrFail(writeFile(argument(step, 0), toText(describe(shown), 2) + "\n")); });
}

void ScriptRunner::expect(Step const& step) {
    std::vector<std::pair<std::string, std::string>> fields;
    for (auto const& word : step.arguments | std::views::drop(1))
        fields.push_back(performed(step, [&] { return parseAssignment(word.text, "KEY=VALUE"); }));
    if (!session_.log().holds(argument(step, 0), fields)) fail(step, "the log holds no such line");
}

// The host

UIViewController& ScriptRunner::screen(Step const& step) const {
    if (!session_.screen()) fail(step, "the screen has gone");
    return *session_.screen();
}

void ScriptRunner::assign(Step const& step) {
    auto& shown = screen(step);
    performed(step, [&] {
        auto const [name, value] = parseAssignment(argument(step, 0), "NAME=VALUE");
        setProperty(session_.screenType(), shown, name, value);
    });
}

void ScriptRunner::instructHost(Step const& step) {
    if (argument(step, 0) != "promote") fail(step, "the host can only be told to promote");
    session_.host().setAcceptsPromotions(choice(step, 1, "yes", "no"));
}

void ScriptRunner::cover(Step const& step) {
    if (isCovered()) fail(step, "the screen is covered already");
    cover_ = make<UIViewController>();
    cover_->view()->setBackgroundColor(UIColor::black());
    cover_->setModalPresentationStyle(UIModalPresentationStyle::fullScreen);
    shell_.window().topViewController()->present(cover_, true);
    if (!isCovered()) fail(step, "a dismissal is under way; advance first");
}

bool ScriptRunner::isCovered() const { return cover_ && cover_->presentingViewController(); }

void ScriptRunner::uncover(Step const& step) {
    if (!isCovered()) fail(step, "nothing covers the screen");
    // The dismissal would be refused.
    if (cover_->isBeingPresented()) fail(step, "the covering screen is still arriving; advance first");
    std::exchange(cover_, nullptr)->dismiss(true);
}

void ScriptRunner::dismissScreen(Step const& step) {
    if (!session_.screen()) fail(step, "the screen has gone");
    session_.hostScreen().dismiss(true);
}

} // namespace trelundo::paywall

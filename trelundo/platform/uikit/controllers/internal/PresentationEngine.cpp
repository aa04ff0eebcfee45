#include "trelundo/platform/uikit/controllers/internal/PresentationEngine.h"

#include "trelundo/platform/foundation/DispatchQueue.h"
#include "trelundo/platform/foundation/Log.h"
#include "trelundo/platform/uikit/controllers/PresentationListener.h"
#include "trelundo/platform/uikit/views/UIWindow.h"

#include <algorithm>
#include <ranges>

namespace trelundo {

namespace {

PresentationListener listener;

/// Called once the next transition has ended.
std::vector<std::function<void()>>& waiting() {
    static auto& actions = *new std::vector<std::function<void()>>; // screens may go at the program's end
    return actions;
}

} // namespace

void setPresentationListener(PresentationListener newListener) { listener = std::move(newListener); }

struct PresentationEngine::Dismissal {
    Ref<UIViewController> base;
    Chain leaving; // lowest first
    bool animated;
    Completion completion;
};

PresentationEngine::Chain PresentationEngine::chainAbove(UIViewController const& controller) {
    Chain chain;
    for (auto next = controller.presented_; next; next = next->presented_) chain.push_back(next);
    return chain;
}

// Appearance.

void PresentationEngine::willAppear(UIViewController& controller, bool animated) {
    if (controller.hasAppeared_) return;
    UITraitScope const scope(controller.traitCollection());
    controller.hasAppeared_ = true;
    controller.viewWillAppear(animated);
}

void PresentationEngine::isAppearing(UIViewController& controller, bool animated) {
    UITraitScope const scope(controller.traitCollection());
    controller.viewIsAppearing(animated);
}

void PresentationEngine::didAppear(UIViewController& controller, bool animated) {
    if (!controller.hasAppeared_) return;
    UITraitScope const scope(controller.traitCollection());
    controller.viewDidAppear(animated);
}

void PresentationEngine::willDisappear(UIViewController& controller, bool animated) {
    if (!controller.hasAppeared_) return;
    UITraitScope const scope(controller.traitCollection());
    controller.hasAppeared_ = false;
    controller.viewWillDisappear(animated);
}

void PresentationEngine::didDisappear(UIViewController& controller, bool animated) {
    if (controller.hasAppeared_) return;
    UITraitScope const scope(controller.traitCollection());
    controller.viewDidDisappear(animated);
}

// Presenting.

/// Below a full-screen presentation a controller has no view in the window and still stands in the chain.
bool PresentationEngine::isOnScreen(UIViewController const& controller, UIViewController const& presenter) {
    for (auto const* below = &presenter; below; below = below->presenting_) {
        if (below == &controller) return true;
    }
    return controller.presenting_ || (controller.view_ && controller.view_->window());
}

bool PresentationEngine::mayPresent(UIViewController& presenter, UIViewController const* controller) {
    std::string const attempt = "Attempt to present " + (controller ? controller->className() : "nothing") +
                                " on " + presenter.className();
    if (!controller)
        logWarning(attempt + ".");
    else if (presenter.presented_)
        logWarning(attempt + ", which is already presenting.");
    else if (!presenter.view_ || !presenter.view_->window())
        logWarning(attempt + ", whose view is not in a window.");
    else if (presenter.isBeingDismissed_)
        logWarning(attempt + ", which is being dismissed.");
    else if (isOnScreen(*controller, presenter))
        logWarning(attempt + ", but it is already on screen.");
    else
        return true;
    return false;
}

void PresentationEngine::link(UIViewController& presenter, Ref<UIViewController> const& controller) {
    presenter.presented_ = controller;
    controller->presenting_ = &presenter;
    controller->isBeingPresented_ = true;
    controller->isInTransition_ = true;
}

void PresentationEngine::present(UIViewController& presenter, Ref<UIViewController> controller, bool animated,
                                 Completion completion) {
    if (!mayPresent(presenter, controller.get())) return;
    auto const window = strong(*presenter.view_->window());
    auto const base = strong(presenter);
    link(presenter, controller);
    if (listener.presented) listener.presented(*controller, animated);
    controller->loadViewIfNeeded();
    build(*controller);
    cover(presenter, *controller->presentation_, animated);
    willAppear(*controller, animated);
    if (!controller->presentation_) return; // a callback took the whole window apart
    install(*controller, *window);
    isAppearing(*controller, animated);
    window->layoutWindow();
    if (!controller->presentation_) return;
    transition(*controller, true, animated, [base, controller, animated, completion = std::move(completion)] {
        if (controller->presenting_ != base.get()) return; // abandoned with its window
        endPresenting(*controller, animated);
        if (completion) completion();
        transitionDidEnd();
    });
}

/// Below a presentation over the whole screen nothing stays in the window.
void PresentationEngine::cover(UIViewController& presenter, Presentation& presentation, bool animated) {
    if (presentation.style != UIModalPresentationStyle::fullScreen) return;
    for (auto* below = &presenter; below; below = below->presenting_) {
        auto const view = host(*below);
        if (!view || !view->window()) break;
        presentation.covered.emplace_back(below);
        willDisappear(*below, animated);
    }
}

void PresentationEngine::endPresenting(UIViewController& controller, bool animated) {
    auto const covered = controller.presentation_->covered;
    controller.isInTransition_ = false;
    for (auto const& weak : covered) {
        if (auto below = weak.lock()) host(*below)->removeFromSuperview();
    }
    didAppear(controller, animated);
    for (auto const& weak : covered) {
        if (auto below = weak.lock()) didDisappear(*below, animated);
    }
    controller.isBeingPresented_ = false;
}

/// Moves the controller's view in or out and calls `ended` afterwards, never inside this call.
void PresentationEngine::transition(UIViewController& controller, bool arrives, bool animated,
                                    Completion ended) {
    using Stage = UIViewController::TransitionStage;
    auto const& presentation = *controller.presentation_;
    auto const apply = [&controller, &presentation](Stage stage) {
        controller.applyTransition(stage, *presentation.carrier);
        if (presentation.dimming) presentation.dimming->setAlpha(stage == Stage::shown ? 1 : 0);
    };
    if (!animated) {
        if (arrives) apply(Stage::shown);
        return DispatchQueue::main().async(std::move(ended));
    }
    if (arrives) UIView::performWithoutAnimation([&apply] { apply(Stage::arriving); });
    UIView::animate({.duration = controller.transitionDuration(),
                     .options = UIViewAnimationOptions::overrideInheritedDuration |
                                UIViewAnimationOptions::overrideInheritedCurve,
                     .animations = [&apply, arrives] { apply(arrives ? Stage::shown : Stage::leaving); },
                     .completion = [ended = std::move(ended)](bool) { ended(); }});
}

// Dismissing.

void PresentationEngine::dismiss(UIViewController& controller, bool animated, Completion completion) {
    auto* base = controller.presented_ ? &controller : controller.presenting_;
    if (!base) {
        if (completion) DispatchQueue::main().async(std::move(completion));
        return;
    }
    Dismissal dismissal{strong(*base), chainAbove(*base), animated, std::move(completion)};
    if (std::ranges::any_of(dismissal.leaving,
                            [](auto const& leaving) { return leaving->isInTransition_; })) {
        logWarning("Attempt to dismiss from " + base->className() + " while a transition is under way.");
        return;
    }
    beginDismissal(dismissal);
    transition(*dismissal.leaving.back(), false, animated, [dismissal] { endDismissal(dismissal); });
}

/// Only the topmost moves; what lies between it and the presenter vanishes at once.
void PresentationEngine::beginDismissal(Dismissal const& dismissal) {
    auto const& [base, leaving, animated, completion] = dismissal;
    for (auto const& controller : leaving) controller->isInTransition_ = controller->isBeingDismissed_ = true;
    for (auto const& controller : std::views::reverse(leaving)) willDisappear(*controller, animated);
    auto* window = host(*leaving.back())->window();
    if (!window) return;
    auto const strongWindow = strong(*window);
    uncover(*leaving.front()->presentation_, *window, animated);
    for (auto const& controller : leaving) {
        if (controller != leaving.back()) host(*controller)->removeFromSuperview();
    }
    updateDimming(*base);
    window->setNeedsStatusBarAppearanceUpdate();
    window->layoutWindow();
}

void PresentationEngine::uncover(Presentation const& presentation, UIWindow& window, bool animated) {
    for (auto const& weak : presentation.covered) {
        auto const below = weak.lock();
        if (!below) continue;
        willAppear(*below, animated);
        fitToWindow(*below, window);
        window.insertSubview(host(*below), 0);
        isAppearing(*below, animated);
    }
}

void PresentationEngine::endDismissal(Dismissal const& dismissal) {
    auto const& [base, leaving, animated, completion] = dismissal;
    if (base->presented_ != leaving.front()) return; // abandoned with its window
    auto const covered = leaving.front()->presentation_->covered;
    unlink(*base);
    for (auto const& weak : covered) {
        if (auto below = weak.lock()) didAppear(*below, animated);
    }
    for (auto const& controller : std::views::reverse(leaving)) {
        didDisappear(*controller, animated);
        controller->isBeingDismissed_ = false;
        if (listener.dismissed) listener.dismissed(*controller, animated);
    }
    if (completion) completion();
    transitionDidEnd();
}

void PresentationEngine::afterNextTransition(Completion action) { waiting().push_back(std::move(action)); }

/// Who waits again inside its call waits for the transition after this one.
void PresentationEngine::transitionDidEnd() {
    for (auto const& action : std::exchange(waiting(), {})) action();
}

/// Parts the controller from all that it has presented; their views leave the window.
void PresentationEngine::unlink(UIViewController& presenter) {
    auto presented = std::exchange(presenter.presented_, nullptr);
    if (!presented) return;
    unlink(*presented);
    auto const presentation = std::move(presented->presentation_);
    presented->presenting_ = nullptr;
    presented->isInTransition_ = presented->isBeingPresented_ = false;
    if (!presentation) return;
    presentation->container->removeFromSuperview();
    presented->view_->removeFromSuperview();
}

void PresentationEngine::abandon(UIViewController& controller) {
    bool const isTransitionAbandoned = controller.isTransitionUnderWay();
    for (auto const& presented : chainAbove(controller))
        presented->isBeingDismissed_ = presented->hasAppeared_ = false;
    unlink(controller);
    if (isTransitionAbandoned) DispatchQueue::main().async(transitionDidEnd);
}

} // namespace trelundo

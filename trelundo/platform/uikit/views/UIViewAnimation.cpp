#include "trelundo/platform/coreanimation/CATransaction.h"
#include "trelundo/platform/uikit/views/UIView.h"

namespace trelundo {

namespace {

/// The views that one running animation block has moved and that refuse touches until it ends.
struct RefusingViews {
    std::vector<Weak<UIView>> views;
};

/// Of the innermost block under way; null when it allows touches, or outside blocks.
std::shared_ptr<RefusingViews> refusingViews;

bool has(UIViewAnimationOptions options, UIViewAnimationOptions bit) {
    return (static_cast<unsigned>(options) & static_cast<unsigned>(bit)) != 0;
}

CAMediaTimingFunction timing(UIViewAnimationOptions options) {
    switch ((static_cast<unsigned>(options) >> 16) & 3u) {
    case 1:
        return CAMediaTimingFunction::easeIn();
    case 2:
        return CAMediaTimingFunction::easeOut();
    case 3:
        return CAMediaTimingFunction::linear();
    default:
        return CAMediaTimingFunction::easeInEaseOut();
    }
}

/// Inside another block its duration and curve count, unless the options override them.
CATransaction::Settings settings(UIView::AnimationParameters const& parameters) {
    auto const options = parameters.options;
    CATransaction::Settings result{.duration = parameters.duration,
                                   .delay = parameters.delay,
                                   .timing = timing(options),
                                   .repeats = has(options, UIViewAnimationOptions::repeat),
                                   .autoreverses = has(options, UIViewAnimationOptions::autoreverse),
                                   .inherits = false,
                                   .completion = nullptr};
    if (auto const* outer = CATransaction::current()) {
        if (!has(options, UIViewAnimationOptions::overrideInheritedDuration))
            result.duration = outer->duration;
        if (!has(options, UIViewAnimationOptions::overrideInheritedCurve)) result.timing = outer->timing;
    }
    return result;
}

} // namespace

void UIView::animate(AnimationParameters parameters) {
    bool const allowsTouches = has(parameters.options, UIViewAnimationOptions::allowUserInteraction);
    auto refusing = allowsTouches ? nullptr : std::make_shared<RefusingViews>();
    auto transaction = settings(parameters);
    if (refusing || parameters.completion) {
        transaction.completion = [refusing, completion = std::move(parameters.completion)](bool finished) {
            if (refusing) endRefusal(refusing->views);
            if (completion) completion(finished);
        };
    }
    CATransaction::begin(std::move(transaction));
    auto outer = std::exchange(refusingViews, std::move(refusing));
    if (parameters.animations) parameters.animations();
    refusingViews = std::move(outer);
    CATransaction::commit();
}

void UIView::endRefusal(std::vector<Weak<UIView>> const& views) {
    for (auto const& weak : views) {
        if (auto view = weak.lock()) --view->refusingAnimations_;
    }
}

void UIView::performWithoutAnimation(std::function<void()> const& actions) {
    bool const wereEnabled = areAnimationsEnabled();
    setAnimationsEnabled(false);
    if (actions) actions();
    setAnimationsEnabled(wereEnabled);
}

void UIView::setAnimationsEnabled(bool enabled) { CATransaction::setAnimationsEnabled(enabled); }

bool UIView::areAnimationsEnabled() { return CATransaction::areAnimationsEnabled(); }

bool UIView::refusesTouches() const { return refusingAnimations_ > 0 && refusesTouchesInAnimations(); }

/// To be called before an animatable property of the layer changes.
void UIView::noteAnimatedChange() {
    if (!refusingViews || !window_ || !CATransaction::isAnimating()) return;
    auto& views = refusingViews->views;
    bool const isNoted = !views.empty() && views.back().refersTo(*this);
    if (isNoted) return;
    views.push_back(this);
    ++refusingAnimations_;
}

} // namespace trelundo

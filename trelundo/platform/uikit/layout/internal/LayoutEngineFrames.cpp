#include "trelundo/platform/uikit/layout/internal/LayoutEngine.h"

#include "trelundo/platform/foundation/Log.h"
#include "trelundo/platform/uikit/layout/UILayoutGuide.h"
#include "trelundo/platform/uikit/views/UIScreen.h"
#include "trelundo/platform/uikit/views/UIView.h"

#include <fmt/core.h>

namespace trelundo {

namespace {

/// How often the views of one pass may take back what they said of their size for a width.
constexpr int widthRounds = 5;
constexpr double sameLength = 1e-6; // points

/// Halves go up, and so does what rounding has pushed below a half, so that edges at one place stay together.
double toPixel(double points, double scale) { return std::floor(points * scale + 0.5 + 1e-6) / scale; }

bool isSame(CGRect const& a, CGRect const& b) {
    return std::abs(a.origin.x - b.origin.x) < sameLength && std::abs(a.origin.y - b.origin.y) < sameLength &&
           std::abs(a.size.width - b.size.width) < sameLength &&
           std::abs(a.size.height - b.size.height) < sameLength;
}

} // namespace

bool LayoutEngine::applicationIsRightToLeft() {
    return UIScreen::main().userInterfaceLayoutDirection() == UIUserInterfaceLayoutDirection::rightToLeft;
}

bool LayoutEngine::needsUpdate() const {
    return solver_.isDirty() || hasStaleContent_ || !addedSubtrees_.empty() || !activated_.empty() ||
           isRightToLeft_ != applicationIsRightToLeft();
}

void LayoutEngine::update() {
    if (isUpdating_ || !needsUpdate()) return;
    isUpdating_ = true;
    bool const isRightToLeft = applicationIsRightToLeft();
    if (std::exchange(isRightToLeft_, isRightToLeft) != isRightToLeft) reset();
    solve();
    if (purpose_ == Purpose::layout) placeBoxes();
    isUpdating_ = false;
}

/// Twice, as a rule: the heights of wrapping views follow the widths of the first solution.
void LayoutEngine::solve() {
    for (int round = 0; round < widthRounds; ++round) {
        updateTree();
        refreshStaleContent();
        for (auto const& conflict : solver_.solve()) report(conflict);
        if (!propagateWidths()) break;
    }
    std::erase_if(reported_, [this](Solver::Constraint handle) {
        if (solver_.isRefused(handle)) return false;
        sources_[static_cast<std::size_t>(handle)].reported.clear();
        return true;
    });
}

void LayoutEngine::refreshStaleContent() {
    if (!std::exchange(hasStaleContent_, false)) return;
    for (std::size_t slot = 0; slot < boxes_.size(); ++slot) {
        if (!boxes_[slot].contentIsStale) continue;
        refreshContent(boxes_[slot]);
        refreshPins(static_cast<int>(slot), firstBaseline, lastBaseline);
    }
}

bool LayoutEngine::propagateWidths() {
    bool changed = false;
    for (std::size_t slot = 0; slot < boxes_.size(); ++slot) {
        auto& told = boxes_[slot];
        if (told.kind != Kind::driven) continue;
        double const now = solver_.value(told.measures[width].variable);
        if (std::abs(now - told.propagatedWidth) < sameLength) continue;
        told.propagatedWidth = now;
        auto const view = strong(*told.view);
        if (!view->layoutWidthDidChange(now)) continue;
        if (slot >= boxes_.size()) break; // the view has changed the tree
        boxes_[slot].contentIsStale = hasStaleContent_ = changed = true;
    }
    return changed;
}

void LayoutEngine::restoreWidths(UIView& view) {
    if (auto const* node = LayoutNode::existing(view); node && node->engine == this && node->slot >= 0) {
        if (double const told = box(node->slot).propagatedWidth; told >= 0) view.layoutWidthDidChange(told);
    }
    for (auto const& child : view.subviews_) restoreWidths(*child);
}

std::string LayoutEngine::nameOf(Solver::Constraint handle) const {
    auto const& source = sources_[static_cast<std::size_t>(handle)];
    if (source.constraint) return source.constraint->description();
    return fmt::format("{} of {}", source.part, source.view->layoutName());
}

/// A conflict that a retry only meets again is reported once.
void LayoutEngine::report(Solver::Conflict const& conflict) {
    std::string text =
        fmt::format("Layout: leaving out {}, which cannot hold together with", nameOf(conflict.refused));
    char separator = ' ';
    for (auto const handle : conflict.involved) {
        if (handle == conflict.refused) continue;
        text += separator == ' ' ? " " : "; ";
        text += nameOf(handle);
        separator = ';';
    }
    auto& source = sources_[static_cast<std::size_t>(conflict.refused)];
    if (std::ranges::find(reported_, conflict.refused) == reported_.end())
        reported_.push_back(conflict.refused);
    if (source.reported == text) return;
    source.reported = text;
    logWarning(text);
}

// Frames.

CGPoint LayoutEngine::originOf(UIView& view) {
    auto const* node = LayoutNode::existing(view);
    if (!node || node->engine != this || node->slot < 0 || box(node->slot).kind != Kind::driven) return {};
    auto& box = this->box(node->slot);
    if (std::exchange(box.originStamp, stamp_) != stamp_)
        box.origin = originOf(*view.superview_) + CGPoint{solver_.value(box.measures[minX].variable),
                                                          solver_.value(box.measures[minY].variable)};
    return box.origin;
}

/// Each edge is rounded by itself, so that adjoining views stay adjoining. Counted from the nearest view that
/// is placed by hand, so that cells keep their insides wherever they stand.
CGRect LayoutEngine::roundedFrame(Box& box) {
    auto const base = originOf(box.guide ? *box.view : *box.view->superview_);
    auto const value = [&](Measure measure) { return solver_.value(box.measures[measure].variable); };
    double const left = toPixel(base.x + value(minX), scale_);
    double const top = toPixel(base.y + value(minY), scale_);
    double const right = toPixel(base.x + value(minX) + value(width), scale_);
    double const bottom = toPixel(base.y + value(minY) + value(height), scale_);
    return {left - toPixel(base.x, scale_), top - toPixel(base.y, scale_), right - left, bottom - top};
}

void LayoutEngine::placeBoxes() {
    ++stamp_;
    double const scale = root_.window_ ? root_.window_->traitCollection().displayScale : 0;
    scale_ = scale > 0 ? scale : UIScreen::main().scale();
    for (auto& box : boxes_) {
        if (box.kind != Kind::driven && box.kind != Kind::guide) continue;
        auto const frame = roundedFrame(box);
        if (std::exchange(box.isSolved, true) && isSame(frame, box.frame)) continue;
        box.frame = frame;
        if (box.guide)
            box.guide->layoutFrame_ = frame;
        else
            box.view->superview_->setNeedsLayout();
    }
}

void LayoutEngine::applyFrames(UIView& superview) {
    auto const children = superview.subviews_;
    for (auto const& child : children) {
        auto const* node = LayoutNode::existing(*child);
        if (!node || node->engine != this || node->slot < 0 || child->superview_ != &superview) continue;
        auto const& solved = box(node->slot);
        if (solved.kind != Kind::driven || !solved.isSolved) continue;
        auto const frame = solved.frame;
        auto const anchor = child->layer_->anchorPoint();
        auto const bounds = child->bounds();
        CGPoint const center{frame.origin.x + anchor.x * frame.size.width,
                             frame.origin.y + anchor.y * frame.size.height};
        if (bounds.size != frame.size) child->setBounds({bounds.origin, frame.size});
        if (child->center() != center) child->setCenter(center);
    }
}

CGSize LayoutEngine::fittingSize(CGSize target) {
    updateTree();
    auto const& root = box(slotOf(root_));
    auto const measures = root.measures;
    auto const pull = [&](Measure measure, double length) {
        Solver::Term const term{measures[measure].variable, 1};
        add(Solver::equal({&term, 1}, length, UILayoutPriority::fittingSizeLevel.value),
            {.constraint = nullptr, .view = &root_, .part = "fitting size", .reported = {}});
    };
    pull(width, std::clamp(target.width, 0.0, farAway));
    pull(height, std::clamp(target.height, 0.0, farAway));
    update();
    double const scale = UIScreen::main().scale();
    auto const fitted = [&](Measure measure) {
        return std::ceil(solver_.value(measures[measure].variable) * scale - 1e-6) / scale;
    };
    return {fitted(width), fitted(height)};
}

} // namespace trelundo

#pragma once

#include "tests/support/ScopedState.h"
#include "trelundo/platform/uikit/controllers/UIApplication.h"
#include "trelundo/platform/uikit/controllers/UIViewController.h" // IWYU pragma: export
#include "trelundo/platform/uikit/layout/UILayoutGuide.h"         // IWYU pragma: export
#include "trelundo/platform/uikit/layout/UIStackView.h"           // IWYU pragma: export
#include "trelundo/platform/uikit/views/UIScreen.h"
#include "trelundo/platform/uikit/views/UIView.h"
#include "trelundo/platform/uikit/views/UIWindow.h" // IWYU pragma: export

#include <gtest/gtest.h>

#include <cmath>
#include <ostream>
#include <string>
#include <vector>

namespace trelundo {

// NOLINTBEGIN(readability-identifier-naming): the test library looks for this name.
inline void PrintTo(CGRect const& r, std::ostream* out) {
    *out << "{" << r.origin.x << ", " << r.origin.y << ", " << r.size.width << ", " << r.size.height << "}";
}
// NOLINTEND(readability-identifier-naming)

/// A view of a given natural size; with an area, a text that wraps to the width it gets.
class ContentView : public UIView {
public:
    explicit ContentView(CGSize size = {noIntrinsicMetric, noIntrinsicMetric})
        : size_(size) {}

    CGSize intrinsicContentSize() const override {
        bool const wraps = isWrapping_ && told_ > 0 && told_ < size_.width;
        return wraps ? CGSize{size_.width, std::ceil(size_.width / told_) * size_.height} : size_;
    }
    bool layoutWidthDidChange(double width) override {
        double const before = intrinsicContentSize().height;
        told_ = width;
        return intrinsicContentSize().height != before;
    }
    std::optional<double> firstBaselineOffsetFromTop() const override { return baseline; }
    std::optional<double> lastBaselineOffsetFromBottom() const override {
        return baseline ? std::optional{size_.height - *baseline} : std::nullopt;
    }
    void layoutSubviews() override {
        UIView::layoutSubviews();
        ++layouts;
        if (duringLayout) duringLayout();
    }
    void updateConstraints() override {
        UIView::updateConstraints();
        if (duringConstraints) duringConstraints();
    }
    void safeAreaInsetsDidChange() override { ++safeAreaChanges; }

    void resize(CGSize size) {
        size_ = size;
        invalidateIntrinsicContentSize();
    }
    void setWrapping() { isWrapping_ = true; }

    std::optional<double> baseline;
    std::function<void()> duringLayout;
    std::function<void()> duringConstraints;
    int layouts = 0;
    int safeAreaChanges = 0;

private:
    CGSize size_;
    double told_ = 0;
    bool isWrapping_ = false;
};

/// A detached root of 400 x 600 points on a screen of 2 pixels a point; warnings are kept instead of printed.
class LayoutStage : public ::testing::Test {
protected:
    LayoutStage() {
        UIScreen::main().configure(*DeviceProfile::find("phone-320x568"), false);
        root = make<UIView>(CGRect{0, 0, 400, 600});
    }
    ~LayoutStage() override { UIApplication::shared().setUserInterfaceLayoutDirection(std::nullopt); }

    template <class T = ContentView, class... Arguments>
    Ref<T> add(UIView& parent, Arguments&&... arguments) {
        auto view = make<T>(std::forward<Arguments>(arguments)...);
        view->setTranslatesAutoresizingMaskIntoConstraints(false);
        parent.addSubview(view);
        return view;
    }
    /// Ties the view's leading and top edges to those of its superview.
    static void pin(UIView& view, CGPoint offset = {}) {
        auto const parent = view.superview();
        activate({view.leadingAnchor() == parent->leadingAnchor() + offset.x,
                  view.topAnchor() == parent->topAnchor() + offset.y});
    }
    /// Ties the view to its superview with a size of its own.
    static void place(UIView& view, CGRect frame) {
        pin(view, frame.origin);
        activate({view.widthAnchor() == frame.size.width, view.heightAnchor() == frame.size.height});
    }
    void layout() { root->layoutIfNeeded(); }
    static void mirror() {
        UIApplication::shared().setUserInterfaceLayoutDirection(UIUserInterfaceLayoutDirection::rightToLeft);
    }

    test::RecordedWarnings recorded;
    std::vector<std::string>& warnings = recorded.lines;
    Ref<UIView> root;
};

} // namespace trelundo

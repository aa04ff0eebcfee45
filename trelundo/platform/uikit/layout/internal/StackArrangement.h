#pragma once

#include "trelundo/platform/uikit/layout/UILayoutGuide.h"
#include "trelundo/platform/uikit/layout/UIStackView.h"

#include <functional>

namespace trelundo {

/// The constraints and guides that carry out a stack view's properties for its views as they are now.
class StackArrangement {
public:
    /// `spacingAfter` gives the gap behind a view, in points.
    StackArrangement(UIStackView& stack, std::function<double(UIView const&)> spacingAfter);

    std::vector<Ref<NSLayoutConstraint>> constraints;
    std::vector<Ref<UILayoutGuide>> guides;

private:
    /// The attributes of one direction, named as in a left-to-right row.
    struct Direction {
        NSLayoutAttribute start, end, center, length;
    };
    using Item = Ref<NSObject>;

    void arrangeAlong();
    void arrangeFilling();
    void arrangeProportionally();
    void arrangeSpaced(NSLayoutAttribute from, NSLayoutAttribute to, double equalityPriority);
    void arrangeAcross();
    void alignToStart(Direction const& across);
    void alignFilling();
    void alignCentered();
    void alignBaselines(NSLayoutAttribute baseline);
    void contain();
    void collapseAcross();
    void placeHidden();
    double proportionalLength(UIView& view) const;

    void relate(Item const& first, NSLayoutAttribute attribute, NSLayoutRelation relation, Item const& second,
                NSLayoutAttribute secondAttribute, double constant = 0, double priority = 1000,
                double multiplier = 1);
    void equal(Item const& first, NSLayoutAttribute attribute, Item const& second, double priority = 1000) {
        relate(first, attribute, NSLayoutRelation::equal, second, attribute, 0, priority);
    }
    void zero(Item const& item, NSLayoutAttribute length, double priority);
    Ref<UILayoutGuide> makeGuide(std::string_view identifier);

    UIStackView& stack_;
    std::function<double(UIView const&)> spacingAfter_;
    Direction along_;
    Direction across_;
    Item canvas_;
    double closing_; // priority of what ties the last edges to the canvas
    std::vector<Ref<UIView>> visible_;
};

} // namespace trelundo

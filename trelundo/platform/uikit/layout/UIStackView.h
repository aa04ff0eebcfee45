#pragma once

#include "trelundo/platform/uikit/views/UIView.h"

namespace trelundo {

enum class UIStackViewDistribution : int {
    fill = 0,
    fillEqually = 1,
    fillProportionally = 2,
    equalSpacing = 3,
    equalCentering = 4,
};
enum class UIStackViewAlignment : int {
    fill = 0,
    leading = 1,
    top = 1,
    firstBaseline = 2,
    center = 3,
    trailing = 4,
    bottom = 4,
    lastBaseline = 5,
};

/// Arranges views along an axis by constraints of its own. Has no intrinsic size: its size follows from them.
class UIStackView : public UIView {
public:
    explicit UIStackView(std::vector<Ref<UIView>> arrangedSubviews = {});
    ~UIStackView() override;

    std::vector<Ref<UIView>> const& arrangedSubviews() const { return arrangedSubviews_; }
    void addArrangedSubview(Ref<UIView> view);
    void insertArrangedSubview(Ref<UIView> view, std::size_t index);
    /// Takes the view out of the arrangement only; it stays a subview.
    void removeArrangedSubview(UIView& view);

    NSLayoutConstraintAxis axis() const { return axis_; }
    void setAxis(NSLayoutConstraintAxis axis);
    UIStackViewDistribution distribution() const { return distribution_; }
    void setDistribution(UIStackViewDistribution distribution);
    UIStackViewAlignment alignment() const { return alignment_; }
    void setAlignment(UIStackViewAlignment alignment);
    double spacing() const { return spacing_; } // points
    void setSpacing(double spacing);
    void setCustomSpacing(double spacing, UIView& afterView);
    bool isLayoutMarginsRelativeArrangement() const { return isLayoutMarginsRelative_; }
    void setLayoutMarginsRelativeArrangement(bool relative);

    void setHidden(bool hidden) override;
    void updateConstraints() override;
    void willRemoveSubview(UIView& view) override;

private:
    void subviewHiddenDidChange(UIView& view) override;
    void subviewContentSizeDidChange(UIView& view) override;
    void arrangementDidChange();
    double spacingAfter(UIView const& view) const;

    struct State;
    std::unique_ptr<State> state_;
    std::vector<Ref<UIView>> arrangedSubviews_;
    NSLayoutConstraintAxis axis_ = NSLayoutConstraintAxis::horizontal;
    UIStackViewDistribution distribution_ = UIStackViewDistribution::fill;
    UIStackViewAlignment alignment_ = UIStackViewAlignment::fill;
    double spacing_ = 0;
    bool isLayoutMarginsRelative_ = false;
};

} // namespace trelundo

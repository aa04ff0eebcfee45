#pragma once

#include "trelundo/platform/uikit/views/UIView.h"

#include <optional>

namespace trelundo {

enum class UIBlurEffectStyle : int { extraLight = 0, light = 1, dark = 2, regular = 4, prominent = 5 };

/// A blur of what lies behind a view. The same in light and dark appearance, but for regular and prominent,
/// which follow it.
class UIBlurEffect {
public:
    explicit UIBlurEffect(UIBlurEffectStyle style)
        : style_(style) {}
    UIBlurEffectStyle style() const { return style_; }
    /// Radius in points, saturation and overlay, under the given traits.
    CALayer::BackdropEffect backdrop(UITraitCollection const& traits) const;
    bool operator==(UIBlurEffect const&) const = default;

private:
    UIBlurEffectStyle style_;
};

/// Blurs and tints everything behind it inside its frame, live. Content of its own goes into contentView,
/// which fills it. Without an effect it shows nothing.
class UIVisualEffectView : public UIView {
public:
    explicit UIVisualEffectView(std::optional<UIBlurEffect> effect = std::nullopt);

    std::optional<UIBlurEffect> const& effect() const { return effect_; }
    void setEffect(std::optional<UIBlurEffect> effect);
    Ref<UIView> const& contentView() const { return contentView_; }

    void layoutSubviews() override;

protected:
    void appearanceDidChange() override;

private:
    void effectDidChange();

    std::optional<UIBlurEffect> effect_;
    Ref<UIView> contentView_;
};

} // namespace trelundo

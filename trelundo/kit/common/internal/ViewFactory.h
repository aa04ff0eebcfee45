#pragma once

#include "trelundo/kit/common/internal/ViewConfiguration.h" // IWYU pragma: export
#include "trelundo/platform/uikit/controls/UIButton.h"
#include "trelundo/platform/uikit/layout/UIStackView.h"
#include "trelundo/platform/uikit/text/UILabel.h"
#include "trelundo/platform/uikit/views/UIImageView.h"

#include <string>
#include <string_view>
#include <vector>

namespace trelundo {

// Views as several screens show them, all placed by constraints only.

// Stacks take no touches of their own, for screens lay them over controls.
Ref<UIStackView> makeHorizontalStack(std::vector<Ref<UIView>> arranged);
Ref<UIStackView> makeVerticalStack(std::vector<Ref<UIView>> arranged);

Ref<UILabel> makeLabel(NSTextAlignment alignment);

/// A label with the localised text of `key` that shrinks to half its size before it is cut.
Ref<UILabel> makeShrinkingLabel(std::string_view key, UIFont font, UIColor color);

/// `image`, nothing when null.
Ref<UIImageView> makePicture(Ref<UIImage> image, UIViewContentMode contentMode);

/// The host's picture `name` for `screen`, filling its view and cut to it; its height yields to everything
/// around it.
Ref<UIImageView> makeFillingPicture(std::string const& name, NSObject& screen);

/// A system-type button, so that `image` (nothing when null) is tinted unless it says otherwise, within
/// insets of `contentInset` points.
Ref<UIButton> makeCloseButton(Ref<UIImage> const& image, double contentInset);

/// The same, closing `screen`.
template <class Screen>
Ref<UIButton> makeCloseButton(Screen& screen, Ref<UIImage> const& image, double contentInset) {
    auto button = makeCloseButton(image, contentInset);
    button->addTarget(&screen, &Screen::close, UIControlEvents::touchUpInside);
    return button;
}

} // namespace trelundo

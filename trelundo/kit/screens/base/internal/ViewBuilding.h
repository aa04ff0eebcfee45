#pragma once

#include "trelundo/platform/uikit/controls/UIButton.h"
#include "trelundo/platform/uikit/layout/UIStackView.h"
#include "trelundo/platform/uikit/text/UILabel.h"
#include "trelundo/platform/uikit/views/UIImageView.h"

#include <string>
#include <string_view>
#include <vector>

namespace trelundo {

/// `view`, placed by constraints only.
template <class View> Ref<View> constraintDriven(Ref<View> view) {
    view->setTranslatesAutoresizingMaskIntoConstraints(false);
    return view;
}

/// A vertical stack, placed by constraints only.
Ref<UIStackView> makeVerticalStack(std::vector<Ref<UIView>> arranged);

/// A label with the localised text of `key` that shrinks to half its size before it is cut.
Ref<UILabel> makeShrinkingLabel(std::string_view key, UIFont font, UIColor color);

/// The host's picture `name`, filling its view and cut to it; its height yields to everything around it.
Ref<UIImageView> makeFillingPicture(std::string const& name);

/// `image` in its own colours wherever it is shown; null stays null.
Ref<UIImage> neverTinted(Ref<UIImage> const& image);

/// A close button: system-type, so that `image` (nothing when null) is tinted unless it says otherwise,
/// within insets of `contentInset` points.
Ref<UIButton> makeCloseButton(Ref<UIImage> const& image, double contentInset);

} // namespace trelundo

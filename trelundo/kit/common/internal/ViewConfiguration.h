#pragma once

#include "trelundo/platform/uikit/text/UILabel.h"

namespace trelundo {

/// `view`, placed by constraints only.
template <class View> Ref<View> usingAutoLayout(Ref<View> view) {
    view->setTranslatesAutoresizingMaskIntoConstraints(false);
    return view;
}

/// Lets a label's text shrink to half its size before any of it is cut, and then end with an ellipsis.
void shrinkToFit(UILabel& label);

/// Rounds the view by `radius` points and cuts its content to that shape.
void roundCorners(UIView& view, double radius = 8);

/// Makes all four edges of `view` those of `container`, which is its superview.
void pinEdges(UIView& view, UIView& container);

} // namespace trelundo

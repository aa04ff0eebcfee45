#pragma once

#include "trelundo/platform/uikit/views/UIView.h"

namespace trelundo {

/// `view`, placed by constraints only.
template <class View> Ref<View> usingAutoLayout(Ref<View> view) {
    view->setTranslatesAutoresizingMaskIntoConstraints(false);
    return view;
}

/// Rounds the view by `radius` points and cuts its content to that shape.
void roundCorners(UIView& view, double radius = 8);

/// Makes all four edges of `view` those of `container`, which is its superview.
void pinEdges(UIView& view, UIView& container);

} // namespace trelundo

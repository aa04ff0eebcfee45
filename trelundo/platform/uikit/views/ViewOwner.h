#pragma once

#include "trelundo/platform/uikit/views/UIResponder.h"

namespace trelundo {

/// The controller of a root view, as far as the view knows it.
class ViewOwner : public UIResponder {
public:
    /// Around the layout of the view's own subviews.
    virtual void viewWillLayoutSubviews() {}
    virtual void viewDidLayoutSubviews() {}
    virtual void viewSafeAreaInsetsDidChange() {}
    /// The view is about to take over `traits`.
    virtual void viewTraitsWillChange(UITraitCollection const& traits) = 0;
};

} // namespace trelundo

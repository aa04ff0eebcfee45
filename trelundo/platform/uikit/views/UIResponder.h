#pragma once

#include "trelundo/platform/foundation/NSObject.h"
#include "trelundo/platform/uikit/Forward.h"

namespace trelundo {

/// Receives events; unhandled ones go up the chain of next responders.
class UIResponder : public NSObject {
public:
    virtual UIResponder* nextResponder() const { return nullptr; }
    virtual void touchesBegan(UITouch& touch);
    virtual void touchesMoved(UITouch& touch);
    virtual void touchesEnded(UITouch& touch);
    virtual void touchesCancelled(UITouch& touch);
    /// The system took an environment change; `previous` is null at the first entry into a window. Overrides
    /// call the superclass.
    virtual void traitCollectionDidChange(UITraitCollection const* /*previous*/) {}
    virtual UITraitCollection const& traitCollection() const = 0;
};

} // namespace trelundo

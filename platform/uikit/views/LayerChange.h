#pragma once

#include "platform/uikit/views/UIView.h"

namespace trelundo {

/// Brackets a change of an animatable property of a view's layer. Outside a window nothing animates; a view
/// that an animation moves refuses touches unless the animation allows them.
class LayerChange {
public:
    /// `changes` is false when the new value equals the old one.
    LayerChange(UIView& view, bool changes);
    ~LayerChange();
    LayerChange(LayerChange const&) = delete;
    LayerChange& operator=(LayerChange const&) = delete;

private:
    bool suppressesAnimation_ = false;
};

} // namespace trelundo

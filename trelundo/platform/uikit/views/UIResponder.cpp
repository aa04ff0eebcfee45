#include "trelundo/platform/uikit/views/UIResponder.h"

namespace trelundo {

void UIResponder::touchesBegan(UITouch& touch) {
    if (auto* next = nextResponder()) next->touchesBegan(touch);
}

void UIResponder::touchesMoved(UITouch& touch) {
    if (auto* next = nextResponder()) next->touchesMoved(touch);
}

void UIResponder::touchesEnded(UITouch& touch) {
    if (auto* next = nextResponder()) next->touchesEnded(touch);
}

void UIResponder::touchesCancelled(UITouch& touch) {
    if (auto* next = nextResponder()) next->touchesCancelled(touch);
}

} // namespace trelundo

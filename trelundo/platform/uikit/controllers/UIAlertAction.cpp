#include "trelundo/platform/uikit/controllers/UIAlertAction.h"

#include <utility>

namespace trelundo {

UIAlertAction::UIAlertAction(std::string title, UIAlertActionStyle style,
                             std::function<void(UIAlertAction&)> handler)
    : title_(std::move(title))
    , style_(style)
    , handler_(std::move(handler)) {}

void UIAlertAction::setEnabled(bool enabled) {
    isEnabled_ = enabled;
    if (enabledDidChange_) enabledDidChange_();
}

} // namespace trelundo

#pragma once

#include "trelundo/platform/foundation/NSObject.h"

#include <functional>
#include <string>

namespace trelundo {

enum class UIAlertActionStyle : int { defaultStyle = 0, cancel = 1, destructive = 2 };

/// One choice of an alert.
class UIAlertAction : public NSObject {
public:
    UIAlertAction(std::string title, UIAlertActionStyle style,
                  std::function<void(UIAlertAction&)> handler = nullptr);

    std::string const& title() const { return title_; }
    UIAlertActionStyle style() const { return style_; }
    bool isEnabled() const { return isEnabled_; }
    /// A disabled action is dimmed and cannot be chosen.
    void setEnabled(bool enabled);

private:
    friend class UIAlertController;
    std::string title_;
    UIAlertActionStyle style_;
    bool isEnabled_ = true;
    std::function<void(UIAlertAction&)> handler_;
    std::function<void()> enabledDidChange_; // the alert's, which draws the action
};

} // namespace trelundo

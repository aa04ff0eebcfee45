#pragma once

#include "trelundo/platform/uikit/controllers/UIViewController.h"

#include <optional>
#include <string>

namespace trelundo {

/// The host's side of a paywall screen: opens its pages and its support channel, and names the application.
class BaseViewControllerDelegate {
public:
    virtual ~BaseViewControllerDelegate() = default;
    virtual void userAgreement() = 0;
    virtual void privacyPolicy() = 0;
    /// The user wants help; `subject` is "Purchase Failed" or "Restoration Failed".
    virtual void contactUs(std::string const& subject, Ref<UIViewController> const& from) = 0;
    /// The application's display name; absent: none.
    virtual std::optional<std::string> appName() const = 0;
};

} // namespace trelundo

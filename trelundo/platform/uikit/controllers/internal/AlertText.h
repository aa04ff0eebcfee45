#pragma once

#include "trelundo/platform/uikit/collection/UIScrollView.h"
#include "trelundo/platform/uikit/text/UIFont.h"

#include <optional>
#include <string>

namespace trelundo {

/// Title and message of an alert; scrolls when they do not fit.
class AlertText : public UIScrollView {
public:
    static constexpr double width = 270; // points

    /// An absent or empty text takes no line. Without a title the message stands in its place and weight.
    void setTexts(std::optional<std::string> const& title, std::optional<std::string> const& message);

    CGSize intrinsicContentSize() const override;
    void layoutSubviews() override;

private:
    Ref<UILabel> addLabel(std::string const& text, UIFont font);

    std::vector<Ref<UILabel>> labels_;
};

} // namespace trelundo

#include "tools/paywall/output/VisibleText.h"

#include "trelundo/platform/uikit/controls/UIButton.h"
#include "trelundo/platform/uikit/text/UILabel.h"

namespace trelundo::paywall {

std::string visibleText(UIView const& view) {
    if (auto const* button = dynamic_cast<UIButton const*>(&view)) {
        auto const attributed = button->currentAttributedTitle();
        return attributed ? attributed->string() : button->currentTitle().value_or("");
    }
    auto const* label = dynamic_cast<UILabel const*>(&view);
    return label ? label->text().value_or("") : std::string{};
}

} // namespace trelundo::paywall

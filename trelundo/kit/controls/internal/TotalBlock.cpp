#include "trelundo/kit/controls/internal/TotalBlock.h"

#include <algorithm>

namespace trelundo {

namespace {
constexpr double separatorInset = 12;
constexpr double gapBeforeSeparator = 8;
} // namespace

void TotalBlock::place(UIButton& button) const {
    auto const size = button.bounds().size;
    double const labelX = button.isRightToLeft() ? labelMargin : size.width - labelSize.width - labelMargin;
    double const separatorX = button.isRightToLeft() ? labelSize.width + separatorMargin
                                                     : size.width - labelSize.width - separatorMargin;
    label.setFrame({{labelX, (size.height - labelSize.height) * 0.5}, labelSize});
    separator.setFrame({separatorX, separatorInset, 1, size.height - 2 * separatorInset});
    if (!separator.isHidden()) keepTitleClear(button);
}

void TotalBlock::keepTitleClear(UIButton& button) const {
    auto frame = button.titleLabel()->frame();
    double const left = button.isRightToLeft() ? separator.frame().maxX() + gapBeforeSeparator : frame.minX();
    double const right =
        button.isRightToLeft() ? frame.maxX() : separator.frame().minX() - gapBeforeSeparator;
    if (frame.minX() >= left && frame.maxX() <= right) return;
    frame.origin.x = std::max(frame.minX(), left);
    frame.size.width = std::max(0.0, std::min(frame.maxX(), right) - frame.origin.x);
    button.titleLabel()->setFrame(frame);
}

} // namespace trelundo

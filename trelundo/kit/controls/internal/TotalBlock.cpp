#include "trelundo/kit/controls/internal/TotalBlock.h"

namespace trelundo {

namespace {
constexpr double separatorInset = 12;
} // namespace

void TotalBlock::place(UIButton const& button) const {
    auto const size = button.bounds().size;
    double const labelX = button.isRightToLeft() ? labelMargin : size.width - labelSize.width - labelMargin;
    double const separatorX = button.isRightToLeft() ? labelSize.width + separatorMargin
                                                     : size.width - labelSize.width - separatorMargin;
    label.setFrame({{labelX, (size.height - labelSize.height) * 0.5}, labelSize});
    separator.setFrame({separatorX, separatorInset, 1, size.height - 2 * separatorInset});
}

} // namespace trelundo

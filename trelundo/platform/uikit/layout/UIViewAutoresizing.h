#pragma once

namespace trelundo {

/// Bits: which margins and lengths of a view follow the size of its superview.
enum class UIViewAutoresizing : unsigned {
    none = 0,
    flexibleLeftMargin = 1,
    flexibleWidth = 2,
    flexibleRightMargin = 4,
    flexibleTopMargin = 8,
    flexibleHeight = 16,
    flexibleBottomMargin = 32,
};
constexpr UIViewAutoresizing operator|(UIViewAutoresizing a, UIViewAutoresizing b) {
    return static_cast<UIViewAutoresizing>(static_cast<unsigned>(a) | static_cast<unsigned>(b));
}

} // namespace trelundo

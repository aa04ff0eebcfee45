#include "trelundo/platform/uikit/layout/internal/Autoresizing.h"

#include <algorithm>
#include <array>

namespace trelundo {

namespace {

bool has(UIViewAutoresizing mask, UIViewAutoresizing bit) {
    return (static_cast<unsigned>(mask) & static_cast<unsigned>(bit)) != 0;
}

} // namespace

AutoresizingShares autoresizingShares(UIViewAutoresizing mask, CGRect frame, CGSize superviewSize,
                                      bool vertical) {
    using enum UIViewAutoresizing;
    if (mask == none) return {};
    double const start = vertical ? frame.origin.y : frame.origin.x;
    double const length = vertical ? frame.size.height : frame.size.width;
    double const whole = vertical ? superviewSize.height : superviewSize.width;
    std::array const parts{start, length, whole - start - length};
    std::array const flexible = vertical ? std::array{has(mask, flexibleTopMargin), has(mask, flexibleHeight),
                                                      has(mask, flexibleBottomMargin)}
                                         : std::array{has(mask, flexibleLeftMargin), has(mask, flexibleWidth),
                                                      has(mask, flexibleRightMargin)};
    double sum = 0;
    int count = 0;
    for (std::size_t i = 0; i < parts.size(); ++i) {
        if (!flexible[i]) continue;
        sum += std::max(parts[i], 0.0);
        ++count;
    }
    auto const share = [&](std::size_t i) {
        if (!flexible[i]) return 0.0;
        return sum > 0 ? std::max(parts[i], 0.0) / sum : 1.0 / count;
    };
    return {share(0), share(1)};
}

} // namespace trelundo

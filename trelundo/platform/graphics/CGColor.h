#pragma once

#include <string>

namespace trelundo {

/// A fixed colour: red, green, blue and alpha as fractions of 1 in non-linear sRGB. Values outside 0...1 are
/// kept and clamped when drawn.
struct CGColor {
    double red = 0;
    double green = 0;
    double blue = 0;
    double alpha = 1;

    bool operator==(CGColor const&) const = default;
    /// "#rrggbbaa", clamped and rounded.
    std::string hexText() const;
};

} // namespace trelundo

#pragma once

#include "trelundo/platform/uikit/text/UIFont.h"

#include <optional>

namespace trelundo {

/// Bits: traits may be combined.
enum class UIFontDescriptorSymbolicTraits : unsigned {
    none = 0,
    italic = 1,
    bold = 2,
    expanded = 32,
    condensed = 64,
    monoSpace = 1024,
    vertical = 2048,
    uiOptimized = 4096,
    tightLeading = 32768,
    looseLeading = 65536,
};
constexpr UIFontDescriptorSymbolicTraits operator|(UIFontDescriptorSymbolicTraits a,
                                                   UIFontDescriptorSymbolicTraits b) {
    return static_cast<UIFontDescriptorSymbolicTraits>(static_cast<unsigned>(a) | static_cast<unsigned>(b));
}
constexpr bool contains(UIFontDescriptorSymbolicTraits set, UIFontDescriptorSymbolicTraits trait) {
    return (static_cast<unsigned>(set) & static_cast<unsigned>(trait)) != 0;
}

/// The attributes of a face of the system family, from which another face can be derived. A value.
class UIFontDescriptor {
public:
    UIFontDescriptor(double size, UIFont::Weight weight, bool italic)
        : size_(size)
        , weight_(weight)
        , isItalic_(italic) {}

    double pointSize() const { return size_; } // points
    UIFont::Weight weight() const { return weight_; }
    bool isItalic() const { return isItalic_; }
    UIFontDescriptorSymbolicTraits symbolicTraits() const;
    /// The face with exactly these traits; none when the family has no such face. A bold face is at least
    /// bold and keeps a heavier weight.
    std::optional<UIFontDescriptor> withSymbolicTraits(UIFontDescriptorSymbolicTraits traits) const;

    bool operator==(UIFontDescriptor const&) const = default;

private:
    double size_;
    UIFont::Weight weight_;
    bool isItalic_;
};

} // namespace trelundo

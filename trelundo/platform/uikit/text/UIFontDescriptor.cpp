#include "trelundo/platform/uikit/text/UIFontDescriptor.h"

#include <algorithm>

namespace trelundo {

namespace {

constexpr auto familyTraits = UIFontDescriptorSymbolicTraits::italic | UIFontDescriptorSymbolicTraits::bold |
                              UIFontDescriptorSymbolicTraits::uiOptimized;

bool isBold(UIFont::Weight weight) { return weight.value >= UIFont::Weight::semibold.value; }

UIFont::Weight weightFor(bool bold, UIFont::Weight weight) {
    if (bold) return {std::max(weight.value, UIFont::Weight::bold.value)};
    return isBold(weight) ? UIFont::Weight::regular : weight;
}

} // namespace

UIFontDescriptorSymbolicTraits UIFontDescriptor::symbolicTraits() const {
    auto traits = UIFontDescriptorSymbolicTraits::uiOptimized;
    if (isItalic_) traits = traits | UIFontDescriptorSymbolicTraits::italic;
    if (isBold(weight_)) traits = traits | UIFontDescriptorSymbolicTraits::bold;
    return traits;
}

std::optional<UIFontDescriptor>
UIFontDescriptor::withSymbolicTraits(UIFontDescriptorSymbolicTraits traits) const {
    if ((static_cast<unsigned>(traits) & ~static_cast<unsigned>(familyTraits)) != 0) return std::nullopt;
    bool const bold = contains(traits, UIFontDescriptorSymbolicTraits::bold);
    bool const italic = contains(traits, UIFontDescriptorSymbolicTraits::italic);
    return UIFontDescriptor{size_, weightFor(bold, weight_), italic};
}

} // namespace trelundo

#include "trelundo/kit/common/internal/TextAttributes.h"

namespace trelundo {

TextAttributes textAttributes(UIFont font, std::optional<UIColor> color,
                              std::optional<NSParagraphStyle> paragraph) {
    TextAttributes attributes;
    attributes.set(NSAttributedStringKey::font, font);
    if (color) attributes.set(NSAttributedStringKey::foregroundColor, *std::move(color));
    if (paragraph) attributes.set(NSAttributedStringKey::paragraphStyle, *paragraph);
    return attributes;
}

} // namespace trelundo

#pragma once

#include "trelundo/platform/foundation/NSAttributedString.h" // IWYU pragma: export
#include "trelundo/platform/graphics/Geometry.h"
#include "trelundo/platform/graphics/text/TextStyle.h" // IWYU pragma: export
#include "trelundo/platform/uikit/text/UIFont.h"       // IWYU pragma: export
#include "trelundo/platform/uikit/views/UIColor.h"     // IWYU pragma: export

#include <vector>

namespace trelundo {

/// The keys of text attributes that labels and buttons understand.
namespace NSAttributedStringKey {
inline constexpr AttributeKey<UIFont> font{"NSFont"};
inline constexpr AttributeKey<UIColor> foregroundColor{"NSColor"};
inline constexpr AttributeKey<UIColor> backgroundColor{"NSBackgroundColor"};
inline constexpr AttributeKey<NSParagraphStyle> paragraphStyle{"NSParagraphStyle"};
inline constexpr AttributeKey<double> kern{"NSKern"};
inline constexpr AttributeKey<NSUnderlineStyle> underlineStyle{"NSUnderline"};
inline constexpr AttributeKey<UIColor> underlineColor{"NSUnderlineColor"};
inline constexpr AttributeKey<NSUnderlineStyle> strikethroughStyle{"NSStrikethrough"};
inline constexpr AttributeKey<UIColor> strikethroughColor{"NSStrikethroughColor"};
inline constexpr AttributeKey<double> baselineOffset{"NSBaselineOffset"};
} // namespace NSAttributedStringKey

/// What a text without an attribute of its own takes.
struct TextDefaults {
    UIFont font = UIFont::system(17);
    UIColor color = UIColor::black();
    NSParagraphStyle paragraph = {};
};

/// The runs to be set in type, with dynamic colours resolved under `traits`.
std::vector<TextRun> textRuns(NSAttributedString const& text, TextDefaults const& defaults,
                              UITraitCollection const& traits = UITraitCollection::current());

/// The rectangle that `text` fills when set in lines inside `size` (points, fractional, origin zero; the
/// greatest finite magnitude never wraps; height is no limit). Runs without a font are set in system 12.
CGRect boundingRect(NSAttributedString const& text, CGSize size);

} // namespace trelundo

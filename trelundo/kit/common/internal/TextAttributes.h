#pragma once

#include "trelundo/platform/uikit/text/AttributedText.h"

#include <optional>

namespace trelundo {

/// The attributes of a run of text; what is absent is left to the view that shows it.
TextAttributes textAttributes(UIFont font, std::optional<UIColor> color = std::nullopt,
                              std::optional<NSParagraphStyle> paragraph = std::nullopt);

} // namespace trelundo

#pragma once

#include "trelundo/platform/graphics/text/internal/FontLibrary.h"

#include <span>
#include <string_view>
#include <vector>

namespace trelundo {

/// The face of each user-perceived character of a text in one style. All letters of a run of one script come
/// from one face, or a word of joined letters would fall apart: from `preferred` if it has all of them, else
/// from the first fall-back that has. What scripts share is `preferred`'s, or the run's.
std::vector<FontFace*> chooseFaces(std::span<std::u16string_view const> clusters, FontFace& preferred);

} // namespace trelundo

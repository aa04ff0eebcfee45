#pragma once

namespace trelundo {

/// Whether a picture shows its own colours or takes the tint of where it is shown.
enum class UIImageRenderingMode : int { automatic = 0, alwaysOriginal = 1, alwaysTemplate = 2 };

} // namespace trelundo

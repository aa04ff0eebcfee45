#pragma once

#include "trelundo/platform/foundation/Bundle.h"

#include <string>
#include <string_view>

namespace trelundo {

/// Texts from a bundle's tables, shared by the store, every screen and every control.
class Texts {
public:
    /// The text under `key` in the table `resource` of `bundle`; the key itself when it is missing.
    static std::string localizedString(std::string_view key, Bundle& bundle, std::string_view resource);

    /// The kit's own bundle, compiled into the library.
    static Bundle& kitBundle();
    /// localizedString() with the kit's bundle and the table "Premium".
    static std::string text(std::string_view key);
    /// Whether the language that text() speaks is written from right to left.
    static bool isRightToLeft();
};

} // namespace trelundo

#include "trelundo/kit/plans/internal/PriceTexts.h"

#include "trelundo/kit/common/Texts.h"
#include "trelundo/platform/foundation/Strings.h"

namespace trelundo {

std::string filledWithPrice(std::string_view key, std::string_view price) {
    return replacingOccurrences(Texts::text(key), "$$$", price);
}

} // namespace trelundo

#include "controls/PriceTexts.h"

#include "common/Common.h"
#include "platform/foundation/Strings.h"

namespace trelundo {

std::string filledWithPrice(std::string_view key, std::string_view price) {
    return replacingOccurrences(Common::text(key), "$$$", price);
}

} // namespace trelundo

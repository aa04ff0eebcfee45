#include "plans/PriceTexts.h"

#include "common/Texts.h"
#include "platform/foundation/Strings.h"

namespace trelundo {

std::string filledWithPrice(std::string_view key, std::string_view price) {
    return replacingOccurrences(Texts::text(key), "$$$", price);
}

} // namespace trelundo

#include "platform/foundation/RawValues.h"

#include "platform/foundation/NumberFormatter.h"

// Hosts keep raw values in files and settings, so they may never change.
namespace trelundo {

using Style = NumberFormatter::Style;
static_assert(haveRawValues({Style::none, Style::decimal, Style::currency, Style::percent, Style::scientific,
                             Style::spellOut, Style::ordinal, Style::currencyISOCode, Style::currencyPlural,
                             Style::currencyAccounting},
                            {0, 1, 2, 3, 4, 5, 6, 8, 9, 10}));

using Rounding = NumberFormatter::RoundingMode;
static_assert(haveRawValues({Rounding::ceiling, Rounding::floor, Rounding::down, Rounding::up,
                             Rounding::halfEven, Rounding::halfDown, Rounding::halfUp},
                            {0, 1, 2, 3, 4, 5, 6}));

} // namespace trelundo

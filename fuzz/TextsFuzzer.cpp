#include "fuzz/Pieces.h"
#include "trelundo/kit/plans/internal/TextTemplates.h"
#include "trelundo/platform/foundation/Locale.h"
#include "trelundo/platform/foundation/NumberFormatter.h"

#include <cstdlib>

using namespace trelundo;

/// A template, what fills it, a locale and a price, one a line.
extern "C" int LLVMFuzzerTestOneInput(std::uint8_t const* data, std::size_t size) {
    auto const lines = fuzz::pieces(fuzz::textOf(data, size), 4);
    auto const &wording = lines[0], &part = lines[1], &locale = lines[2], &price = lines[3];
    auto const filled = filledWithPrice(wording, part);
    if (wording.find("$$$") == std::string::npos && filled != wording) std::abort();
    (void)filledWithPeriod(wording, part);

    auto const number = Decimal::parse(price);
    if (!number) return 0;
    if (Decimal::parse(number->description()) != number) std::abort();
    NumberFormatter formatter{Locale{locale}};
    formatter.setNumberStyle(NumberFormatter::Style::currency);
    if (auto const text = formatter.string(*number); text && text->empty()) std::abort();
    return 0;
}

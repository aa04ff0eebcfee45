#include "fuzz/Fuzzer.h"
#include "trelundo/kit/plans/internal/TextTemplates.h"
#include "trelundo/platform/foundation/Locale.h"
#include "trelundo/platform/foundation/NumberFormatter.h"

using namespace trelundo;

/// A template, what fills it, a locale and a price, one a line.
void fuzz::run(std::string_view input) {
    auto const lines = pieces(input, 4);
    auto const &wording = lines[0], &part = lines[1], &locale = lines[2], &price = lines[3];
    auto const filled = filledWithPrice(wording, part);
    require(wording.find("$$$") != std::string::npos || filled == wording);
    (void)filledWithPeriod(wording, part);

    auto const number = Decimal::parse(price);
    if (!number) return;
    require(Decimal::parse(number->description()) == number);
    NumberFormatter formatter{Locale{locale}};
    formatter.setNumberStyle(NumberFormatter::Style::currency);
    auto const text = formatter.string(*number);
    require(!text || !text->empty());
}

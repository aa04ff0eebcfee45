#include "tools/paywall/output/Console.h"

#include "tools/paywall/output/Legible.h"

#include <cstdio>

namespace trelundo::paywall {

void printLine(std::string_view text) { std::printf("%.*s\n", static_cast<int>(text.size()), text.data()); }

void complain(std::string_view text) { std::fprintf(stderr, "paywall: %s\n", legible(text).c_str()); }

} // namespace trelundo::paywall

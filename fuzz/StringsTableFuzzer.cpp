#include "trelundo/platform/foundation/internal/StringsTable.h"

#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string_view>

extern "C" int LLVMFuzzerTestOneInput(std::uint8_t const* data, std::size_t size) {
    using trelundo::StringsTable;
    std::optional<StringsTable::ParseError> error;
    auto const table = StringsTable::parse({reinterpret_cast<char const*>(data), size}, error);
    if (error && (table.size() != 0 || error->line < 1 || error->reason.empty())) std::abort();
    for (auto const& [key, text] : table.entries())
        if (table.find(key) != &text) std::abort();
    return 0;
}

#include "trelundo/platform/foundation/internal/StringsTable.h"

#include <cstddef>
#include <cstdint>
#include <cstdlib>

extern "C" int LLVMFuzzerTestOneInput(std::uint8_t const* data, std::size_t size) {
    using trelundo::StringsTable;
    auto const table = StringsTable::parse({reinterpret_cast<char const*>(data), size}, "file");
    if (!table) {
        if (!table.error().message.starts_with("file:")) std::abort();
        return 0;
    }
    for (auto const& [key, text] : table->entries())
        if (table->find(key) != &text) std::abort();
    return 0;
}

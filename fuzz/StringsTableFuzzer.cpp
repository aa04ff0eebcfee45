#include "fuzz/Fuzzer.h"
#include "trelundo/platform/foundation/internal/StringsTable.h"

using namespace trelundo;

/// A table is read whole and finds each of its texts, or is refused with file and line.
void fuzz::run(std::string_view input) {
    auto const table = StringsTable::parse(input, "file");
    if (!table) return require(table.error().message.starts_with("file:"));
    for (auto const& [key, text] : table->entries()) require(table->find(key) == &text);
}

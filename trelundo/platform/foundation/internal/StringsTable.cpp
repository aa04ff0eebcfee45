#include "trelundo/platform/foundation/internal/StringsTable.h"

#include "trelundo/platform/foundation/internal/StringsParser.h"

namespace trelundo {

StringsTable StringsTable::parse(std::string_view bytes, std::optional<ParseError>& error) {
    StringsTable table;
    error = StringsParser{table.entries_}.parse(bytes);
    if (error) table.entries_.clear();
    return table;
}

std::string const* StringsTable::find(std::string_view key) const {
    auto const entry = entries_.find(key);
    return entry == entries_.end() ? nullptr : &entry->second;
}

} // namespace trelundo

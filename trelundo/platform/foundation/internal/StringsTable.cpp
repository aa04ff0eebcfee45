#include "trelundo/platform/foundation/internal/StringsTable.h"

#include "trelundo/platform/foundation/internal/StringsParser.h"

namespace trelundo {

Result<StringsTable> StringsTable::parse(std::string_view bytes, std::string_view file) {
    auto entries = StringsParser{file}.parse(bytes);
    if (!entries) return entries.error();
    return StringsTable{*std::move(entries)};
}

std::string const* StringsTable::find(std::string_view key) const {
    auto const entry = entries_.find(key);
    return entry == entries_.end() ? nullptr : &entry->second;
}

} // namespace trelundo

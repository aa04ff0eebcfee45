#pragma once

#include "trelundo/platform/foundation/Result.h"

#include <map>
#include <string>
#include <string_view>

namespace trelundo {

/// A parsed `.strings` file (old-style property list, UTF-8 or UTF-16 with byte order mark). A later entry of
/// the same key replaces the earlier one.
class StringsTable {
public:
    using Entries = std::map<std::string, std::string, std::less<>>;

    StringsTable() = default;
    explicit StringsTable(Entries entries)
        : entries_(std::move(entries)) {}
    /// Any syntax error makes the whole table fail; the error names `file` and the line.
    static Result<StringsTable> parse(std::string_view bytes, std::string_view file);

    /// Null when the key is missing.
    std::string const* find(std::string_view key) const;
    std::size_t size() const { return entries_.size(); }
    Entries const& entries() const { return entries_; }

private:
    Entries entries_;
};

} // namespace trelundo

#pragma once

#include <algorithm>
#include <array>
#include <cstddef>
#include <string_view>

namespace trelundo {

/// The row for a test tag in a table that is searched from the top; the last row serves every other tag.
template <class Row, std::size_t count>
Row const& rowForTag(std::array<Row, count> const& table, std::string_view abTest) {
    auto const row = std::ranges::find(table, abTest, &Row::abTest);
    return row == table.end() ? table.back() : *row;
}

} // namespace trelundo

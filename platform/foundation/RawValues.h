#pragma once

#include <algorithm>
#include <initializer_list>

namespace trelundo {

/// Whether the values of an enumeration have these raw values, in this order. For static assertions only.
template <class Enumeration>
constexpr bool haveRawValues(std::initializer_list<Enumeration> values, std::initializer_list<long> raw) {
    return std::ranges::equal(values, raw, {}, [](Enumeration value) { return static_cast<long>(value); });
}

} // namespace trelundo

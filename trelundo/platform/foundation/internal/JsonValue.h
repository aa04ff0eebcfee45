#pragma once

#include "trelundo/platform/foundation/Result.h"

#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace trelundo {

/// A JSON value. Numbers keep the digits of the text, so that a price never passes through a double.
struct JsonValue {
    enum class Kind { null, boolean, number, string, array, object };

    Kind kind = Kind::null;
    bool isTrue = false;
    std::string text = {};                                       // of a string or a number
    std::vector<JsonValue> elements = {};                        // of an array
    std::vector<std::pair<std::string, JsonValue>> members = {}; // of an object, in the order of the text

    /// The value that `text` describes. The error names `file` and the line, and says that it is not
    /// `expected` ("a StoreKit configuration") unless that is empty. A byte-order mark and comments are
    /// allowed; values nested deeper than 64 levels, and more than a million values, are refused.
    static Result<JsonValue> parse(std::string_view text, std::string_view file,
                                   std::string_view expected = {});

    bool is(Kind wanted) const { return kind == wanted; }
    /// The first member of that name; null when there is none, when it is null, or when this is no object.
    JsonValue const* find(std::string_view name) const;
    /// The string member of that name; empty when there is none.
    std::string_view string(std::string_view name) const;
    /// The integer member of that name, written as a number or as a string.
    std::optional<int> integer(std::string_view name) const;
    bool isSet(std::string_view name) const;
};

} // namespace trelundo

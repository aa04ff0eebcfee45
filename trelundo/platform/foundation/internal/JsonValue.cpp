#include "trelundo/platform/foundation/internal/JsonValue.h"

#include <algorithm>
#include <charconv>
#include <cstddef>
#include <cstdint>
#include <fmt/core.h>
#include <iterator>
#include <nlohmann/json.hpp>

namespace trelundo {

namespace {

constexpr std::size_t deepestLevel = 64;
constexpr std::size_t mostValues = 1'000'000;

/// Walks a text for the parser, and keeps in `reached` how far it has come.
class ReadPosition {
public:
    using iterator_category = std::input_iterator_tag;
    using value_type = char;
    using difference_type = std::ptrdiff_t;
    using pointer = char const*;
    using reference = char const&;

    ReadPosition(char const* place, char const*& reached)
        : place_(place)
        , reached_(&reached) {}
    char const& operator*() const { return *place_; }
    ReadPosition& operator++() {
        *reached_ = ++place_;
        return *this;
    }
    ReadPosition operator++(int) {
        auto const before = *this;
        ++*this;
        return before;
    }
    bool operator==(ReadPosition const& other) const { return place_ == other.place_; }

private:
    char const* place_;
    char const** reached_;
};

/// Builds the tree from the parser's events; the levels that are still open form a stack.
class TreeBuilder {
public:
    using Kind = JsonValue::Kind;

    explicit TreeBuilder(std::string_view text)
        : text_(text)
        , reached_(text.data()) {}
    /// Where the parser keeps how far it has come.
    char const*& reached() { return reached_; }

    // NOLINTBEGIN(readability-identifier-naming): the parser calls these by name.
    bool null() { return add({}); }
    bool boolean(bool value) { return add({.kind = Kind::boolean, .isTrue = value}); }
    bool number_integer(std::int64_t value) { return addNumber(std::to_string(value)); }
    bool number_unsigned(std::uint64_t value) { return addNumber(std::to_string(value)); }
    bool number_float(double, std::string const& digits) { return addNumber(withPoint(digits)); }
    bool string(std::string& value) { return add({.kind = Kind::string, .text = std::move(value)}); }
    bool binary(std::vector<std::uint8_t>&) { return false; }

    bool start_object(std::size_t) { return open(Kind::object); }
    bool start_array(std::size_t) { return open(Kind::array); }
    bool end_object() { return close(); }
    bool end_array() { return close(); }
    bool key(std::string& name) {
        names_.back() = std::move(name);
        return true;
    }

    bool parse_error(std::size_t /*position*/, std::string const& /*token*/,
                     nlohmann::json::exception const& error) {
        // "[json.exception.parse_error.101] parse error at line 1, column 1: reason"
        std::string const message = error.what();
        auto const colon = message.find(": ");
        return fail(colon == std::string::npos ? message : message.substr(colon + 2));
    }

    // NOLINTEND(readability-identifier-naming)

    JsonValue takeRoot() && { return std::move(root_); }
    std::string const& fault() const { return fault_; }
    /// How far the parser has come; 1 is the first line.
    auto line() const { return 1 + std::ranges::count(text_.substr(0, offset()), '\n'); }

private:
    std::size_t offset() const { return static_cast<std::size_t>(reached_ - text_.data()); }

    /// The parser writes the decimal separator of the process's locale.
    static std::string withPoint(std::string digits) {
        std::ranges::replace_if(
            digits,
            [](char c) { return std::string_view{"+-0123456789eE"}.find(c) == std::string_view::npos; }, '.');
        return digits;
    }

    bool addNumber(std::string digits) { return add({.kind = Kind::number, .text = std::move(digits)}); }

    bool add(JsonValue value) {
        if (++count_ > mostValues) return fail("more than a million values");
        if (levels_.empty()) {
            root_ = std::move(value);
        } else {
            attach(levels_.back(), std::move(value));
        }
        return true;
    }

    bool open(Kind kind) {
        if (levels_.size() == deepestLevel) return fail("nested deeper than 64 levels");
        levels_.push_back({.kind = kind});
        names_.emplace_back();
        return true;
    }

    bool close() {
        auto value = std::move(levels_.back());
        levels_.pop_back();
        names_.pop_back();
        return add(std::move(value));
    }

    void attach(JsonValue& parent, JsonValue child) {
        if (parent.is(Kind::array)) {
            parent.elements.push_back(std::move(child));
        } else {
            parent.members.emplace_back(std::move(names_.back()), std::move(child));
        }
    }

    bool fail(std::string fault) {
        fault_ = std::move(fault);
        return false;
    }

    std::string_view text_;
    char const* reached_;
    std::vector<JsonValue> levels_;
    std::vector<std::string> names_; // of the member that each open level is reading
    JsonValue root_;
    std::size_t count_ = 0;
    std::string fault_;
};

} // namespace

JsonValue const* JsonValue::find(std::string_view name) const {
    auto const found =
        std::ranges::find(members, name, [](auto const& member) { return std::string_view{member.first}; });
    return found == members.end() || found->second.is(Kind::null) ? nullptr : &found->second;
}

std::string_view JsonValue::string(std::string_view name) const {
    auto const* value = find(name);
    return value && value->is(Kind::string) ? std::string_view{value->text} : std::string_view{};
}

std::optional<int> JsonValue::integer(std::string_view name) const {
    auto const* value = find(name);
    if (!value || (!value->is(Kind::number) && !value->is(Kind::string))) return std::nullopt;
    int number = 0;
    auto const* const end = value->text.data() + value->text.size();
    auto const [stop, error] = std::from_chars(value->text.data(), end, number);
    return error == std::errc{} && stop == end ? std::optional{number} : std::nullopt;
}

bool JsonValue::isSet(std::string_view name) const {
    auto const* value = find(name);
    return value && value->is(Kind::boolean) && value->isTrue;
}

Result<JsonValue> JsonValue::parse(std::string_view text, std::string_view file, std::string_view expected) {
    TreeBuilder builder{text};
    auto const* const first = text.data(); // NOLINT(bugprone-suspicious-stringview-data-usage): with its end
    ReadPosition const begin{first, builder.reached()};
    ReadPosition const end{first + text.size(), builder.reached()};
    bool const isComplete =
        nlohmann::json::sax_parse(begin, end, &builder, nlohmann::json::input_format_t::json, true, true);
    if (isComplete) return std::move(builder).takeRoot();
    auto const complaint = expected.empty() ? std::string{} : fmt::format("not {}: ", expected);
    return Error{fmt::format("{}:{}: {}{}", file, builder.line(), complaint, builder.fault())};
}

} // namespace trelundo

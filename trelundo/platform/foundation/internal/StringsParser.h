#pragma once

#include "trelundo/platform/foundation/internal/StringsTable.h"

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>

namespace trelundo {

/// Reads `"key" = "value";` pairs into a map. One parser reads one file once.
class StringsParser {
public:
    /// `file` is what the error names.
    explicit StringsParser(std::string_view file)
        : file_(file) {}

    /// The entries, or the first error with its line.
    Result<StringsTable::Entries> parse(std::string_view bytes);

private:
    bool decode(std::string_view bytes);
    bool decodeUtf16(std::string_view bytes, bool isBigEndian);
    bool checkUtf8();

    bool takePairs();
    bool takePair();
    bool skipSpace();
    bool skipComment();
    std::optional<std::string> takeText(char const* what);
    std::optional<std::string> takeQuoted(char quote);
    void takeEscape(std::string& text);
    char16_t takeHexadecimal();
    void takeUnicodeEscape(std::string& text);
    unsigned takeOctal();

    bool isAtEnd() const { return position_ == text_.size(); }
    char peek() const { return text_[position_]; }
    bool startsWith(std::string_view token) const {
        return std::string_view{text_}.substr(position_).starts_with(token);
    }

    /// Notes an error at `position` and returns false.
    bool fail(std::string_view reason, std::size_t position);
    bool fail(std::string_view reason) { return fail(reason, position_); }

    std::string_view file_;
    std::string text_;
    std::size_t position_ = 0;
    StringsTable::Entries entries_;
    Error error_;
};

} // namespace trelundo

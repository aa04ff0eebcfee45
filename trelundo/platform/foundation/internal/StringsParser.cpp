#include "trelundo/platform/foundation/internal/StringsParser.h"

#include "trelundo/platform/foundation/internal/Utf8.h"

#include <algorithm>
#include <array>
#include <fmt/core.h>

namespace trelundo {

namespace {

// The upper half of the NextStep encoding, in which octal escapes are written.
constexpr std::array<char16_t, 128> nextStepUpperHalf{
    0x00A0, 0x00C0, 0x00C1, 0x00C2, 0x00C3, 0x00C4, 0x00C5, 0x00C7, 0x00C8, 0x00C9, 0x00CA, 0x00CB, 0x00CC,
    0x00CD, 0x00CE, 0x00CF, 0x00D0, 0x00D1, 0x00D2, 0x00D3, 0x00D4, 0x00D5, 0x00D6, 0x00D9, 0x00DA, 0x00DB,
    0x00DC, 0x00DD, 0x00DE, 0x00B5, 0x00D7, 0x00F7, 0x00A9, 0x00A1, 0x00A2, 0x00A3, 0x2044, 0x00A5, 0x0192,
    0x00A7, 0x00A4, 0x2019, 0x201C, 0x00AB, 0x2039, 0x203A, 0xFB01, 0xFB02, 0x00AE, 0x2013, 0x2020, 0x2021,
    0x00B7, 0x00A6, 0x00B6, 0x2022, 0x201A, 0x201E, 0x201D, 0x00BB, 0x2026, 0x2030, 0x00AC, 0x00BF, 0x00B9,
    0x02CB, 0x00B4, 0x02C6, 0x02DC, 0x00AF, 0x02D8, 0x02D9, 0x00A8, 0x00B2, 0x02DA, 0x00B8, 0x00B3, 0x02DD,
    0x02DB, 0x02C7, 0x2014, 0x00B1, 0x00BC, 0x00BD, 0x00BE, 0x00E0, 0x00E1, 0x00E2, 0x00E3, 0x00E4, 0x00E5,
    0x00E7, 0x00E8, 0x00E9, 0x00EA, 0x00EB, 0x00EC, 0x00C6, 0x00ED, 0x00AA, 0x00EE, 0x00EF, 0x00F0, 0x00F1,
    0x0141, 0x00D8, 0x0152, 0x00BA, 0x00F2, 0x00F3, 0x00F4, 0x00F5, 0x00F6, 0x00E6, 0x00F9, 0x00FA, 0x00FB,
    0x0131, 0x00FC, 0x00FD, 0x0142, 0x00F8, 0x0153, 0x00DF, 0x00FE, 0x00FF, 0xFFFD, 0xFFFD};

constexpr std::string_view lineSeparator = "\u2028";
constexpr std::string_view paragraphSeparator = "\u2029";

bool isSpace(char character) { return character == ' ' || (character >= '\t' && character <= '\r'); }
bool isOctal(char character) { return character >= '0' && character <= '7'; }

bool isUnquoted(char character) {
    return (character >= 'A' && character <= 'Z') || (character >= 'a' && character <= 'z') ||
           (character >= '0' && character <= '9') ||
           std::string_view{"_$/:.-"}.find(character) != std::string_view::npos;
}

std::optional<unsigned> hexadecimalDigit(char character) {
    if (character >= '0' && character <= '9') return character - '0';
    if (character >= 'a' && character <= 'f') return character - 'a' + 10;
    if (character >= 'A' && character <= 'F') return character - 'A' + 10;
    return std::nullopt;
}

/// The control character of a one-letter escape; any other character stands for itself.
char controlCharacter(char letter) {
    constexpr std::string_view letters = "abfnrtv";
    constexpr std::string_view controls = "\a\b\f\n\r\t\v";
    auto const index = letters.find(letter);
    return index == std::string_view::npos ? letter : controls[index];
}

bool isHighSurrogate(char32_t unit) { return unit >= 0xD800 && unit <= 0xDBFF; }
bool isLowSurrogate(char32_t unit) { return unit >= 0xDC00 && unit <= 0xDFFF; }
char32_t joined(char32_t high, char32_t low) { return 0x10000 + ((high - 0xD800) << 10) + (low - 0xDC00); }

/// The line of a byte, from 1; CR LF ends one line.
int lineAt(std::string_view text, std::size_t position) {
    int line = 1;
    for (std::size_t i = 0; i < position; ++i) {
        bool const isInsidePair = text[i] == '\r' && i + 1 < text.size() && text[i + 1] == '\n';
        if ((text[i] == '\n' || text[i] == '\r') && !isInsidePair) ++line;
    }
    return line;
}

} // namespace

Result<StringsTable::Entries> StringsParser::parse(std::string_view bytes) {
    if (!decode(bytes) || !takePairs()) return std::move(error_);
    return std::move(entries_);
}

bool StringsParser::decode(std::string_view bytes) {
    if (bytes.starts_with("\xFE\xFF")) return decodeUtf16(bytes.substr(2), true);
    if (bytes.starts_with("\xFF\xFE")) return decodeUtf16(bytes.substr(2), false);
    if (bytes.starts_with("\xEF\xBB\xBF")) bytes.remove_prefix(3);
    text_ = bytes;
    return checkUtf8();
}

bool StringsParser::decodeUtf16(std::string_view bytes, bool isBigEndian) {
    auto const unitAt = [&](std::size_t index) -> char32_t {
        auto const first = static_cast<unsigned char>(bytes[2 * index]);
        auto const second = static_cast<unsigned char>(bytes[2 * index + 1]);
        return isBigEndian ? static_cast<char32_t>(first << 8 | second)
                           : static_cast<char32_t>(second << 8 | first);
    };
    auto const count = bytes.size() / 2;
    for (std::size_t i = 0; i < count; ++i) {
        auto unit = unitAt(i);
        if (isHighSurrogate(unit) && i + 1 < count && isLowSurrogate(unitAt(i + 1)))
            unit = joined(unit, unitAt(++i));
        if (isHighSurrogate(unit) || isLowSurrogate(unit))
            return fail("an unpaired UTF-16 surrogate", text_.size());
        appendCodePoint(text_, unit);
    }
    if (bytes.size() % 2 != 0) return fail("the UTF-16 text ends inside a character", text_.size());
    return true;
}

bool StringsParser::checkUtf8() {
    for (std::size_t position = 0; position < text_.size();) {
        auto const start = position;
        if (!takeCodePoint(text_, position)) return fail("a byte that is not UTF-8", start);
    }
    return true;
}

bool StringsParser::takePairs() {
    while (skipSpace()) {
        if (isAtEnd()) return true;
        if (!takePair()) return false;
    }
    return false;
}

bool StringsParser::takePair() {
    auto key = takeText("a key");
    if (!key || !skipSpace()) return false;
    auto value = key;
    if (!isAtEnd() && peek() == '=') {
        ++position_;
        if (!skipSpace()) return false;
        value = takeText("a value");
        if (!value || !skipSpace()) return false;
    }
    if (isAtEnd() || peek() != ';') return fail(fmt::format("expected \";\" after the entry \"{}\"", *key));
    ++position_;
    entries_.insert_or_assign(*std::move(key), *std::move(value));
    return true;
}

bool StringsParser::skipSpace() {
    while (!isAtEnd()) {
        if (isSpace(peek())) {
            ++position_;
        } else if (startsWith(lineSeparator) || startsWith(paragraphSeparator)) {
            position_ += lineSeparator.size();
        } else if (startsWith("//") || startsWith("/*")) {
            if (!skipComment()) return false;
        } else {
            break;
        }
    }
    return true;
}

bool StringsParser::skipComment() {
    if (startsWith("//")) {
        position_ = std::min(text_.find_first_of("\r\n", position_), text_.size());
        return true;
    }
    auto const end = text_.find("*/", position_ + 2);
    if (end == std::string::npos) return fail("a comment without end");
    position_ = end + 2;
    return true;
}

std::optional<std::string> StringsParser::takeText(char const* what) {
    if (!isAtEnd() && (peek() == '"' || peek() == '\'')) return takeQuoted(peek());
    auto const start = position_;
    while (!isAtEnd() && isUnquoted(peek())) ++position_;
    if (position_ > start) return text_.substr(start, position_ - start);
    fail(isAtEnd() ? fmt::format("expected {} before the end of the file", what)
                   : fmt::format("expected {}", what));
    return std::nullopt;
}

std::optional<std::string> StringsParser::takeQuoted(char quote) {
    auto const start = position_++;
    std::string text;
    while (!isAtEnd() && peek() != quote) {
        if (peek() != '\\') {
            text += text_[position_++];
        } else if (++position_; !isAtEnd()) {
            takeEscape(text);
        }
    }
    if (isAtEnd()) {
        fail("a quoted text without end", start);
        return std::nullopt;
    }
    ++position_;
    return text;
}

void StringsParser::takeEscape(std::string& text) {
    if (isOctal(peek())) {
        auto const code = takeOctal();
        appendCodePoint(text, code < 0x80 ? code : nextStepUpperHalf[code - 0x80]);
    } else if (peek() == 'U' && position_ + 1 < text_.size() && hexadecimalDigit(text_[position_ + 1])) {
        takeUnicodeEscape(text);
    } else {
        text += controlCharacter(text_[position_++]);
    }
}

unsigned StringsParser::takeOctal() {
    unsigned code = 0;
    for (int digits = 0; digits < 3 && !isAtEnd() && isOctal(peek()); ++digits)
        code = code * 8 + static_cast<unsigned>(text_[position_++] - '0');
    return code & 0xFFU;
}

char16_t StringsParser::takeHexadecimal() {
    ++position_; // the letter
    unsigned unit = 0;
    for (int digits = 0; digits < 4 && !isAtEnd(); ++digits, ++position_) {
        auto const digit = hexadecimalDigit(peek());
        if (!digit) break;
        unit = unit * 16 + *digit;
    }
    return static_cast<char16_t>(unit);
}

/// A character outside the first plane is written as two escapes in a row, each one UTF-16 unit.
void StringsParser::takeUnicodeEscape(std::string& text) {
    auto const unit = takeHexadecimal();
    auto const afterFirst = position_;
    if (isHighSurrogate(unit) && startsWith("\\U")) {
        ++position_;
        auto const second = takeHexadecimal();
        if (isLowSurrogate(second)) return appendCodePoint(text, joined(unit, second));
        position_ = afterFirst;
    }
    appendCodePoint(text, unit);
}

bool StringsParser::fail(std::string_view reason, std::size_t position) {
    error_ = {fmt::format("{}:{}: {}", file_, lineAt(text_, position), reason)};
    return false;
}

} // namespace trelundo

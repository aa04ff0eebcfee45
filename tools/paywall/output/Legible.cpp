#include "tools/paywall/output/Legible.h"

#include <fmt/core.h>
#include <unicode/uchar.h>
#include <unicode/unistr.h>

namespace trelundo::paywall {

namespace {

constexpr int longestQuote = 60; // characters

bool mayBeShown(UChar32 character) {
    auto const type = u_charType(character);
    return type != U_CONTROL_CHAR && type != U_FORMAT_CHAR && type != U_LINE_SEPARATOR &&
           type != U_PARAGRAPH_SEPARATOR;
}

void append(icu::UnicodeString& text, UChar32 character) {
    if (mayBeShown(character)) {
        text.append(character);
    } else {
        text.append(icu::UnicodeString::fromUTF8(fmt::format("\\u{:04x}", character)));
    }
}

} // namespace

std::string legible(std::string_view message) {
    auto const source = icu::UnicodeString::fromUTF8(
        icu::StringPiece(message.data(), static_cast<std::int32_t>(message.size())));
    icu::UnicodeString text;
    bool isQuoted = false;
    int quoted = 0;
    for (std::int32_t i = 0; i < source.length(); i = source.moveIndex32(i, 1)) {
        auto const character = source.char32At(i);
        if (character == '"') {
            isQuoted = !isQuoted;
            quoted = 0;
        } else if (isQuoted && ++quoted > longestQuote) {
            if (quoted == longestQuote + 1) text.append(UChar32{0x2026}); // …
            continue;
        }
        append(text, character);
    }
    std::string bytes;
    return text.toUTF8String(bytes);
}

} // namespace trelundo::paywall

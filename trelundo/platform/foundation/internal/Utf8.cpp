#include "trelundo/platform/foundation/internal/Utf8.h"

#include <bit>

namespace trelundo {

namespace {

bool isScalar(char32_t codePoint) {
    return codePoint < 0xD800 || (codePoint > 0xDFFF && codePoint <= 0x10FFFF);
}

int sequenceLength(char32_t codePoint) {
    if (codePoint < 0x80) return 1;
    if (codePoint < 0x800) return 2;
    return codePoint < 0x10000 ? 3 : 4;
}

} // namespace

std::optional<char32_t> takeCodePoint(std::string_view text, std::size_t& position) {
    auto const lead = static_cast<unsigned char>(text[position]);
    auto const next = ++position;
    int const length = std::countl_one(lead);
    if (length == 0) return lead;
    if (length == 1 || length > 4 || text.size() - next < static_cast<std::size_t>(length - 1))
        return std::nullopt;
    char32_t codePoint = lead & (0x7FU >> length);
    for (auto i = next; i < next + static_cast<std::size_t>(length - 1); ++i) {
        auto const trail = static_cast<unsigned char>(text[i]);
        if ((trail & 0xC0U) != 0x80) return std::nullopt;
        codePoint = codePoint << 6 | (trail & 0x3FU);
    }
    if (!isScalar(codePoint) || sequenceLength(codePoint) != length) return std::nullopt;
    position = next + static_cast<std::size_t>(length - 1);
    return codePoint;
}

void appendCodePoint(std::string& text, char32_t codePoint) {
    if (!isScalar(codePoint)) codePoint = replacementCharacter;
    int const length = sequenceLength(codePoint);
    if (length == 1) {
        text += static_cast<char>(codePoint);
        return;
    }
    constexpr unsigned leads[] = {0, 0, 0xC0, 0xE0, 0xF0};
    for (int shift = 6 * (length - 1); shift >= 0; shift -= 6) {
        bool const isLead = shift == 6 * (length - 1);
        auto const bits = codePoint >> shift;
        text += static_cast<char>(isLead ? leads[length] | bits : 0x80U | (bits & 0x3FU));
    }
}

} // namespace trelundo

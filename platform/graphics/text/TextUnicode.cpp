#include "platform/graphics/text/TextUnicode.h"

#include <unicode/ubidi.h>
#include <unicode/ubrk.h>

#include <algorithm>
#include <memory>
#include <numeric>

namespace trelundo {

namespace {

using Iterator = std::unique_ptr<UBreakIterator, decltype(&ubrk_close)>;

/// Opening an iterator reads its rules, so each kind is opened once a thread, for the root locale.
UBreakIterator* iteratorOver(UBreakIterator* iterator, std::u16string_view text) {
    UErrorCode status = U_ZERO_ERROR;
    if (iterator) ubrk_setText(iterator, text.data(), static_cast<int32_t>(text.size()), &status);
    return U_SUCCESS(status) ? iterator : nullptr;
}

Iterator openIterator(UBreakIteratorType type) {
    UErrorCode status = U_ZERO_ERROR;
    return {ubrk_open(type, "", nullptr, 0, &status), ubrk_close};
}

/// From here on scripts written from right to left may appear.
constexpr char16_t firstRightToLeft = 0x590;

bool isPlain(std::u16string_view text, char16_t limit) {
    return std::ranges::all_of(text, [&](char16_t unit) { return unit < limit; });
}

/// Without combining characters and line ends every unit is a character.
constexpr char16_t firstCombining = 0x300;

} // namespace

std::vector<int> characterEnds(std::u16string_view text) {
    std::vector<int> ends;
    ends.reserve(text.size());
    thread_local Iterator const characters = openIterator(UBRK_CHARACTER);
    auto* const iterator = isPlain(text, firstCombining) ? nullptr : iteratorOver(characters.get(), text);
    if (!iterator) {
        ends.resize(text.size());
        std::iota(ends.begin(), ends.end(), 1);
        return ends;
    }
    for (auto end = ubrk_next(iterator); end != UBRK_DONE; end = ubrk_next(iterator)) ends.push_back(end);
    return ends;
}

std::vector<bool> lineBreakOpportunities(std::u16string_view text) {
    std::vector<bool> opportunities(text.size() + 1, false);
    thread_local Iterator const lines = openIterator(UBRK_LINE);
    auto* const iterator = iteratorOver(lines.get(), text);
    if (!iterator) return opportunities;
    for (auto end = ubrk_next(iterator); end != UBRK_DONE; end = ubrk_next(iterator))
        opportunities[static_cast<std::size_t>(end)] = true;
    return opportunities;
}

BaseDirection baseDirection(std::u16string_view text) {
    switch (ubidi_getBaseDirection(text.data(), static_cast<int32_t>(text.size()))) {
    case UBIDI_LTR:
        return BaseDirection::leftToRight;
    case UBIDI_RTL:
        return BaseDirection::rightToLeft;
    default:
        return BaseDirection::none;
    }
}

std::vector<std::uint8_t> embeddingLevels(std::u16string_view text, bool rightToLeft) {
    std::vector<std::uint8_t> levels(text.size(), rightToLeft ? 1 : 0);
    if (text.empty() || (!rightToLeft && isPlain(text, firstRightToLeft))) return levels;
    std::unique_ptr<UBiDi, decltype(&ubidi_close)> const bidi(ubidi_open(), ubidi_close);
    UErrorCode status = U_ZERO_ERROR;
    ubidi_setPara(bidi.get(), text.data(), static_cast<int32_t>(text.size()), rightToLeft ? 1 : 0, nullptr,
                  &status);
    auto const* found = ubidi_getLevels(bidi.get(), &status);
    if (U_SUCCESS(status)) std::copy_n(found, text.size(), levels.begin());
    return levels;
}

std::vector<int> visualOrder(std::vector<std::uint8_t> const& levels) {
    std::vector<int> order(levels.size());
    std::iota(order.begin(), order.end(), 0);
    if (std::ranges::any_of(levels, [](auto level) { return level != 0; }))
        ubidi_reorderVisual(levels.data(), static_cast<int32_t>(levels.size()), order.data());
    return order;
}

} // namespace trelundo

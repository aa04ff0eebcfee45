#include "trelundo/platform/graphics/text/internal/UnicodeAlgorithms.h"

#include <unicode/ubidi.h>
#include <unicode/ubrk.h>
#include <unicode/uchar.h>
#include <unicode/utf16.h>

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

Iterator openIterator(UBreakIteratorType type, char const* locale = "") {
    UErrorCode status = U_ZERO_ERROR;
    return {ubrk_open(type, locale, nullptr, 0, &status), ubrk_close};
}

std::vector<bool> opportunities(UBreakIterator* lines, std::u16string_view text) {
    std::vector<bool> found(text.size() + 1, false);
    auto* const iterator = iteratorOver(lines, text);
    if (!iterator) return found;
    for (auto end = ubrk_next(iterator); end != UBRK_DONE; end = ubrk_next(iterator))
        found[static_cast<std::size_t>(end)] = true;
    return found;
}

bool isKana(char16_t unit) { return unit >= 0x3041 && unit <= 0x30ff; }
bool isJapanese(char16_t unit) { return isKana(unit) || (unit >= 0x4e00 && unit <= 0x9fff); }

/// From here on scripts written from right to left may appear.
constexpr char16_t firstRightToLeft = 0x590;

bool isPlain(std::u16string_view text, char16_t limit) {
    return std::ranges::all_of(text, [&](char16_t unit) { return unit < limit; });
}

/// Without combining characters and line ends every unit is a character.
constexpr char16_t firstCombining = 0x300;

bool opensIsolate(UCharDirection direction) {
    return direction == U_FIRST_STRONG_ISOLATE || direction == U_LEFT_TO_RIGHT_ISOLATE ||
           direction == U_RIGHT_TO_LEFT_ISOLATE;
}

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

LineBreaks lineBreaks(std::u16string_view text) {
    thread_local Iterator const lines = openIterator(UBRK_LINE);
    auto allowed = opportunities(lines.get(), text);
    auto preferred = allowed;
    if (std::ranges::any_of(text, isKana)) {
        thread_local Iterator const phrases = openIterator(UBRK_LINE, "ja@lw=phrase");
        preferred = opportunities(phrases.get(), text);
        for (std::size_t i = 1; i < text.size(); ++i)
            if (allowed[i] && isJapanese(text[i - 1]) && !isJapanese(text[i])) preferred[i] = true;
    }
    for (std::size_t i = 1; i < text.size(); ++i)
        if (text[i - 1] == u'/') preferred[i] = false;
    return {std::move(allowed), std::move(preferred)};
}

std::vector<int> sentenceEnds(std::u16string_view text) {
    thread_local Iterator const sentences = openIterator(UBRK_SENTENCE);
    std::vector<int> ends;
    if (auto* const iterator = iteratorOver(sentences.get(), text))
        for (auto end = ubrk_next(iterator); end != UBRK_DONE; end = ubrk_next(iterator)) ends.push_back(end);
    return ends;
}

BaseDirection baseDirection(std::u16string_view text) {
    int openIsolates = 0;
    for (std::size_t i = 0; i < text.size();) {
        UChar32 character;
        U16_NEXT(text.data(), i, text.size(), character);
        auto const direction = u_charDirection(character);
        if (opensIsolate(direction))
            ++openIsolates;
        else if (direction == U_POP_DIRECTIONAL_ISOLATE)
            openIsolates = std::max(openIsolates - 1, 0);
        else if (openIsolates > 0)
            continue;
        else if (direction == U_LEFT_TO_RIGHT)
            return BaseDirection::leftToRight;
        else if (direction == U_RIGHT_TO_LEFT || direction == U_RIGHT_TO_LEFT_ARABIC)
            return BaseDirection::rightToLeft;
    }
    return BaseDirection::none;
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

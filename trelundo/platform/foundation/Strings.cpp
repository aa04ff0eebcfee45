#include "trelundo/platform/foundation/Strings.h"

#include "trelundo/platform/foundation/internal/Utf8.h"

#include <algorithm>
#include <limits>
#include <unicode/normalizer2.h>

namespace trelundo {

namespace {

/// A piece of a text that normalisation never joins with its neighbours.
struct Segment {
    std::size_t begin, end;
    std::string decomposed;
};

icu::Normalizer2 const* normalizer(bool composing) {
    UErrorCode status = U_ZERO_ERROR;
    auto const* found =
        composing ? icu::Normalizer2::getNFCInstance(status) : icu::Normalizer2::getNFDInstance(status);
    return U_SUCCESS(status) ? found : nullptr;
}

std::string decomposed(std::string_view piece, bool isText) {
    auto const* decomposer = normalizer(false);
    if (piece.size() == 1 || !isText || !decomposer) return std::string{piece};
    UErrorCode status = U_ZERO_ERROR;
    auto const text = icu::UnicodeString::fromUTF8({piece.data(), static_cast<int32_t>(piece.size())});
    auto const normal = decomposer->normalize(text, status);
    if (U_FAILURE(status)) return std::string{piece};
    std::string utf8;
    return normal.toUTF8String(utf8);
}

/// Cuts `text` where a match may begin or end: never between a letter and its marks, whether the two are
/// written as one character or as several.
std::vector<Segment> segments(std::string_view text) {
    auto const* composer = normalizer(true);
    std::vector<Segment> result;
    std::size_t begin = 0;
    while (begin < text.size()) {
        auto end = begin;
        bool const isText = takeCodePoint(text, end).has_value();
        while (isText && composer && end < text.size()) {
            auto next = end;
            auto const character = takeCodePoint(text, next);
            if (!character || composer->hasBoundaryBefore(static_cast<UChar32>(*character))) break;
            end = next;
        }
        result.push_back({begin, end, decomposed(text.substr(begin, end - begin), isText)});
        begin = end;
    }
    return result;
}

bool isAscii(std::string_view text) {
    return std::ranges::all_of(text,
                               [](char character) { return static_cast<unsigned char>(character) < 0x80; });
}

/// Text without any mark: bytes can be compared as they are.
std::string replaceBytes(std::string_view text, std::string_view target, std::string_view replacement,
                         std::size_t limit) {
    std::string result;
    std::size_t position = 0;
    for (auto found = text.find(target); found != std::string_view::npos && limit > 0; --limit) {
        result.append(text.substr(position, found - position)).append(replacement);
        position = found + target.size();
        found = text.find(target, position);
    }
    return result.append(text.substr(position));
}

std::string replaceEquivalents(std::string_view text, std::string_view target, std::string_view replacement,
                               std::size_t limit) {
    auto const pieces = segments(text);
    auto const wanted = segments(target);
    std::string result;
    std::size_t copied = 0;
    for (auto from = pieces.begin(); limit > 0; --limit) {
        auto const match = std::ranges::search(from, pieces.end(), wanted.begin(), wanted.end(), {},
                                               &Segment::decomposed, &Segment::decomposed);
        if (match.empty()) break;
        result.append(text.substr(copied, match.begin()->begin - copied)).append(replacement);
        copied = std::prev(match.end())->end;
        from = match.end();
    }
    return result.append(text.substr(copied));
}

std::string replace(std::string_view text, std::string_view target, std::string_view replacement,
                    std::size_t limit) {
    constexpr auto longest = static_cast<std::size_t>(std::numeric_limits<int32_t>::max());
    if (target.empty()) return std::string{text};
    if (isAscii(text) || text.size() > longest) return replaceBytes(text, target, replacement, limit);
    return replaceEquivalents(text, target, replacement, limit);
}

} // namespace

std::string replacingOccurrences(std::string_view text, std::string_view target,
                                 std::string_view replacement) {
    return replace(text, target, replacement, std::numeric_limits<std::size_t>::max());
}

std::string replacingFirstOccurrence(std::string_view text, std::string_view target,
                                     std::string_view replacement) {
    return replace(text, target, replacement, 1);
}

std::vector<std::string> split(std::string_view text, char separator) {
    std::vector<std::string> pieces;
    while (!text.empty()) {
        auto const end = std::min(text.find(separator), text.size());
        if (end > 0) pieces.emplace_back(text.substr(0, end));
        text.remove_prefix(std::min(end + 1, text.size()));
    }
    return pieces;
}

} // namespace trelundo

#include "trelundo/platform/foundation/Strings.h"

#include "trelundo/platform/foundation/internal/Utf8.h"

#include <algorithm>
#include <limits>
#include <unicode/casemap.h>
#include <unicode/edits.h>
#include <unicode/normalizer2.h>
#include <unicode/uchar.h>
#include <unicode/unistr.h>

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

constexpr UChar32 combiningDotAbove = 0x0307;

/// Title-cases one text character by character, with the special rules of one language.
class Capitalizer {
public:
    Capitalizer(std::string_view text, std::string language)
        : language_(std::move(language))
        , text_(icu::UnicodeString::fromUTF8({text.data(), static_cast<int32_t>(text.size())})) {}

    icu::UnicodeString result() {
        bool isInCasedRun = false;
        while (position_ < text_.length()) {
            auto const character = text_.char32At(position_);
            bool const isCased = u_hasBinaryProperty(character, UCHAR_CASED) != 0;
            bool const isIgnorable = u_hasBinaryProperty(character, UCHAR_CASE_IGNORABLE) != 0;
            if (isCased && !isInCasedRun) {
                appendTitle();
            } else if (isCased) {
                appendLower();
            } else {
                append(1);
            }
            if (!isIgnorable) isInCasedRun = isCased;
        }
        return result_;
    }

private:
    /// Copies `count` characters as they are.
    void append(int count) {
        auto const end = text_.moveIndex32(position_, count);
        result_.append(text_, position_, end - position_);
        position_ = end;
    }

    void appendTitle() {
        auto const character = text_.char32At(position_);
        auto const end = text_.moveIndex32(position_, 1);
        auto const following = end < text_.length() ? text_.char32At(end) : U_SENTINEL;
        appendMapped(position_, end, [this](auto... arguments) {
            return icu::CaseMap::toTitle(language_.c_str(), U_TITLECASE_WHOLE_STRING, nullptr, arguments...);
        });
        position_ = end;
        if (language_ == "nl" && u_toupper(character) == u'I' && u_toupper(following) == u'J') {
            result_.append(u'J');
            position_ = text_.moveIndex32(position_, 1);
        } else if (language_ == "lt" && following == combiningDotAbove &&
                   u_hasBinaryProperty(character, UCHAR_SOFT_DOTTED)) {
            position_ = text_.moveIndex32(position_, 1); // the capital has no dot to keep
        }
    }

    /// Lower-cases with what stands around the character, which decides about the final sigma and dotted
    /// letters.
    void appendLower() {
        if (lowered_.isEmpty()) lowerWhole();
        UErrorCode status = U_ZERO_ERROR;
        if (!edits_.findSourceIndex(position_, status) || !edits_.hasChange()) return append(1);
        result_.append(lowered_, edits_.destinationIndex(), edits_.newLength());
        bool const isTurkishCapitalI = (language_ == "tr" || language_ == "az") && text_[position_] == u'I';
        position_ = std::max(text_.moveIndex32(position_, 1), edits_.sourceIndex() + edits_.oldLength());
        if (isTurkishCapitalI && text_.char32At(position_) == combiningDotAbove)
            ++position_; // the small i has it
    }

    void lowerWhole() {
        lowered_ = mapped(text_, &lowerEdits_, [this](auto... arguments) {
            return icu::CaseMap::toLower(language_.c_str(), 0, arguments...);
        });
        edits_ = lowerEdits_.getFineIterator();
    }

    template <class Mapping> void appendMapped(int32_t begin, int32_t end, Mapping mapping) {
        result_.append(mapped(text_.tempSubString(begin, end - begin), nullptr, mapping));
    }

    template <class Mapping>
    static icu::UnicodeString mapped(icu::UnicodeString const& source, icu::Edits* edits, Mapping mapping) {
        constexpr int32_t mostGrowth = 3; // of any case mapping, in UTF-16 units
        icu::UnicodeString target;
        auto const capacity = source.length() * mostGrowth;
        auto* buffer = target.getBuffer(capacity);
        UErrorCode status = U_ZERO_ERROR; // NOLINT(misc-const-correctness): the mapping writes it
        auto const length =
            buffer ? mapping(source.getBuffer(), source.length(), buffer, capacity, edits, status) : 0;
        target.releaseBuffer(U_SUCCESS(status) ? length : 0);
        return U_SUCCESS(status) && buffer ? target : source;
    }

    std::string language_;
    icu::UnicodeString text_;
    int32_t position_ = 0;
    icu::UnicodeString lowered_;
    icu::Edits lowerEdits_;
    icu::Edits::Iterator edits_;
    icu::UnicodeString result_;
};

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

std::string capitalized(std::string_view text, Locale const& locale) {
    std::string utf8;
    return Capitalizer{text, locale.languageCode()}.result().toUTF8String(utf8);
}

std::string localizedCapitalized(std::string_view text) { return capitalized(text, Locale::current()); }

} // namespace trelundo

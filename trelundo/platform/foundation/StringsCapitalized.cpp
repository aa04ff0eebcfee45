#include "trelundo/platform/foundation/Strings.h"

#include <algorithm>
#include <unicode/casemap.h>
#include <unicode/edits.h>
#include <unicode/uchar.h>
#include <unicode/unistr.h>

namespace trelundo {

namespace {

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
        UErrorCode status = U_ZERO_ERROR;
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

std::string capitalized(std::string_view text, Locale const& locale) {
    std::string utf8;
    return Capitalizer{text, locale.languageCode()}.result().toUTF8String(utf8);
}

std::string localizedCapitalized(std::string_view text) { return capitalized(text, Locale::current()); }

} // namespace trelundo

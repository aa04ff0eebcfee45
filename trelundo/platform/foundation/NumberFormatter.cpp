#include "trelundo/platform/foundation/NumberFormatter.h"

#include "trelundo/platform/foundation/internal/LocaleData.h"

#include <algorithm>
#include <array>
#include <list>
#include <memory>
#include <string>
#include <unicode/unistr.h>
#include <unicode/unum.h>
#include <unicode/ustring.h>

namespace trelundo {

namespace {

constexpr int mostFractionDigits = 340;

UNumberFormatStyle libraryStyle(NumberFormatter::Style style) {
    using Style = NumberFormatter::Style;
    switch (style) {
    case Style::none:
        return UNUM_PATTERN_DECIMAL;
    case Style::decimal:
        return UNUM_DECIMAL;
    case Style::currency:
        return UNUM_CURRENCY;
    case Style::percent:
        return UNUM_PERCENT;
    case Style::scientific:
        return UNUM_SCIENTIFIC;
    case Style::spellOut:
        return UNUM_SPELLOUT;
    case Style::ordinal:
        return UNUM_ORDINAL;
    case Style::currencyISOCode:
        return UNUM_CURRENCY_ISO;
    case Style::currencyPlural:
        return UNUM_CURRENCY_PLURAL;
    case Style::currencyAccounting:
        return UNUM_CURRENCY_ACCOUNTING;
    }
    return UNUM_PATTERN_DECIMAL;
}

UNumberFormatRoundingMode libraryMode(NumberFormatter::RoundingMode mode) {
    using Mode = NumberFormatter::RoundingMode;
    switch (mode) {
    case Mode::ceiling:
        return UNUM_ROUND_CEILING;
    case Mode::floor:
        return UNUM_ROUND_FLOOR;
    case Mode::down:
        return UNUM_ROUND_DOWN;
    case Mode::up:
        return UNUM_ROUND_UP;
    case Mode::halfEven:
        return UNUM_ROUND_HALFEVEN;
    case Mode::halfDown:
        return UNUM_ROUND_HALFDOWN;
    case Mode::halfUp:
        return UNUM_ROUND_HALFUP;
    }
    return UNUM_ROUND_HALFEVEN;
}

/// Whether the digits that a style writes are the number's own, at their own places.
bool writesPlainDigits(NumberFormatter::Style style) {
    using Style = NumberFormatter::Style;
    return style == Style::decimal || style == Style::currency || style == Style::currencyISOCode ||
           style == Style::currencyAccounting;
}

/// Takes away what no rounding to `kept` fraction digits looks at: behind the first digit that is dropped it
/// only matters that something follows. The locale library takes long over long numbers.
void shorten(std::string& digits, std::size_t kept) {
    if (digits.size() <= kept + 4) return;
    auto const point = digits.find('.');
    if (point == std::string::npos || digits.size() <= point + kept + 3) return;
    digits.resize(point + kept + 2);
    digits += '1';
}

} // namespace

/// One opened formatter of the locale library.
class NumberFormatter::Engine {
public:
    explicit Engine(Settings settings)
        : settings_(std::move(settings)) {
        UErrorCode status = U_ZERO_ERROR;
        auto const pattern = icu::UnicodeString{u"0"};
        bool const hasPattern = settings_.style == Style::none;
        handle_.reset(unum_open(libraryStyle(settings_.style), hasPattern ? pattern.getBuffer() : nullptr,
                                hasPattern ? pattern.length() : 0,
                                localeDataIdentifier(settings_.locale).c_str(), nullptr, &status));
        if (U_FAILURE(status)) handle_.reset();
        if (handle_) configure();
    }

    Settings const& settings() const { return settings_; }

    std::optional<std::string> string(Decimal const& number) const {
        if (!handle_) return std::nullopt;
        auto digits = number.description();
        if (settings_.maximumFractionDigits && writesPlainDigits(settings_.style))
            shorten(digits, static_cast<std::size_t>(*settings_.maximumFractionDigits));
        std::array<char16_t, usualLength> text;
        UErrorCode status = U_ZERO_ERROR;
        auto const length = format(digits, text.data(), usualLength, status);
        if (status == U_BUFFER_OVERFLOW_ERROR) return longString(digits, length);
        if (U_FAILURE(status)) return std::nullopt;
        std::array<char, 3 * usualLength> utf8;
        int32_t size = 0;
        u_strToUTF8(utf8.data(), utf8.size(), &size, text.data(), length, &status);
        return std::string{utf8.data(), static_cast<std::size_t>(size)};
    }

private:
    struct Close {
        void operator()(UNumberFormat* handle) const { unum_close(handle); }
    };

    void configure() {
        unum_setAttribute(handle_.get(), UNUM_ROUNDING_MODE, libraryMode(settings_.roundingMode));
        // A maximum alone lowers the currency's own minimum; the library keeps the two in step.
        if (auto const digits = settings_.maximumFractionDigits)
            unum_setAttribute(handle_.get(), UNUM_MAX_FRACTION_DIGITS, *digits);
        if (auto const digits = settings_.minimumFractionDigits)
            unum_setAttribute(handle_.get(), UNUM_MIN_FRACTION_DIGITS, *digits);
    }

    /// Returns the length of the whole text, which may be more than fits.
    int32_t format(std::string const& digits, char16_t* text, int32_t capacity, UErrorCode& status) const {
        return unum_formatDecimal(handle_.get(), digits.data(), static_cast<int32_t>(digits.size()), text,
                                  capacity, nullptr, &status);
    }

    std::optional<std::string> longString(std::string const& digits, int32_t length) const {
        icu::UnicodeString text;
        UErrorCode status = U_ZERO_ERROR;
        format(digits, text.getBuffer(length), length, status);
        text.releaseBuffer(length);
        if (U_FAILURE(status)) return std::nullopt;
        std::string utf8;
        return text.toUTF8String(utf8);
    }

    static constexpr int32_t usualLength = 64; // characters
    Settings settings_;
    std::unique_ptr<UNumberFormat, Close> handle_;
};

/// The engines that a thread used last, newest first.
class NumberFormatter::EngineCache {
public:
    Engine const& engine(Settings const& settings) {
        auto const found = std::ranges::find(engines_, settings, &Engine::settings);
        if (found != engines_.end()) {
            engines_.splice(engines_.begin(), engines_, found);
        } else {
            engines_.emplace_front(settings);
            if (engines_.size() > capacity) engines_.pop_back();
        }
        return engines_.front();
    }

private:
    static constexpr std::size_t capacity = 16;
    std::list<Engine> engines_;
};

void NumberFormatter::setMinimumFractionDigits(int digits) {
    digits = std::clamp(digits, 0, mostFractionDigits);
    settings_.minimumFractionDigits = digits;
    auto& maximum = settings_.maximumFractionDigits;
    if (maximum && *maximum < digits) maximum = digits;
}

void NumberFormatter::setMaximumFractionDigits(int digits) {
    digits = std::clamp(digits, 0, mostFractionDigits);
    settings_.maximumFractionDigits = digits;
    auto& minimum = settings_.minimumFractionDigits;
    if (minimum && *minimum > digits) minimum = digits;
}

std::optional<std::string> NumberFormatter::string(Decimal const& number) const {
    thread_local EngineCache cache;
    return cache.engine(settings_).string(number);
}

} // namespace trelundo

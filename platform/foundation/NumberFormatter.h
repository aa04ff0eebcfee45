#pragma once

#include "platform/foundation/Decimal.h"
#include "platform/foundation/Locale.h"

#include <optional>
#include <string>

namespace trelundo {

/// Formats numbers by the rules of a locale. Attributes that were set survive later changes of style and locale;
/// unset ones follow the style and the locale. Configure once, use from one thread.
class NumberFormatter {
public:
    enum class Style : int {
        none = 0,
        decimal = 1,
        currency = 2,
        percent = 3,
        scientific = 4,
        spellOut = 5,
        ordinal = 6,
        currencyISOCode = 8,
        currencyPlural = 9,
        currencyAccounting = 10,
    };
    enum class RoundingMode : int { ceiling = 0, floor = 1, down = 2, up = 3, halfEven = 4, halfDown = 5, halfUp = 6 };

    Style numberStyle() const { return numberStyle_; }
    void setNumberStyle(Style style) { numberStyle_ = style; }
    Locale const& locale() const { return locale_; }
    void setLocale(Locale locale) { locale_ = std::move(locale); }
    RoundingMode roundingMode() const { return roundingMode_; }
    void setRoundingMode(RoundingMode mode) { roundingMode_ = mode; }

    /// The last of the two settings wins: a minimum above the maximum raises the maximum and the reverse.
    void setMinimumFractionDigits(int digits);
    void setMaximumFractionDigits(int digits);

    /// The text of `number`; none when the locale data cannot be had.
    std::optional<std::string> string(Decimal const& number) const;

private:
    Style numberStyle_ = Style::none;
    Locale locale_ = Locale::current();
    RoundingMode roundingMode_ = RoundingMode::halfEven;
    std::optional<int> minimumFractionDigits_;
    std::optional<int> maximumFractionDigits_;
};

} // namespace trelundo

#pragma once

#include "trelundo/platform/foundation/Decimal.h"
#include "trelundo/platform/foundation/Locale.h"

#include <optional>
#include <string>
#include <utility>

namespace trelundo {

/// Formats numbers by the rules of a locale. Attributes that were set survive later changes of style and
/// locale; unset ones follow the style and the locale. Configure once, use from one thread. Equally
/// configured formatters of a thread share what is costly to make.
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
    enum class RoundingMode : int {
        ceiling = 0,
        floor = 1,
        down = 2,
        up = 3,
        halfEven = 4,
        halfDown = 5,
        halfUp = 6
    };

    /// In the locale of the user's first preferred language.
    NumberFormatter()
        : NumberFormatter(Locale::current()) {}
    explicit NumberFormatter(Locale locale)
        : settings_{.locale = std::move(locale)} {}

    Style numberStyle() const { return settings_.style; }
    void setNumberStyle(Style style) { settings_.style = style; }
    Locale const& locale() const { return settings_.locale; }
    void setLocale(Locale locale) { settings_.locale = std::move(locale); }
    RoundingMode roundingMode() const { return settings_.roundingMode; }
    void setRoundingMode(RoundingMode mode) { settings_.roundingMode = mode; }

    /// The last of the two settings wins: a minimum above the maximum raises the maximum and the reverse.
    /// Negative counts mean 0, counts above 340 mean 340.
    void setMinimumFractionDigits(int digits);
    void setMaximumFractionDigits(int digits);

    /// The text of `number`, rounded on its own decimal digits; none when the locale data cannot be had.
    std::optional<std::string> string(Decimal const& number) const;

private:
    struct Settings {
        Style style = Style::none;
        Locale locale;
        RoundingMode roundingMode = RoundingMode::halfEven;
        std::optional<int> minimumFractionDigits{};
        std::optional<int> maximumFractionDigits{};
        bool operator==(Settings const&) const = default;
    };
    class Engine;
    class EngineCache;

    Settings settings_;
};

} // namespace trelundo

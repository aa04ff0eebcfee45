#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace trelundo {

/// A language, region and keywords, such as `en_US@currency=USD`. Never invalid: an unknown identifier
/// behaves like the root locale. Locales compare after canonicalisation ("en-US" equals "en_US").
class Locale {
public:
    explicit Locale(std::string_view identifier);

    /// The identifier in canonical form, keywords included; empty for the root locale and for malformed text.
    std::string const& identifier() const { return identifier_; }
    std::string languageCode() const;
    /// Three-letter code: the currency keyword, else the region's currency, else "XXX".
    std::string currencyCode() const;
    bool isRightToLeft() const;

    bool operator==(Locale const&) const = default;

    /// The locale of the user's first preferred language ("en" when there is none).
    static Locale current();

    /// The user's languages as tags ("en-US"), most wanted first; may be empty. The system's
    /// (on POSIX systems LANGUAGE, then LC_ALL, LC_MESSAGES or LANG) until a shell sets them.
    static std::vector<std::string> preferredLanguages();
    static void setPreferredLanguages(std::vector<std::string> languages);

private:
    std::string identifier_;
};

} // namespace trelundo

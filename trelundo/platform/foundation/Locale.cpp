#include "trelundo/platform/foundation/Locale.h"

#include "trelundo/platform/foundation/internal/LocaleData.h"
#include "trelundo/platform/foundation/internal/SystemLanguages.h"

#include <array>
#include <memory>
#include <mutex>
#include <set>
#include <unicode/ucurr.h>
#include <unicode/uenum.h>
#include <unicode/uloc.h>
#include <unicode/ustring.h>

namespace trelundo {

namespace {

constexpr int identifierCapacity = 512;

/// Runs one of the library's functions that write a text to a buffer; empty on failure.
template <class Function> std::string written(Function function) {
    std::array<char, identifierCapacity> buffer{};
    UErrorCode status = U_ZERO_ERROR;
    auto const length = function(buffer.data(), static_cast<int32_t>(buffer.size()), &status);
    if (U_FAILURE(status) || length <= 0 || length >= identifierCapacity) return {};
    return {buffer.data(), static_cast<std::size_t>(length)};
}

std::string canonicalIdentifier(std::string_view identifier) {
    if (identifier.find('\0') != std::string_view::npos) return {};
    std::string text{identifier};
    if (text.find("-u-") != std::string::npos)
        text = written([&](char* buffer, int32_t size, UErrorCode* status) {
            return uloc_forLanguageTag(text.c_str(), buffer, size, nullptr, status);
        });
    auto canonical = written([&](char* buffer, int32_t size, UErrorCode* status) {
        return uloc_canonicalize(text.c_str(), buffer, size, status);
    });
    return canonical == "root" ? std::string{} : canonical;
}

std::set<std::string, std::less<>> languagesWithData() {
    std::set<std::string, std::less<>> languages;
    UErrorCode status = U_ZERO_ERROR;
    std::unique_ptr<UEnumeration, decltype(&uenum_close)> const names{
        uloc_openAvailableByType(ULOC_AVAILABLE_WITH_LEGACY_ALIASES, &status), &uenum_close};
    if (U_FAILURE(status)) return languages;
    int32_t length = 0;
    while (auto const* name = uenum_next(names.get(), &length, &status)) {
        std::string_view const identifier{name, static_cast<std::size_t>(length)};
        languages.emplace(identifier.substr(0, identifier.find('_')));
    }
    return languages;
}

struct PreferredLanguages {
    std::mutex mutex;
    std::vector<std::string> languages;
    Locale current{"en"};

    PreferredLanguages() { assign(systemLanguages()); }
    void assign(std::vector<std::string> tags) {
        languages = std::move(tags);
        current = Locale{languages.empty() ? std::string_view{"en"} : std::string_view{languages.front()}};
    }
};

PreferredLanguages& preferred() {
    static auto& instance = *new PreferredLanguages; // outlives every static object that may ask
    return instance;
}

} // namespace

std::string localeDataIdentifier(Locale const& locale) {
    static auto const& languages = *new std::set<std::string, std::less<>>{languagesWithData()};
    if (languages.contains(locale.languageCode())) return locale.identifier();
    return "root@currency=" + locale.currencyCode();
}

Locale::Locale(std::string_view identifier)
    : identifier_(canonicalIdentifier(identifier)) {}

std::string Locale::languageCode() const {
    return written([&](char* buffer, int32_t size, UErrorCode* status) {
        return uloc_getLanguage(identifier_.c_str(), buffer, size, status);
    });
}

std::string Locale::currencyCode() const {
    std::array<UChar, 4> code{};
    UErrorCode status = U_ZERO_ERROR;
    auto const length = ucurr_forLocale(identifier_.empty() ? "root" : identifier_.c_str(), code.data(),
                                        static_cast<int32_t>(code.size()), &status);
    if (U_FAILURE(status) || length != 3) return "XXX";
    std::array<char, 4> text{};
    u_UCharsToChars(code.data(), text.data(), length);
    return text.data();
}

// An empty name would mean the host's own locale to the library.
bool Locale::isRightToLeft() const {
    return !identifier_.empty() && uloc_isRightToLeft(identifier_.c_str()) != 0;
}

Locale Locale::current() {
    auto& state = preferred();
    std::lock_guard const lock{state.mutex};
    return state.current;
}

std::vector<std::string> Locale::preferredLanguages() {
    auto& state = preferred();
    std::lock_guard const lock{state.mutex};
    return state.languages;
}

void Locale::setPreferredLanguages(std::vector<std::string> languages) {
    auto& state = preferred();
    std::lock_guard const lock{state.mutex};
    state.assign(std::move(languages));
}

} // namespace trelundo

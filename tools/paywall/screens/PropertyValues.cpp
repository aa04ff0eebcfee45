#include "tools/paywall/screens/PropertyValues.h"

#include "tools/paywall/Failure.h"
#include "trelundo/platform/foundation/Strings.h"

#include <charconv>
#include <fmt/core.h>

namespace trelundo::paywall {

namespace {

template <class Number> Number parse(std::string const& text, char const* kind) {
    Number value{};
    auto const* end = text.data() + text.size();
    auto const result = std::from_chars(text.data(), end, value);
    if (result.ec != std::errc{} || result.ptr != end) failUsage(fmt::format("\"{}\" is not {}", text, kind));
    return value;
}

} // namespace

bool parseBool(std::string const& text) {
    if (text != "true" && text != "false") failUsage(fmt::format("\"{}\" is neither true nor false", text));
    return text == "true";
}

int parseInteger(std::string const& text) { return parse<int>(text, "a whole number"); }

double parseNumber(std::string const& text) { return parse<double>(text, "a number"); }

UIColor parseColor(std::string const& text) {
    auto color = UIColor::fromHex(text);
    if (!color) failUsage(fmt::format("\"{}\" is not a colour of the form #rrggbb or #rrggbbaa", text));
    return *std::move(color);
}

std::pair<std::string, std::string> parseAssignment(std::string const& text, std::string_view form) {
    auto const separator = text.find('=');
    if (separator == std::string::npos || separator == 0)
        failUsage(fmt::format("\"{}\" is not of the form {}", text, form));
    return {text.substr(0, separator), text.substr(separator + 1)};
}

std::vector<Feature> parseFeatures(std::string const& text) {
    if (text.empty() || text == "none") failUsage("a feature carousel needs at least one feature");
    std::vector<Feature> features;
    for (auto const& entry : split(text, ';')) {
        auto const colon = entry.rfind(':');
        if (colon == std::string::npos)
            failUsage(fmt::format("\"{}\" is not a feature of the form Text:picture", entry));
        features.emplace_back(entry.substr(0, colon), entry.substr(colon + 1));
    }
    return features;
}

} // namespace trelundo::paywall

#include "tools/paywall/output/Suggestion.h"

#include <algorithm>
#include <numeric>

namespace trelundo::paywall {

namespace {

std::string inSmallLetters(std::string_view text) {
    std::string letters{text};
    for (char& c : letters)
        if (c >= 'A' && c <= 'Z') c = static_cast<char>(c - 'A' + 'a');
    return letters;
}

/// How many letters have to be inserted, left out or exchanged (the edit distance of Levenshtein, 1965).
std::size_t distance(std::string_view a, std::string_view b) {
    std::vector<std::size_t> row(b.size() + 1);
    std::iota(row.begin(), row.end(), 0);
    for (char const letter : a) {
        auto diagonal = row[0]++;
        for (std::size_t j = 0; j < b.size(); ++j) {
            auto const exchanged = diagonal + (letter == b[j] ? 0 : 1);
            diagonal = row[j + 1];
            row[j + 1] = std::min({diagonal + 1, row[j] + 1, exchanged});
        }
    }
    return row.back();
}

} // namespace

std::string suggestion(std::string_view word, std::vector<std::string> const& names) {
    auto const wanted = inSmallLetters(word.substr(0, 60));
    auto const away = [&](std::string const& name) { return distance(wanted, inSmallLetters(name)); };
    auto const nearest = std::ranges::min_element(names, {}, away);
    if (nearest == names.end() || away(*nearest) > std::max<std::size_t>(wanted.size() / 3, 1)) return {};
    return "; did you mean \"" + *nearest + "\"?";
}

} // namespace trelundo::paywall

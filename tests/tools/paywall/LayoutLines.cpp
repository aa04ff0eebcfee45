#include "tests/tools/paywall/LayoutLines.h"

#include <algorithm>
#include <cctype>
#include <map>
#include <vector>

namespace trelundo::paywall::test {

namespace {

/// What the goldens leave out, by class. It is written out, and not asked of plain views, so that a class
/// whose defaults change is noticed.
Json const defaults = Json::parse(R"({
    "UIView": {"hidden": false, "alpha": 1, "clipsToBounds": false},
    "UILabel": {"runs": [], "numberOfLines": 1, "truncated": false, "accessibilityTraits": ["staticText"]},
    "UIImageView": {"contentMode": "scaleToFill", "tintColor": "#007affff", "accessibilityTraits": ["image"]},
    "UIButton": {"selected": false, "enabled": true, "runs": [], "contentInsets": [0, 0, 0, 0],
        "titleInsets": [0, 0, 0, 0], "tintColor": "#007affff", "accessibilityTraits": ["button"]},
    "UIStackView": {"axis": "horizontal", "spacing": 0, "distribution": "fill", "stackAlignment": "fill",
        "isLayoutMarginsRelativeArrangement": false, "layoutMargins": [8, 8, 8, 8]},
    "UICollectionView": {"clipsToBounds": true, "minimumLineSpacing": 10, "minimumInteritemSpacing": 10,
        "sectionInset": [0, 0, 0, 0]},
    "UIActivityIndicatorView": {"animating": false},
    "run": {"italic": false, "lineSpacing": 0, "alignment": "natural"},
    "image": {"template": false}
})");

/// The classes of the kit that state what another class does.
std::map<std::string, std::string> const bases{
    {"PremiumButton", "UIButton"}, {"PremiumV2Button", "UIButton"}, {"PaddingLabel", "UILabel"}};

Json defaultsOf(std::string const& kind) { return defaults.value(kind, Json::object()); }

std::string valueText(Json const& value);

bool isWordPart(unsigned char c) { return std::isalnum(c) || c == '_' || c == '[' || c == ']'; }

/// A string as a word where nothing else looks like it, or in quotes.
std::string wordText(std::string const& text) {
    bool const isColor = text.size() == 9 && text[0] == '#';
    bool const isWord = !text.empty() && (isColor || std::isalpha(static_cast<unsigned char>(text[0]))) &&
                        std::all_of(text.begin() + 1, text.end(), isWordPart);
    if (!isWord || text == "true" || text == "false" || text == "null") return toText(text);
    return isColor && text.ends_with("ff") ? text.substr(0, 7) : text;
}

/// The facts that differ from `expected`, each with a blank before it.
std::string factsText(Json const& facts, Json const& expected, std::vector<std::string> const& told = {}) {
    std::string text;
    auto const isTold = [&](std::string const& key) { return std::ranges::count(told, key) > 0; };
    for (auto const& [key, value] : facts.items()) {
        if (isTold(key) || (expected.contains(key) && expected[key] == value)) continue;
        text += " " + key + (value == true ? "" : "=" + valueText(value));
    }
    for (auto const& [key, value] : expected.items())
        if (!facts.contains(key)) text += " -" + key;
    return text;
}

std::string listText(Json const& list, std::string (*textOf)(Json const&)) {
    std::string text;
    for (auto const& each : list) text += (text.empty() ? "" : ", ") + textOf(each);
    return text;
}

std::string objectText(Json const& object) {
    auto const text = factsText(object, object.contains("template") ? defaults["image"] : Json::object());
    return "{" + (text.empty() ? text : text.substr(1)) + "}";
}

std::string valueText(Json const& value) {
    if (value.is_string()) return wordText(value);
    if (value.is_array()) return "(" + listText(value, valueText) + ")";
    if (value.is_object()) return objectText(value);
    auto const text = toText(value);
    return text.ends_with(".0") ? text.substr(0, text.size() - 2) : text;
}

std::string runText(Json const& run) {
    return toText(run.at("text")) + " " + valueText(run.at("fontSize")) + "/" +
           valueText(run.at("fontWeight")) + " " + valueText(run.at("color")) +
           factsText(run, defaults["run"], {"text", "fontSize", "fontWeight", "color"});
}

std::string textOf(Json const& runs) {
    std::string text;
    for (auto const& run : runs) text += run.at("text").get<std::string>();
    return text;
}

Json expectedOf(Json const& view) {
    std::string const kind = view.at("class");
    auto expected = defaultsOf("UIView");
    expected.update(defaultsOf(bases.contains(kind) ? bases.at(kind) : kind));
    if (view.contains("runs")) expected["text"] = textOf(view["runs"]);
    if (auto const text = view.value("text", ""); !text.empty()) expected["accessibilityLabel"] = text;
    return expected;
}

std::string headText(Json const& view) {
    std::string const name = view.at("name");
    auto const text = wordText(view.at("class")) + (name.empty() ? "" : " " + wordText(name)) + " " +
                      valueText(view.at("frame"));
    auto const runs = view.value("runs", Json::array());
    return runs.empty() ? text : text + " [" + listText(runs, runText) + "]";
}

void addLines(std::string& lines, Json const& view, std::size_t depth) {
    lines += std::string(2 * depth, ' ') + headText(view) +
             factsText(view, expectedOf(view), {"class", "name", "frame", "runs", "subviews"}) + "\n";
    for (auto const& subview : view.at("subviews")) addLines(lines, subview, depth + 1);
}

} // namespace

std::string layoutLines(Json const& description) {
    std::string lines;
    addLines(lines, description, 0);
    return lines;
}

} // namespace trelundo::paywall::test

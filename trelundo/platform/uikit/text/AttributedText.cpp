#include "trelundo/platform/uikit/text/AttributedText.h"

#include "trelundo/platform/graphics/text/TextLayout.h"

namespace trelundo {

namespace {

namespace Key = NSAttributedStringKey;

std::optional<CGColor> colorOf(TextAttributes const& attributes, AttributeKey<UIColor> key,
                               UITraitCollection const& traits) {
    auto const color = attributes.get(key);
    return color ? std::optional{color->cgColor(traits)} : std::nullopt;
}

TextRun textRun(NSAttributedString::Run const& run, TextDefaults const& defaults,
                UITraitCollection const& traits) {
    auto const& attributes = run.attributes;
    return {.text = run.text,
            .font = attributes.get(Key::font).value_or(defaults.font).spec(),
            .color = attributes.get(Key::foregroundColor).value_or(defaults.color).cgColor(traits),
            .background = colorOf(attributes, Key::backgroundColor, traits),
            .kern = attributes.get(Key::kern),
            .underline = attributes.get(Key::underlineStyle).value_or(NSUnderlineStyle::none),
            .underlineColor = colorOf(attributes, Key::underlineColor, traits),
            .strikethrough = attributes.get(Key::strikethroughStyle).value_or(NSUnderlineStyle::none),
            .strikethroughColor = colorOf(attributes, Key::strikethroughColor, traits),
            .baselineOffset = attributes.get(Key::baselineOffset).value_or(0),
            .paragraph = attributes.get(Key::paragraphStyle).value_or(defaults.paragraph)};
}

} // namespace

std::vector<TextRun> textRuns(NSAttributedString const& text, TextDefaults const& defaults,
                              UITraitCollection const& traits) {
    std::vector<TextRun> runs;
    runs.reserve(text.runs().size());
    for (auto const& run : text.runs()) runs.push_back(textRun(run, defaults, traits));
    return runs;
}

CGRect boundingRect(NSAttributedString const& text, CGSize size) {
    TextDefaults const defaults{.font = UIFont::system(12)};
    if (text.empty()) return {0, 0, 0, defaults.font.lineHeight()};
    return {{}, TextLayout{textRuns(text, defaults), {.width = size.width}}.size()};
}

} // namespace trelundo

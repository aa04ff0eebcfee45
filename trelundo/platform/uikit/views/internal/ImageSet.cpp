#include "trelundo/platform/uikit/views/internal/ImageSet.h"

#include "trelundo/platform/foundation/internal/JsonValue.h"

#include <algorithm>
#include <array>
#include <optional>
#include <tuple>

namespace trelundo {

namespace {

using Kind = JsonValue::Kind;

// Keys by which a slot says that it is not for everybody.
constexpr std::array<std::string_view, 7> conditions{
    "appearances", "graphics-feature-set", "height-class", "language-direction", "memory",
    "subtype",     "width-class"};

bool isConditional(JsonValue const& slot) {
    auto const gamut = slot.string("display-gamut");
    return std::ranges::any_of(conditions, [&](auto const key) { return slot.find(key) != nullptr; }) ||
           (!gamut.empty() && gamut != "sRGB");
}

std::optional<UIUserInterfaceIdiom> idiomOf(JsonValue const& slot) {
    auto const idiom = slot.string("idiom");
    if (idiom.empty() || idiom == "universal") return UIUserInterfaceIdiom::unspecified;
    if (idiom == "iphone") return UIUserInterfaceIdiom::phone;
    if (idiom == "ipad") return UIUserInterfaceIdiom::pad;
    return std::nullopt;
}

std::optional<int> scaleOf(JsonValue const& slot) {
    auto const scale = slot.string("scale");
    if (scale.empty()) return 0;
    if (scale.size() == 2 && scale[0] >= '1' && scale[0] <= '3' && scale[1] == 'x') return scale[0] - '0';
    return std::nullopt;
}

/// None for a slot without a file and for one that is not for our devices.
std::optional<ImageSet::Slot> slotIn(JsonValue const& value) {
    auto const idiom = idiomOf(value);
    auto const scale = scaleOf(value);
    auto const file = value.string("filename");
    if (file.empty() || !idiom || !scale || isConditional(value)) return std::nullopt;
    return ImageSet::Slot{std::string{file}, *idiom, *scale};
}

UIImageRenderingMode renderingModeIn(JsonValue const* properties) {
    auto const intent = properties ? properties->string("template-rendering-intent") : std::string_view{};
    if (intent == "original") return UIImageRenderingMode::alwaysOriginal;
    if (intent == "template") return UIImageRenderingMode::alwaysTemplate;
    return UIImageRenderingMode::automatic;
}

} // namespace

Result<ImageSet> ImageSet::parse(std::string_view text, std::string const& file) {
    auto const json = JsonValue::parse(text, file);
    if (!json) return json.error();
    auto const* images = json->find("images");
    if (!images || !images->is(Kind::array)) return Error{file + ": \"images\" is no list"};
    ImageSet set;
    for (auto const& value : images->elements)
        if (auto slot = slotIn(value)) set.slots_.push_back(std::move(*slot));
    set.renderingMode_ = renderingModeIn(json->find("properties"));
    return set;
}

ImageSet::Slot const* ImageSet::best(UIUserInterfaceIdiom idiom, int scale) const {
    auto const rank = [&](Slot const& slot) {
        return std::tuple{slot.idiom == idiom, slot.scale == scale, slot.scale == 0, slot.scale};
    };
    Slot const* best = nullptr;
    for (auto const& slot : slots_) {
        if (slot.idiom != idiom && slot.idiom != UIUserInterfaceIdiom::unspecified) continue;
        if (!best || rank(slot) > rank(*best)) best = &slot;
    }
    return best;
}

} // namespace trelundo

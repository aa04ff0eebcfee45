#include "trelundo/platform/uikit/text/UIFont.h"

#include "trelundo/platform/uikit/text/UIFontDescriptor.h"

#include <cmath>

namespace trelundo {

namespace {

struct NamedWeight {
    UIFont::Weight weight;
    int hundreds;
};
constexpr NamedWeight namedWeights[] = {
    {UIFont::Weight::ultraLight, 100}, {UIFont::Weight::thin, 200},   {UIFont::Weight::light, 300},
    {UIFont::Weight::regular, 400},    {UIFont::Weight::medium, 500}, {UIFont::Weight::semibold, 600},
    {UIFont::Weight::bold, 700},       {UIFont::Weight::heavy, 800},  {UIFont::Weight::black, 900},
};

} // namespace

int UIFont::Weight::hundreds() const {
    auto const* nearest = &namedWeights[3];
    for (auto const& named : namedWeights)
        if (std::abs(named.weight.value - value) < std::abs(nearest->weight.value - value)) nearest = &named;
    return nearest->hundreds;
}

UIFont::UIFont(double size, Weight weight, bool italic)
    : size_(size > 0 ? size : 1)
    , weight_(weight)
    , isItalic_(italic) {}

UIFont UIFont::system(double size) { return {size, Weight::regular, false}; }
UIFont UIFont::system(double size, Weight weight) { return {size, weight, false}; }
UIFont UIFont::boldSystem(double size) { return {size, Weight::bold, false}; }
UIFont UIFont::italicSystem(double size) { return {size, Weight::regular, true}; }

UIFont UIFont::withDescriptor(UIFontDescriptor const& descriptor, double size) {
    return {size == 0 ? descriptor.pointSize() : size, descriptor.weight(), descriptor.isItalic()};
}

UIFont UIFont::withSize(double size) const { return {size, weight_, isItalic_}; }
UIFontDescriptor UIFont::fontDescriptor() const { return {size_, weight_, isItalic_}; }

} // namespace trelundo

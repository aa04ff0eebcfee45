#include "trelundo/platform/graphics/text/internal/FontFile.h"

#include <fontconfig/fontconfig.h>

#include <algorithm>
#include <memory>
#include <tuple>

namespace trelundo {

namespace {

template <auto destroy> struct Destroyer {
    template <class T> void operator()(T* object) const { destroy(object); }
};
using Pattern = std::unique_ptr<FcPattern, Destroyer<FcPatternDestroy>>;
using ObjectSet = std::unique_ptr<FcObjectSet, Destroyer<FcObjectSetDestroy>>;
using FontSet = std::unique_ptr<FcFontSet, Destroyer<FcFontSetDestroy>>;
using CharSet = std::unique_ptr<FcCharSet, Destroyer<FcCharSetDestroy>>;

FcChar8 const* bytes(char const* text) { return reinterpret_cast<FcChar8 const*>(text); }

int number(FcPattern* pattern, char const* object, int otherwise) {
    int value = otherwise;
    return FcPatternGetInteger(pattern, object, 0, &value) == FcResultMatch ? value : otherwise;
}

/// The file of a static face; nothing for variable fonts and later faces of a collection.
std::optional<FontFile> describe(FcPattern* pattern) {
    FcChar8* path = nullptr;
    if (FcPatternGetString(pattern, FC_FILE, 0, &path) != FcResultMatch) return std::nullopt;
    if (number(pattern, FC_INDEX, 0) != 0) return std::nullopt;
    FcBool variable = FcFalse;
    FcPatternGetBool(pattern, FC_VARIABLE, 0, &variable);
    if (variable) return std::nullopt;
    return FontFile{.path = reinterpret_cast<char const*>(path),
                    .weight = FcWeightToOpenType(number(pattern, FC_WEIGHT, FC_WEIGHT_REGULAR)),
                    .isItalic = number(pattern, FC_SLANT, FC_SLANT_ROMAN) != FC_SLANT_ROMAN,
                    .width = number(pattern, FC_WIDTH, FC_WIDTH_NORMAL)};
}

} // namespace

std::vector<FontFile> findFontFamily(std::string const& family) {
    Pattern const pattern(FcPatternCreate());
    FcPatternAddString(pattern.get(), FC_FAMILY, bytes(family.c_str()));
    ObjectSet const objects(
        FcObjectSetBuild(FC_FILE, FC_INDEX, FC_WEIGHT, FC_SLANT, FC_WIDTH, FC_VARIABLE, nullptr));
    FontSet const found(FcFontList(nullptr, pattern.get(), objects.get()));
    std::vector<FontFile> files;
    for (int i = 0; found && i < found->nfont; ++i)
        if (auto file = describe(found->fonts[i])) files.push_back(std::move(*file));
    // The configuration lists files in the order of their folders, which differs between machines.
    std::ranges::sort(files, {}, [](FontFile const& file) {
        return std::tie(file.weight, file.isItalic, file.width, file.path);
    });
    return files;
}

std::optional<FontFile> readFontFile(std::string const& path) {
    int faces = 0;
    Pattern const pattern(FcFreeTypeQuery(bytes(path.c_str()), 0, nullptr, &faces));
    return pattern ? describe(pattern.get()) : std::nullopt;
}

std::optional<FontFile> findFontFile(char32_t character, int weight) {
    CharSet const characters(FcCharSetCreate());
    FcCharSetAddChar(characters.get(), static_cast<FcChar32>(character));
    Pattern const pattern(FcPatternCreate());
    FcPatternAddString(pattern.get(), FC_FAMILY, bytes("sans-serif"));
    FcPatternAddCharSet(pattern.get(), FC_CHARSET, characters.get());
    FcPatternAddBool(pattern.get(), FC_SCALABLE, FcTrue);
    FcPatternAddInteger(pattern.get(), FC_WEIGHT, FcWeightFromOpenType(weight));
    FcPatternAddInteger(pattern.get(), FC_WIDTH, FC_WIDTH_NORMAL);
    FcPatternAddInteger(pattern.get(), FC_SLANT, FC_SLANT_ROMAN);
    FcPatternAddString(pattern.get(), FC_LANG, bytes("en"));
    FcConfigSubstitute(nullptr, pattern.get(), FcMatchPattern);
    FcDefaultSubstitute(pattern.get());
    FcResult result = FcResultNoMatch;
    Pattern const match(FcFontMatch(nullptr, pattern.get(), &result));
    return match ? describe(match.get()) : std::nullopt;
}

} // namespace trelundo

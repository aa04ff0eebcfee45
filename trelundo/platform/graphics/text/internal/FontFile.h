#pragma once

#include <optional>
#include <string>
#include <vector>

namespace trelundo {

/// A font file known to the font configuration. Only first faces of collections are used.
struct FontFile {
    std::string path;
    int weight; // 100 to 900
    bool isItalic;
    int width; // percent of the usual; less is condensed
};

/// All upright and italic faces of a family in a fixed order; empty when it is not installed.
std::vector<FontFile> findFontFamily(std::string const& family);

/// What a file says of its first face; nothing when it is no font of one weight.
std::optional<FontFile> readFontFile(std::string const& path);

/// The best upright sans-serif file of the usual width that has `character`.
std::optional<FontFile> findFontFile(char32_t character, int weight);

} // namespace trelundo

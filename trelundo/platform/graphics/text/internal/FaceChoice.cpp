#include "trelundo/platform/graphics/text/internal/FaceChoice.h"

#include "trelundo/platform/graphics/text/internal/FontLibrary.h"

#include <unicode/uscript.h>
#include <unicode/utf16.h>

#include <algorithm>
#include <cstddef>
#include <iterator>
#include <span>
#include <string_view>
#include <vector>

namespace trelundo {

namespace {

using Clusters = std::span<std::u16string_view const>;

/// The writing that a letter belongs to. Kana and Chinese characters are mixed in every Japanese word.
UScriptCode scriptOf(std::u16string_view letter) {
    UChar32 character = 0;
    U16_GET(letter, 0, 0, letter.size(), character);
    UErrorCode status = U_ZERO_ERROR;
    auto const script = uscript_getScript(character, &status);
    return script == USCRIPT_HIRAGANA || script == USCRIPT_KATAKANA ? USCRIPT_HAN : script;
}

/// Letters of one script and what stands between them; what several scripts share goes with the run before
/// it.
std::size_t runLength(Clusters clusters) {
    auto script = USCRIPT_COMMON;
    std::size_t length = 0;
    for (; length < clusters.size(); ++length) {
        if (isShared(clusters[length])) continue;
        auto const own = scriptOf(clusters[length]);
        if (script != USCRIPT_COMMON && own != script) break;
        script = own;
    }
    return length;
}

/// The one face of a run's letters; null when it has no letters or no single face has them all.
FontFace* faceOfRun(Clusters run, FontFace& preferred) {
    std::vector<std::u16string_view> letters;
    std::ranges::remove_copy_if(run, std::back_inserter(letters), isShared);
    if (letters.empty()) return nullptr;
    if (std::ranges::all_of(letters, [&](auto letter) { return covers(preferred, letter); }))
        return &preferred;
    return FontLibrary::shared().faceForLetters(letters, preferred);
}

FontFace& faceOf(std::u16string_view cluster, FontFace& preferred, FontFace* ofRun) {
    auto& library = FontLibrary::shared();
    if (auto* const emoji = library.emojiFace(cluster)) return *emoji;
    if (ofRun && !isShared(cluster)) return *ofRun;
    if (covers(preferred, cluster)) return preferred;
    if (ofRun && covers(*ofRun, cluster)) return *ofRun;
    auto* const face = library.faceFor(cluster, preferred);
    return face ? *face : preferred;
}

} // namespace

std::vector<FontFace*> chooseFaces(Clusters clusters, FontFace& preferred) {
    std::vector<FontFace*> faces;
    faces.reserve(clusters.size());
    while (!clusters.empty()) {
        auto const run = clusters.first(runLength(clusters));
        auto* const ofRun = faceOfRun(run, preferred);
        for (auto const cluster : run) faces.push_back(&faceOf(cluster, preferred, ofRun));
        clusters = clusters.subspan(run.size());
    }
    return faces;
}

} // namespace trelundo

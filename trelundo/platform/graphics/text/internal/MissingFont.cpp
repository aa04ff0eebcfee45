#include "trelundo/platform/graphics/text/internal/MissingFont.h"

#include "trelundo/platform/foundation/Log.h"

#include <unicode/uchar.h>
#include <unicode/uscript.h>

#include <set>
#include <string>

namespace trelundo {

namespace {

struct Advice {
    std::string letters;
    std::string package;
};

Advice adviceFor(UScriptCode script) {
    switch (script) {
    case USCRIPT_COMMON:
    case USCRIPT_INHERITED:
    case USCRIPT_UNKNOWN:
        return {};
    case USCRIPT_HAN:
    case USCRIPT_HIRAGANA:
    case USCRIPT_KATAKANA:
    case USCRIPT_HANGUL:
    case USCRIPT_BOPOMOFO:
        return {"Chinese, Japanese and Korean", "fonts-noto-cjk"};
    default:
        return {uscript_getName(script), "fonts-noto-core"};
    }
}

Advice adviceFor(char32_t character) {
    auto const c = static_cast<UChar32>(character);
    if (u_hasBinaryProperty(c, UCHAR_EMOJI_PRESENTATION)) return {"emoji", "fonts-noto-color-emoji"};
    UErrorCode status = U_ZERO_ERROR;
    return adviceFor(uscript_getScript(c, &status));
}

} // namespace

void logMissingFont(char32_t character) {
    static std::set<std::string> told;
    auto const advice = adviceFor(character);
    if (advice.letters.empty() || !told.insert(advice.letters).second) return;
    logWarning("No font for " + advice.letters + "; install the package " + advice.package + ".");
}

} // namespace trelundo

#include "trelundo/platform/graphics/text/internal/FontLibrary.h"

#include "trelundo/platform/foundation/Log.h"
#include "trelundo/platform/graphics/internal/GraphicsSystem.h"
#include "trelundo/platform/graphics/text/SystemFont.h"
#include "trelundo/platform/graphics/text/internal/FontFile.h"
#include "trelundo/platform/graphics/text/internal/MissingFont.h"

#include <QFile>

#include <unicode/uchar.h>
#include <unicode/uscript.h>
#include <unicode/utf16.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdlib>
#include <utility>

namespace trelundo {

namespace {

constexpr auto emojiFamily = "Noto Color Emoji";
constexpr auto japaneseFamily = "Noto Sans CJK JP";
constexpr char32_t emojiSelector = 0xfe0f;
constexpr char32_t textSelector = 0xfe0e;
// Shown for characters that no font has, whichever comes first in the face.
constexpr std::u16string_view missingSigns = u"\ufffd\u25a1?";

template <class Visit> void forEachCharacter(std::u16string_view text, Visit visit) {
    for (std::size_t i = 0; i < text.size();) {
        UChar32 character = 0;
        U16_NEXT(text, i, text.size(), character);
        visit(static_cast<char32_t>(character));
    }
}

void appendCharacter(std::u16string& text, char32_t character) {
    std::array<char16_t, 2> units{};
    std::size_t count = 0;
    U16_APPEND_UNSAFE(units, count, static_cast<UChar32>(character));
    text.append(units.data(), count);
}

/// What every font may lack: characters that show nothing by themselves.
bool isInvisible(char32_t character) {
    auto const c = static_cast<UChar32>(character);
    return character < 0x20 || u_hasBinaryProperty(c, UCHAR_DEFAULT_IGNORABLE_CODE_POINT);
}

/// Maps the face's file, which the font refers to from then on.
void open(FontFace& face) {
    face.mapping = std::make_shared<QFile>(QString::fromStdString(face.file));
    if (!face.mapping->open(QIODevice::ReadOnly)) return;
    auto const size = face.mapping->size();
    if (auto const* bytes = face.mapping->map(0, size))
        face.reference.loadFromData(QByteArray::fromRawData(reinterpret_cast<char const*>(bytes), size),
                                    FontLibrary::referenceSize, QFont::PreferNoHinting);
}

QRawFont const& opened(FontFace& face) {
    if (!std::exchange(face.isOpen, true) && !face.file.empty()) open(face);
    return face.reference;
}

bool isEastAsian(char32_t character, UScriptCode script) {
    switch (script) {
    case USCRIPT_HAN:
    case USCRIPT_HIRAGANA:
    case USCRIPT_KATAKANA:
    case USCRIPT_HANGUL:
    case USCRIPT_BOPOMOFO:
        return true;
    default:
        return (character >= 0x3000 && character < 0x3400) || (character >= 0xff00 && character < 0xffe0);
    }
}

/// The script of `character`; for what several share, the first of those that it is known in, if any is told.
UScriptCode scriptOf(char32_t character) {
    UErrorCode status = U_ZERO_ERROR;
    std::array<UScriptCode, 32> scripts{USCRIPT_COMMON};
    uscript_getScriptExtensions(static_cast<UChar32>(character), scripts.data(),
                                static_cast<int32_t>(scripts.size()), &status);
    return scripts.front();
}

/// The family that the script of `character` is set in; empty when only coverage can tell.
std::string familyForScript(char32_t character) {
    auto const script = scriptOf(character);
    if (isEastAsian(character, script)) return japaneseFamily;
    if (script == USCRIPT_COMMON || script == USCRIPT_INHERITED || script == USCRIPT_UNKNOWN) return {};
    std::string name = uscript_getName(script);
    std::ranges::replace(name, '_', ' ');
    if (name == "Latin" || name == "Greek" || name == "Cyrillic") return "Noto Sans";
    return "Noto Sans " + name;
}

char16_t missingSign(QRawFont const& font) {
    auto const sign =
        std::ranges::find_if(missingSigns, [&](char16_t s) { return font.supportsCharacter(uint{s}); });
    return sign == missingSigns.end() ? u' ' : *sign;
}

char32_t firstCharacter(std::u16string_view cluster) {
    char32_t first = 0;
    forEachCharacter(cluster, [&](char32_t character) {
        if (first == 0) first = character;
    });
    return first;
}

} // namespace

bool covers(FontFace& face, std::u16string_view cluster) {
    auto const& font = opened(face);
    if (!font.isValid()) return false;
    bool all = true;
    forEachCharacter(cluster, [&](char32_t character) {
        all = all && (isInvisible(character) || font.supportsCharacter(static_cast<uint>(character)));
    });
    return all;
}

bool isShared(std::u16string_view cluster) {
    UErrorCode status = U_ZERO_ERROR;
    auto const script = uscript_getScript(static_cast<UChar32>(firstCharacter(cluster)), &status);
    return script == USCRIPT_COMMON || script == USCRIPT_INHERITED;
}

bool isEmoji(std::u16string_view cluster) {
    auto const first = firstCharacter(cluster);
    if (first < 0x80) return cluster.find(char16_t{0x20e3}) != std::u16string_view::npos; // a keycap
    auto const c = static_cast<UChar32>(first);
    if (!u_hasBinaryProperty(c, UCHAR_EMOJI)) return false;
    bool emoji = u_hasBinaryProperty(c, UCHAR_EMOJI_PRESENTATION);
    forEachCharacter(cluster, [&](char32_t character) {
        if (character == emojiSelector || (character >= 0x1f3fb && character <= 0x1f3ff)) emoji = true;
        if (character == textSelector) emoji = false;
    });
    return emoji;
}

void appendShapeable(FontFace& face, std::u16string_view cluster, std::u16string& text) {
    auto const& font = opened(face);
    forEachCharacter(cluster, [&](char32_t character) {
        // The face is chosen by now, and the shaping engine would tear sequences apart at a selector.
        if (character == emojiSelector || character == textSelector) return;
        if (font.isValid() && font.supportsCharacter(static_cast<uint>(character)))
            appendCharacter(text, character);
        else if (!isInvisible(character))
            text += missingSign(font);
    });
}

Result<void> setSystemFontFiles(std::vector<std::string> const& paths) {
    startGraphics();
    return FontLibrary::shared().setSystemFiles(paths);
}

FontLibrary& FontLibrary::shared() {
    // Never destroyed: fonts must not outlive or be outlived by the application object.
    static auto& library = *new FontLibrary();
    return library;
}

FontLibrary::FontLibrary() {
    chooseSystemFamily();
    displayFamily_ = systemFamily_ + " Display";
    if (family(displayFamily_).empty()) displayFamily_ = systemFamily_;
    for (auto const& name : {systemFamily_, displayFamily_})
        for (auto& face : families_[name]) face.isSystem = true;
    if (systemFamily_ != "Inter")
        logWarning("The system font Inter is missing; install the package fonts-inter. Using " +
                   systemFamily_ + ".");
}

void FontLibrary::chooseSystemFamily() {
    for (auto const* name : {"Inter", "Noto Sans", "DejaVu Sans"}) {
        if (family(name).empty()) continue;
        systemFamily_ = name;
        return;
    }
    systemFamily_ = "any";
    if (auto file = findFontFile(U'a', 400)) families_[systemFamily_].push_back({.file = file->path});
}

Result<void> FontLibrary::setSystemFiles(std::vector<std::string> const& files) {
    std::string name = "files:";
    Family faces;
    for (auto const& file : files) {
        auto const found = readFontFile(file);
        if (!found) return Error{file + ": not a font of one weight"};
        name += '\n' + file;
        faces.push_back(
            {.file = file, .weight = found->weight, .isItalic = found->isItalic, .width = found->width});
    }
    if (faces.empty()) return Error{"a system font without a file"};
    // A family that has been used stays where it is: texts refer to its faces.
    families_.try_emplace(name, std::move(faces));
    systemFamily_ = displayFamily_ = name;
    return {};
}

FontLibrary::Family& FontLibrary::family(std::string const& name) {
    auto const [entry, isNew] = families_.try_emplace(name);
    if (!isNew) return entry->second;
    for (auto const& file : findFontFamily(name)) {
        FontFace face{.file = file.path,
                      .weight = file.weight,
                      .isItalic = file.isItalic,
                      .width = file.width,
                      .isEmoji = name == emojiFamily};
        // Kana kern only in proportional setting, which nobody asked for.
        face.isEastAsian = name == japaneseFamily;
        face.kernsByItself = !face.isEastAsian;
        entry->second.push_back(std::move(face));
    }
    return entry->second;
}

FontFace* FontLibrary::closest(Family& family, int weight, bool italic) {
    constexpr int usualWidth = 100;
    // Of two as near the lighter: it can be thickened.
    auto const distance = [&](FontFace const& face) {
        return std::tuple(std::abs(face.width - usualWidth), face.isItalic != italic,
                          std::abs(face.weight - weight), face.weight);
    };
    auto const best = std::ranges::min_element(family, {}, distance);
    return best == family.end() ? nullptr : &*best;
}

FontFace& FontLibrary::systemFace(int weight, bool italic, double size) {
    auto const& name = size < displaySize ? systemFamily_ : displayFamily_;
    auto* const face = closest(families_[name], weight, italic);
    return face ? *face : missing_;
}

FontFace* FontLibrary::faceOfFamily(std::string const& name, FontFace const& like) {
    return closest(family(name), like.weight, like.isItalic);
}

FontFace* FontLibrary::emojiFace(std::u16string_view cluster) {
    if (!isEmoji(cluster)) return nullptr;
    auto* const face = closest(family(emojiFamily), 400, false);
    return face && covers(*face, cluster) ? face : nullptr;
}

FontFace* FontLibrary::faceForLetters(std::span<std::u16string_view const> letters, FontFace const& like) {
    auto const hasAll = [&](FontFace& face) {
        return std::ranges::all_of(letters, [&](auto letter) { return covers(face, letter); });
    };
    for (auto const& name : {familyForScript(firstCharacter(letters.front())), std::string{"Noto Sans"},
                             std::string{"Noto Sans Symbols"}, std::string{"Noto Sans Symbols2"},
                             std::string{"Noto Sans Math"}, std::string{japaneseFamily}}) {
        auto* const face = name.empty() ? nullptr : faceOfFamily(name, like);
        if (face && hasAll(*face)) return face;
    }
    return nullptr;
}

FontFace* FontLibrary::faceFor(std::u16string_view cluster, FontFace const& like) {
    auto const character = firstCharacter(cluster);
    auto const key = std::tuple(character, like.weight, like.isItalic);
    if (auto const known = byCharacter_.find(key); known != byCharacter_.end()) return known->second;
    auto* face = faceForLetters({&cluster, 1}, like);
    if (!face) face = faceInAnyFile(character, like);
    if (!face) logMissingFont(character);
    if (cluster.size() <= 2) byCharacter_[key] = face;
    return face;
}

FontFace* FontLibrary::faceInAnyFile(char32_t character, FontFace const& like) {
    auto const file = findFontFile(character, like.weight);
    if (!file) return nullptr;
    auto& others = families_["file:" + file->path];
    if (others.empty()) others.push_back({.file = file->path, .weight = file->weight});
    std::u16string text;
    appendCharacter(text, character);
    return covers(others.front(), text) ? &others.front() : nullptr;
}

QRawFont FontLibrary::fontFor(FontFace& face, double size) {
    if (size == referenceSize) return opened(face);
    // Far more sizes than any screen shows; animations of the size must not pile them up.
    constexpr std::size_t most = 128;
    if (sized_.size() >= most) sized_.clear();
    auto const [entry, isNew] = sized_.try_emplace({&face, size});
    if (isNew) {
        entry->second = opened(face);
        if (entry->second.isValid()) entry->second.setPixelSize(size);
    }
    return entry->second;
}

} // namespace trelundo

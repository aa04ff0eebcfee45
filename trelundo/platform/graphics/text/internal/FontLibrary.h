#pragma once

#include "trelundo/platform/foundation/Result.h"

#include <QByteArray>
#include <QRawFont>

#include <map>
#include <memory>
#include <span>
#include <string>
#include <string_view>
#include <tuple>
#include <utility>
#include <vector>

class QFile;

namespace trelundo {

/// One font file, opened when first needed and never closed.
struct FontFace {
    std::string file;
    int weight = 400; // 100 to 900
    bool isItalic = false;
    int width = 100;           // percent of the usual
    bool isSystem = false;     // of the system family, which has tracking
    bool isEmoji = false;      // pictures, which have no weight
    bool isEastAsian = false;  // its characters fill squares that reach below the baseline
    bool kernsByItself = true; // false: the font's kerning spoils running text
    bool isOpen = false;
    std::shared_ptr<QFile> mapping{};
    QRawFont reference{}; // at referenceSize; invalid when the file cannot be read
};

/// The faces that text is set in: the system family and, for what it lacks, fall-back families by script.
/// Files are found through the font configuration and mapped, not read, so a face costs what is used of it.
class FontLibrary {
public:
    /// Pixels an em at which faces are shaped. Glyph positions scale from here to every size.
    static constexpr double referenceSize = 256;
    /// Points from which the system family changes its design.
    static constexpr double displaySize = 20;

    static FontLibrary& shared();

    /// Makes `files` the system family, without tracking and without a display design. What has been set in
    /// another face stays.
    Result<void> setSystemFiles(std::vector<std::string> const& files);
    /// The system family's face closest in weight. From displaySize points on it is of the family's display
    /// design, which is drawn and spaced for headlines.
    FontFace& systemFace(int weight, bool italic, double size);
    /// The colour face of an emoji; null for other characters, and where it is missing.
    FontFace* emojiFace(std::u16string_view cluster);
    /// The fall-back face, as near to `like` as there is, that has all of `letters`, which are of one script;
    /// null when none has. A family is asked for its weight, slant and width anew each time, so all letters
    /// of a run come from one file.
    FontFace* faceForLetters(std::span<std::u16string_view const> letters, FontFace const& like);
    /// The fall-back face for a single user-perceived character; null when no font has it.
    FontFace* faceFor(std::u16string_view cluster, FontFace const& like);
    /// `face` at a size in points.
    QRawFont fontFor(FontFace& face, double size);

private:
    using Family = std::vector<FontFace>;

    FontLibrary();
    void chooseSystemFamily();
    Family& family(std::string const& name);
    static FontFace* closest(Family& family, int weight, bool italic);
    FontFace* faceOfFamily(std::string const& name, FontFace const& like);
    FontFace* faceInAnyFile(char32_t character, FontFace const& like);

    std::map<std::string, Family> families_;
    std::string systemFamily_;
    std::string displayFamily_; // the system family where it has no display design
    std::map<std::pair<FontFace const*, double>, QRawFont> sized_;
    std::map<std::tuple<char32_t, int, bool>, FontFace*> byCharacter_; // by weight and slant
    FontFace missing_;                                                 // no font at all
};

/// Whether `face` has every character of `cluster` that shows something.
bool covers(FontFace& face, std::u16string_view cluster);

/// Punctuation, digits and marks that several scripts share.
bool isShared(std::u16string_view cluster);

/// Appends what of `cluster` can be shaped with `face`: unseen characters that the face lacks are left out,
/// others become the sign for a missing character. The shaping engine would go looking for fonts of its own.
void appendShapeable(FontFace& face, std::u16string_view cluster, std::u16string& text);

/// Whether `cluster` is shown as a colour emoji.
bool isEmoji(std::u16string_view cluster);

} // namespace trelundo

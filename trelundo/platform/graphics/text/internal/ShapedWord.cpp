#include "trelundo/platform/graphics/text/internal/ShapedWord.h"

#include <QFont>
#include <QGlyphRun>
#include <QTextLayout>
#include <QTextOption>

#include <algorithm>
#include <cmath>
#include <functional>
#include <unordered_map>

namespace trelundo {

namespace {

// Wider than any word at the reference size, yet within the fixed-point numbers of the shaping engine.
constexpr double unlimitedWidth = 8e6;

struct PlacedGlyph {
    std::uint32_t index;
    QPointF place; // ems
};

class WordShaping {
public:
    WordShaping(WordToShape const& word, std::vector<int> const& ends);
    ShapedWord result() &&;

private:
    void layOut();
    void collectGlyphs();
    void findEdges();
    bool isOneToOne() const { return !word_.isRightToLeft && glyphs_.size() == ends_.size(); }
    std::size_t characterAt(double x) const;
    void assign();

    WordToShape const& word_;
    std::vector<int> const& ends_;
    QTextLayout layout_;
    QTextLine line_;
    std::vector<PlacedGlyph> glyphs_;
    std::vector<std::pair<double, double>> edges_; // left and right of each character, ems
    ShapedWord shaped_;
};

WordShaping::WordShaping(WordToShape const& word, std::vector<int> const& ends)
    : word_(word)
    , ends_(ends) {
    if (!FontLibrary::shared().fontFor(*word.face, FontLibrary::referenceSize).isValid()) {
        shaped_.characters.assign(ends.size(), {});
        return;
    }
    layOut();
    collectGlyphs();
    findEdges();
    assign();
}

ShapedWord WordShaping::result() && { return std::move(shaped_); }

void WordShaping::layOut() {
    layout_.setRawFont(FontLibrary::shared().fontFor(*word_.face, FontLibrary::referenceSize));
    layout_.setText(QString::fromUtf16(word_.text.data(), static_cast<qsizetype>(word_.text.size())));
    QTextOption option;
    option.setWrapMode(QTextOption::NoWrap);
    option.setTextDirection(word_.isRightToLeft ? Qt::RightToLeft : Qt::LeftToRight);
    layout_.setTextOption(option);
    if (!word_.usesKerning || !word_.face->kernsByItself) {
        QFont font;
        font.setKerning(false);
        QTextCharFormat format;
        format.setFont(font);
        layout_.setFormats({{0, static_cast<int>(word_.text.size()), format}});
    }
    layout_.beginLayout();
    line_ = layout_.createLine();
    line_.setLineWidth(unlimitedWidth);
    layout_.endLayout();
}

void WordShaping::collectGlyphs() {
    for (auto const& run : line_.glyphRuns()) {
        auto const indexes = run.glyphIndexes();
        auto const positions = run.positions();
        for (qsizetype i = 0; i < indexes.size(); ++i) {
            auto const place = QPointF(positions[i].x(), positions[i].y() - line_.ascent());
            glyphs_.push_back({indexes[i], place / FontLibrary::referenceSize});
        }
    }
}

void WordShaping::findEdges() {
    if (isOneToOne()) {
        // Asking for each cursor position costs far more than shaping does.
        for (std::size_t i = 0; i + 1 < glyphs_.size(); ++i)
            edges_.emplace_back(glyphs_[i].place.x(), glyphs_[i + 1].place.x());
        edges_.emplace_back(glyphs_.back().place.x(),
                            line_.cursorToX(ends_.back()) / FontLibrary::referenceSize);
        return;
    }
    auto from = line_.cursorToX(0);
    for (auto const end : ends_) {
        auto const to = line_.cursorToX(end);
        edges_.emplace_back(std::min(from, to) / FontLibrary::referenceSize,
                            std::max(from, to) / FontLibrary::referenceSize);
        from = to;
    }
}

std::size_t WordShaping::characterAt(double x) const {
    std::size_t nearest = 0;
    auto least = 1e9;
    for (std::size_t i = 0; i < edges_.size(); ++i) {
        if (x >= edges_[i].first && x < edges_[i].second) return i;
        auto const distance = std::min(std::abs(x - edges_[i].first), std::abs(x - edges_[i].second));
        // A character without width takes no glyph from its neighbour.
        if (edges_[i].second > edges_[i].first && distance < least) {
            least = distance;
            nearest = i;
        }
    }
    return nearest;
}

/// Gives each glyph to its character, by order where that is plain and else by place.
void WordShaping::assign() {
    std::vector<std::vector<PlacedGlyph>> owned(ends_.size());
    for (std::size_t i = 0; i < glyphs_.size() && !owned.empty(); ++i)
        owned[isOneToOne() ? i : characterAt(glyphs_[i].place.x())].push_back(glyphs_[i]);
    for (std::size_t i = 0; i < owned.size(); ++i) {
        auto const left = edges_[i].first;
        shaped_.characters.push_back({edges_[i].second - left, shaped_.glyphs.size(), owned[i].size()});
        for (auto const& glyph : owned[i])
            shaped_.glyphs.push_back({glyph.index, glyph.place.x() - left, glyph.place.y()});
    }
}

struct WordHash {
    std::size_t operator()(WordToShape const& word) const {
        auto const flags = (word.usesKerning ? 1U : 0U) + (word.isRightToLeft ? 2U : 0U);
        return std::hash<std::u16string>{}(word.text) ^ (std::hash<void*>{}(word.face) * 31 + flags);
    }
};

struct WordEqual {
    bool operator()(WordToShape const& a, WordToShape const& b) const {
        return a.face == b.face && a.usesKerning == b.usesKerning && a.isRightToLeft == b.isRightToLeft &&
               a.text == b.text;
    }
};

} // namespace

std::shared_ptr<ShapedWord const> shapeWord(WordToShape const& word, std::vector<int> const& ends) {
    // Screens share their words; past this many the texts have changed so much that old ones do not come
    // back.
    constexpr std::size_t most = 8192;
    using Words = std::unordered_map<WordToShape, std::shared_ptr<ShapedWord const>, WordHash, WordEqual>;
    static auto& words = *new Words;
    auto const known = words.find(word);
    // The text around a word may divide its characters differently.
    if (known != words.end() && known->second->characters.size() == ends.size()) return known->second;
    if (words.size() >= most) words.clear();
    auto shaped = std::make_shared<ShapedWord const>(WordShaping(word, ends).result());
    words.insert_or_assign(word, shaped);
    return shaped;
}

} // namespace trelundo

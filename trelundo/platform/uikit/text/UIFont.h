#pragma once

#include "trelundo/platform/graphics/text/TextStyle.h"

namespace trelundo {

class UIFontDescriptor;

/// A face of the system family at a size in points. A value; equal when size, weight and slant are.
class UIFont {
public:
    struct Weight {
        double value;
        bool operator==(Weight const&) const = default;
        /// 100 to 900, the nearest named weight.
        int hundreds() const;
        static Weight const ultraLight, thin, light, regular, medium, semibold, bold, heavy, black;
    };

    // A size of 0 or less, or NaN, gives a font of 1 point.
    static UIFont system(double size);
    static UIFont system(double size, Weight weight);
    static UIFont boldSystem(double size);
    static UIFont italicSystem(double size);
    /// The face that `descriptor` describes; with size 0 at the descriptor's own size.
    static UIFont withDescriptor(UIFontDescriptor const& descriptor, double size);

    double pointSize() const { return size_; }
    Weight weight() const { return weight_; }
    bool isItalic() const { return isItalic_; }
    double ascender() const { return spec().ascender(); }
    double descender() const { return spec().descender(); }
    double lineHeight() const { return spec().lineHeight(); }
    double leading() const { return 0; }
    double capHeight() const { return spec().capHeight(); }
    double xHeight() const { return spec().xHeight(); }
    UIFont withSize(double size) const;
    UIFontDescriptor fontDescriptor() const;
    FontSpec spec() const { return {size_, weight_.hundreds(), isItalic_}; }

    bool operator==(UIFont const&) const = default;

private:
    UIFont(double size, Weight weight, bool italic);

    double size_;
    Weight weight_;
    bool isItalic_;
};

inline constexpr UIFont::Weight UIFont::Weight::ultraLight{-0.8};
inline constexpr UIFont::Weight UIFont::Weight::thin{-0.6};
inline constexpr UIFont::Weight UIFont::Weight::light{-0.4};
inline constexpr UIFont::Weight UIFont::Weight::regular{0};
inline constexpr UIFont::Weight UIFont::Weight::medium{0.23};
inline constexpr UIFont::Weight UIFont::Weight::semibold{0.3};
inline constexpr UIFont::Weight UIFont::Weight::bold{0.4};
inline constexpr UIFont::Weight UIFont::Weight::heavy{0.56};
inline constexpr UIFont::Weight UIFont::Weight::black{0.62};

} // namespace trelundo

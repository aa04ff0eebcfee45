#pragma once

#include "trelundo/platform/uikit/layout/NSLayoutConstraint.h"

namespace trelundo {

LayoutRule makeRule(Ref<NSObject> const& item, NSLayoutAttribute attribute, NSLayoutRelation relation,
                    Ref<NSObject> const& other, NSLayoutAttribute otherAttribute, double multiplier,
                    double constant);

/// One attribute of a view or guide, with an offset or factor. Typed by axis, so that what makes no sense
/// does not compile: only anchors of the same kind combine.
template <class Kind> class NSLayoutAnchor {
public:
    NSLayoutAnchor(Ref<NSObject> ofItem, NSLayoutAttribute ofAttribute)
        : item(std::move(ofItem))
        , attribute(ofAttribute) {}

    Ref<NSObject> item;
    NSLayoutAttribute attribute;
    double multiplier = 1;
    double constant = 0; // points

    friend Kind operator+(Kind anchor, double points) {
        anchor.constant += points;
        return anchor;
    }
    friend Kind operator-(Kind anchor, double points) { return std::move(anchor) + -points; }
    friend LayoutRule operator==(Kind const& a, Kind const& b) {
        return relate(a, NSLayoutRelation::equal, b);
    }
    friend LayoutRule operator>=(Kind const& a, Kind const& b) {
        return relate(a, NSLayoutRelation::greaterThanOrEqual, b);
    }
    friend LayoutRule operator<=(Kind const& a, Kind const& b) {
        return relate(a, NSLayoutRelation::lessThanOrEqual, b);
    }

private:
    static LayoutRule relate(Kind const& a, NSLayoutRelation relation, Kind const& b) {
        return makeRule(a.item, a.attribute, relation, b.item, b.attribute, b.multiplier / a.multiplier,
                        (b.constant - a.constant) / a.multiplier);
    }
};

class NSLayoutXAxisAnchor : public NSLayoutAnchor<NSLayoutXAxisAnchor> {
public:
    using NSLayoutAnchor::NSLayoutAnchor;
};

class NSLayoutYAxisAnchor : public NSLayoutAnchor<NSLayoutYAxisAnchor> {
public:
    using NSLayoutAnchor::NSLayoutAnchor;
};

class NSLayoutDimension : public NSLayoutAnchor<NSLayoutDimension> {
public:
    using NSLayoutAnchor::NSLayoutAnchor;
    friend NSLayoutDimension operator*(NSLayoutDimension dimension, double factor) {
        dimension.multiplier *= factor;
        dimension.constant *= factor;
        return dimension;
    }
    friend LayoutRule operator==(NSLayoutDimension const& a, double points) {
        return a.compare(NSLayoutRelation::equal, points);
    }
    friend LayoutRule operator>=(NSLayoutDimension const& a, double points) {
        return a.compare(NSLayoutRelation::greaterThanOrEqual, points);
    }
    friend LayoutRule operator<=(NSLayoutDimension const& a, double points) {
        return a.compare(NSLayoutRelation::lessThanOrEqual, points);
    }

private:
    LayoutRule compare(NSLayoutRelation relation, double points) const {
        return makeRule(item, attribute, relation, nullptr, NSLayoutAttribute::notAnAttribute, 1,
                        (points - constant) / multiplier);
    }
};

} // namespace trelundo

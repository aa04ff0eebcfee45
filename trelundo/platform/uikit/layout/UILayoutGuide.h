#pragma once

#include "trelundo/platform/graphics/Geometry.h"
#include "trelundo/platform/uikit/Forward.h"
#include "trelundo/platform/uikit/layout/LayoutItem.h"
#include "trelundo/platform/uikit/layout/NSLayoutAnchor.h"

namespace trelundo {

/// A rectangle with anchors and no view. Belongs to the view it was added to.
class UILayoutGuide : public NSObject, public LayoutItem {
public:
    explicit UILayoutGuide(std::string identifier = {})
        : identifier_(std::move(identifier)) {}

    UIView* owningView() const { return owningView_; }
    std::string const& identifier() const { return identifier_; }
    /// In the owning view's coordinates, as last solved.
    CGRect layoutFrame() const;

    UIView* layoutView() override { return owningView_; }
    UILayoutGuide* layoutGuide() override { return this; }
    std::string layoutName() const override;

    NSLayoutXAxisAnchor leadingAnchor() { return {strong<NSObject>(*this), NSLayoutAttribute::leading}; }
    NSLayoutXAxisAnchor trailingAnchor() { return {strong<NSObject>(*this), NSLayoutAttribute::trailing}; }
    NSLayoutXAxisAnchor leftAnchor() { return {strong<NSObject>(*this), NSLayoutAttribute::left}; }
    NSLayoutXAxisAnchor rightAnchor() { return {strong<NSObject>(*this), NSLayoutAttribute::right}; }
    NSLayoutXAxisAnchor centerXAnchor() { return {strong<NSObject>(*this), NSLayoutAttribute::centerX}; }
    NSLayoutYAxisAnchor topAnchor() { return {strong<NSObject>(*this), NSLayoutAttribute::top}; }
    NSLayoutYAxisAnchor bottomAnchor() { return {strong<NSObject>(*this), NSLayoutAttribute::bottom}; }
    NSLayoutYAxisAnchor centerYAnchor() { return {strong<NSObject>(*this), NSLayoutAttribute::centerY}; }
    NSLayoutDimension widthAnchor() { return {strong<NSObject>(*this), NSLayoutAttribute::width}; }
    NSLayoutDimension heightAnchor() { return {strong<NSObject>(*this), NSLayoutAttribute::height}; }

private:
    friend class UIView;
    friend class FittingScope;
    friend class LayoutEngine;
    friend class LayoutNode;

    std::string identifier_;
    /// What the rectangle follows: constraints, or the insets of the owning view.
    enum class Kind { constrained, safeArea, layoutMargins };

    Kind kind_ = Kind::constrained;
    UIView* owningView_ = nullptr;
    CGRect layoutFrame_;
    int layoutSlot_ = -1; // its box in the layout engine; -1: none
};

} // namespace trelundo

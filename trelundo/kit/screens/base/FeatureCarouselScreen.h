#pragma once

#include "trelundo/kit/screens/base/BaseViewController.h"
#include "trelundo/kit/screens/base/FeatureCarousel.h"

#include <concepts>

namespace trelundo {

/// A screen of class Base with a strip of features, which drifts while the screen is visible.
template <std::derived_from<BaseViewController> Base> class FeatureCarouselScreen : public Base {
public:
    using Base::Base;

    /// The carousel's tiles; at least one.
    std::vector<Feature> const& features() const { return carousel_->features(); }
    void setFeatures(std::vector<Feature> features) { carousel_->setFeatures(std::move(features)); }

    void viewWillAppear(bool animated) override {
        Base::viewWillAppear(animated);
        carousel_->start();
    }
    void viewDidDisappear(bool animated) override {
        Base::viewDidDisappear(animated);
        carousel_->stop();
    }

protected:
    FeatureCarousel& carousel() const { return *carousel_; }

private:
    Ref<FeatureCarousel> const carousel_ = make<FeatureCarousel>();
};

} // namespace trelundo

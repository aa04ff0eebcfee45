#pragma once

#include "trelundo/platform/foundation/Ref.h"

#include <string>
#include <string_view>
#include <vector>

namespace trelundo {

/// A view built on first use. The name of the property becomes the view's accessibility identifier, by which
/// scripts and descriptions find it.
template <class T> class Lazy {
public:
    explicit constexpr Lazy(std::string_view name)
        : name_(name) {}

    /// The view, made by `build` (returning a Ref<T>) on the first call.
    template <class Build> Ref<T> const& operator()(Build&& build) {
        if (!object_) {
            object_ = build();
            object_->setAccessibilityIdentifier(std::string{name_});
        }
        return object_;
    }

private:
    std::string_view name_;
    Ref<T> object_;
};

/// A list of views built on first use; element i is named `name[i]`.
template <class T> class LazyList {
public:
    explicit constexpr LazyList(std::string_view name)
        : name_(name) {}

    /// The views, made by `build` (returning a vector of Ref<T>) on the first call.
    template <class Build> std::vector<Ref<T>> const& operator()(Build&& build) {
        if (!isBuilt_) {
            objects_ = build();
            isBuilt_ = true;
            for (std::size_t i = 0; i < objects_.size(); ++i)
                objects_[i]->setAccessibilityIdentifier(std::string{name_} + '[' + std::to_string(i) + ']');
        }
        return objects_;
    }

private:
    std::string_view name_;
    bool isBuilt_ = false;
    std::vector<Ref<T>> objects_;
};

/// Gives a view made at once the name of its property.
template <class T> Ref<T> named(std::string_view name, Ref<T> view) {
    view->setAccessibilityIdentifier(std::string{name});
    return view;
}

} // namespace trelundo

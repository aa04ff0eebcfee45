#pragma once

// Version 14 of the formatter takes requires clauses apart.
// clang-format off

#include "trelundo/platform/foundation/Ref.h"

namespace trelundo {

/// Refers to an object without owning it: null once the object is destroyed. T may be a protocol, a plain
/// abstract class that the object implements beside NSObject.
template <class T> class Weak {
public:
    Weak() = default;
    // NOLINTBEGIN(google-explicit-constructor): references convert as pointers do.
    Weak(std::nullptr_t) {}
    Weak(Weak const& other) noexcept : object_(other.object_), link_(other.link_) { retain(); }
    Weak(Weak&& other) noexcept
        : object_(std::exchange(other.object_, nullptr)), link_(std::exchange(other.link_, nullptr)) {}

    template <class U>
        requires std::convertible_to<U*, T*>
    Weak(U* object) noexcept : object_(object), link_(object ? object->objectLink() : nullptr) {
        retain();
    }

    template <class U>
        requires std::convertible_to<U*, T*>
    Weak(Ref<U> const& ref) noexcept : object_(ref.object_), link_(ref.link_) {
        retain();
    }

    template <class U>
        requires std::convertible_to<U*, T*>
    Weak(Weak<U> const& other) noexcept : object_(other.object_), link_(other.link_) {
        retain();
    }
    // NOLINTEND(google-explicit-constructor)

    ~Weak() {
        if (link_) link_->releaseWeakly();
    }

    Weak& operator=(Weak other) noexcept {
        std::swap(object_, other.object_);
        std::swap(link_, other.link_);
        return *this;
    }

    /// The object for as long as the result lives; null when it is gone.
    Ref<T> lock() const noexcept {
        if (!link_ || !link_->retainIfAlive()) return nullptr;
        return Ref<T>::adopt(object_, link_);
    }

    /// Whether there is nothing to lock any more; a lock may still fail right after this said no.
    bool isExpired() const noexcept { return !link_ || !link_->isAlive(); }

    /// Whether both refer to the same object, alive or not.
    template <class U> bool refersToSame(Weak<U> const& other) const noexcept { return link_ == other.link_; }
    bool refersTo(NSObject const& object) const noexcept { return link_ == object.objectLink(); }

private:
    template <class U> friend class Weak;

    void retain() const noexcept {
        if (link_) link_->retainWeakly();
    }

    T* object_ = nullptr;
    detail::ObjectLink* link_ = nullptr;
};

} // namespace trelundo

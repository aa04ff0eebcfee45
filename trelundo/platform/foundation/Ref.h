#pragma once

// Version 14 of the formatter takes requires clauses apart.
// clang-format off

#include "trelundo/platform/foundation/NSObject.h" // IWYU pragma: export

#include <concepts>
#include <cstddef>
#include <utility>

namespace trelundo {

template <class T> class Weak;

/// Owns one reference to an object, or none. T may be a class or a protocol, and may be incomplete where a Ref
/// is only stored, copied or destroyed.
template <class T> class Ref {
public:
    Ref() = default;
    // NOLINTBEGIN(google-explicit-constructor): references convert as pointers do.
    Ref(std::nullptr_t) {}
    Ref(Ref const& other) noexcept : object_(other.object_), link_(other.link_) { retain(); }
    Ref(Ref&& other) noexcept
        : object_(std::exchange(other.object_, nullptr)), link_(std::exchange(other.link_, nullptr)) {}

    template <class U>
        requires std::convertible_to<U*, T*>
    Ref(Ref<U> const& other) noexcept : object_(other.object_), link_(other.link_) {
        retain();
    }

    template <class U>
        requires std::convertible_to<U*, T*>
    Ref(Ref<U>&& other) noexcept
        : object_(std::exchange(other.object_, nullptr)), link_(std::exchange(other.link_, nullptr)) {}
    // NOLINTEND(google-explicit-constructor)

    ~Ref() {
        if (link_) link_->release();
    }

    Ref& operator=(Ref other) noexcept {
        std::swap(object_, other.object_);
        std::swap(link_, other.link_);
        return *this;
    }

    T* get() const noexcept { return object_; }
    T* operator->() const noexcept { return object_; }
    T& operator*() const noexcept { return *object_; }
    explicit operator bool() const noexcept { return object_ != nullptr; }

    template <class U> bool operator==(Ref<U> const& other) const noexcept { return link_ == other.link_; }
    bool operator==(std::nullptr_t) const noexcept { return object_ == nullptr; }

    /// Takes over a reference that the caller already holds (an object fresh from `new`).
    static Ref adopt(T* object, detail::ObjectLink* link) noexcept {
        Ref ref;
        ref.object_ = object;
        ref.link_ = link;
        return ref;
    }

private:
    template <class U> friend class Ref;
    template <class U> friend class Weak;

    void retain() const noexcept {
        if (link_) link_->retain();
    }

    T* object_ = nullptr;
    detail::ObjectLink* link_ = nullptr;
};

/// Creates an object and returns the only reference to it.
template <class T, class... Arguments> Ref<T> make(Arguments&&... arguments) {
    T* object = new T(std::forward<Arguments>(arguments)...);
    return Ref<T>::adopt(object, object->objectLink());
}

/// An owning reference to an object at hand, usually `*this`.
template <std::derived_from<NSObject> T> Ref<T> strong(T& object) {
    object.objectLink()->retain();
    return Ref<T>::adopt(&object, object.objectLink());
}

/// The same object seen as another class or protocol; null when it is not one.
template <class To, class From> Ref<To> cast(Ref<From> const& from) {
    auto* target = dynamic_cast<To*>(from.get());
    if (!target) return nullptr;
    auto* link = dynamic_cast<NSObject*>(from.get())->objectLink();
    link->retain();
    return Ref<To>::adopt(target, link);
}

} // namespace trelundo

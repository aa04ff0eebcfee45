#pragma once

#include <atomic>
#include <cstdint>
#include <string>

namespace trelundo {

class NSObject;

namespace detail {

/// The counts of one object. It outlives the object for as long as a weak reference to it exists.
struct ObjectLink {
    explicit ObjectLink(NSObject* owner)
        : object(owner) {}

    void retain() noexcept { strong.fetch_add(1, std::memory_order_relaxed); }
    void release() noexcept;
    bool retainIfAlive() noexcept;
    bool isAlive() const noexcept { return isAlive(strong.load(std::memory_order_acquire)); }
    void retainWeakly() noexcept { weak.fetch_add(1, std::memory_order_relaxed); }
    void releaseWeakly() noexcept;
    /// Called by the destructor, also of an object that was never counted (a failed constructor, automatic
    /// storage).
    void objectIsGoing() noexcept;

    // References taken and dropped inside the destructor count from here, so that they never destroy it
    // again.
    static constexpr std::uint32_t dying = 1U << 31;
    static bool isAlive(std::uint32_t count) noexcept { return count != 0 && count < dying; }

    NSObject* const object;
    std::atomic<std::uint32_t> strong{1}; // the creator's reference, adopted by make()
    std::atomic<std::uint32_t> weak{1};   // all strong references together count as one weak one
};

} // namespace detail

/// Base of every reference-counted class. Objects are created with make<T>() only, owned through Ref<T> and
/// referred to through Weak<T>. A constructor may already hand out `this` weakly or as a target.
class NSObject {
public:
    NSObject(NSObject const&) = delete;
    NSObject& operator=(NSObject const&) = delete;
    virtual ~NSObject();

    /// Identity unless a value class overrides it.
    virtual bool isEqual(NSObject const& other) const { return this == &other; }
    virtual std::string description() const { return className(); }

    /// The bare name of the dynamic type, without its namespace.
    std::string className() const;

    detail::ObjectLink* objectLink() const noexcept { return link_; }

protected:
    NSObject()
        : link_(new detail::ObjectLink(this)) {}

private:
    detail::ObjectLink* link_;
};

} // namespace trelundo

#pragma once

#include <cstddef>
#include <memory>
#include <utility>
#include <vector>

namespace trelundo {

class Clock;

/// `clock`, or the process's for null. Any thread.
Clock& resolvedClock(Clock* clock);

/// What exists once for each shell: its screen, its windows, its time and what moves on it. Code asks for its
/// part of the context that it runs in, so that "the main screen" is that of the shell that called. A block
/// on the main queue runs in the context that submitted it. Main thread only, except where it says otherwise.
class Context : public std::enable_shared_from_this<Context> {
public:
    /// A context of its own time; with null it lives in the process's. `clock` is used until end().
    explicit Context(Clock* clock);
    ~Context();
    Context(Context const&) = delete;
    Context& operator=(Context const&) = delete;

    /// That of the innermost ContextScope; outside of all scopes the one that was chosen last; without any
    /// the process's own.
    static Context& current();
    /// The context that owns what this thread does now; null for the process's own and on other threads. Any
    /// thread.
    static Context* owner();
    /// The time of what this thread does now. Any thread.
    static Clock& currentClock();
    /// The time of `context`; with null that of what belongs to nobody. Any thread.
    static Clock& clockOf(Context const* context);

    /// From now on the current one outside of all scopes.
    void choose();
    /// The shell is gone: what still waits on the main queue is nobody's and keeps the time that is left.
    void end();

    /// This context's `T`, made by `create()` when it is first asked for.
    template <class T, class Create> T& part(Create create) {
        auto const number = slot<T>();
        if (!placeOf(number)) {
            auto made = std::shared_ptr<T>(create()); // which may ask for other parts
            placeOf(number) = std::move(made);
        }
        return *static_cast<T*>(placeOf(number).get());
    }
    template <class T> T& part() {
        return part<T>([] { return new T; });
    }

private:
    static Context& process();
    template <class T> static std::size_t slot() {
        static std::size_t const number = slots_++;
        return number;
    }
    std::shared_ptr<void>& placeOf(std::size_t slot);

    static inline std::size_t slots_ = 0;
    Clock* clock_;
    bool isNobodys_ = false; // no shell's: the process's own, or one that has ended
    std::vector<std::shared_ptr<void>> parts_;
};

/// Makes a context current for its own lifetime; scopes nest. It keeps the context alive.
class ContextScope {
public:
    /// Null changes nothing.
    explicit ContextScope(Context* context);
    ~ContextScope();
    ContextScope(ContextScope const&) = delete;
    ContextScope& operator=(ContextScope const&) = delete;

private:
    std::shared_ptr<Context> context_;
    Context* previous_;
};

} // namespace trelundo

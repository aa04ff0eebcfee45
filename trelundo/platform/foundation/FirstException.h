#pragma once

#include <exception>
#include <utility>

namespace trelundo {

/// Lets every step of a sequence run although a host's code throws in one of them. Call rethrow() when all
/// have run: what an exception leaves behind is then as without it.
class FirstException {
public:
    template <class Step> void run(Step&& step) {
        try {
            std::forward<Step>(step)();
        } catch (...) {
            if (!first_) first_ = std::current_exception();
        }
    }
    /// Passes on the first exception of the steps; does nothing when there was none.
    void rethrow() {
        if (first_) std::rethrow_exception(std::exchange(first_, nullptr));
    }

private:
    std::exception_ptr first_;
};

} // namespace trelundo

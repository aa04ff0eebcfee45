#pragma once

#include "trelundo/platform/foundation/FatalError.h"
#include "trelundo/platform/foundation/Result.h"

#include <new>
#include <type_traits>
#include <utility>

namespace trelundo {

inline constexpr auto noMemory = "no memory left"; // short enough to need none

/// What `work` gives; ends the program with a message when it runs out of memory. For operations that cannot
/// fail.
template <class Work> std::invoke_result_t<Work> requireMemory(Work&& work) {
    try {
        return std::forward<Work>(work)();
    } catch (std::bad_alloc const&) {
        fatalError(noMemory);
    }
}

/// What `work`, which gives a Result, gives; an error when it runs out of memory.
template <class Work> std::invoke_result_t<Work> failWithoutMemory(Work&& work) {
    try {
        return std::forward<Work>(work)();
    } catch (std::bad_alloc const&) {
        return Error{noMemory};
    }
}

} // namespace trelundo

#pragma once

#include "trelundo/platform/foundation/Result.h"

#include <string>
#include <type_traits>

namespace trelundo::paywall {

/// Exit statuses of the tool.
inline constexpr int statusOk = 0;
inline constexpr int statusFailure =
    1; // a failing input: no such file, not a catalogue, an expectation not met
inline constexpr int statusUsage = 2; // an unknown command, option, screen, device, language or script step

/// Why a command stops: caught in one place, told on standard error. Used within the tool only.
struct Failure {
    int status;
    std::string message;
};

[[noreturn]] inline void failInput(std::string message) { throw Failure{statusFailure, std::move(message)}; }
[[noreturn]] inline void failUsage(std::string message) { throw Failure{statusUsage, std::move(message)}; }

/// What the library gives; its error stops the command as a failing input, told after `prefix`.
template <class T> T valueOrFail(Result<T> result, std::string const& prefix = {}) {
    if (!result) failInput(prefix + result.error().message);
    if constexpr (!std::is_void_v<T>) return *std::move(result);
}

/// Does what `read` does; its failure is told after `subject`, as a matter of usage.
template <class Read> auto readFor(std::string const& subject, Read read) {
    try {
        return read();
    } catch (Failure const& failure) {
        failUsage(subject + ": " + failure.message);
    }
}

} // namespace trelundo::paywall

#pragma once

#include <benchmark/benchmark.h>

#include <chrono>

namespace trelundo::bench {

/// Times `subject` and `baseline` by turns, so that both see the same machine, and reports the subject in
/// microseconds and as a multiple of the baseline.
template <class Subject, class Baseline>
void compare(benchmark::State& state, Subject subject, Baseline baseline) {
    using Clock = std::chrono::steady_clock;
    using Microseconds = std::chrono::duration<double, std::micro>;
    subject();
    baseline();
    Clock::duration subjectTime{};
    Clock::duration baselineTime{};
    for ([[maybe_unused]] auto _ : state) {
        auto const start = Clock::now();
        subject();
        auto const middle = Clock::now();
        baseline();
        subjectTime += middle - start;
        baselineTime += Clock::now() - middle;
        state.SetIterationTime(std::chrono::duration<double>(middle - start).count());
    }
    auto const rounds = static_cast<double>(state.iterations());
    state.counters["us"] = Microseconds{subjectTime}.count() / rounds;
    state.counters["ratio"] = Microseconds{subjectTime}.count() / Microseconds{baselineTime}.count();
}

} // namespace trelundo::bench

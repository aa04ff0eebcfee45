#pragma once

#include "benchmarks/Report.h"

#include <algorithm>
#include <chrono>
#include <vector>

namespace trelundo::bench {

using Clock = std::chrono::steady_clock;

inline double seconds(Clock::duration duration) { return std::chrono::duration<double>(duration).count(); }

/// Seconds of many rounds. The median is what counts: another process at work disturbs it little.
class Samples {
public:
    void add(double value) { values_.push_back(value); }
    double least() const { return *std::ranges::min_element(values_); }
    double median() {
        auto const middle = values_.begin() + static_cast<std::ptrdiff_t>(values_.size() / 2);
        std::ranges::nth_element(values_, middle);
        return *middle;
    }

private:
    std::vector<double> values_;
};

/// Seconds that one call takes.
template <class Work> double timed(Work&& work) {
    auto const start = Clock::now();
    work();
    benchmark::ClobberMemory();
    return seconds(Clock::now() - start);
}

/// Times `subject` alone, after an untimed `prepare` in each round.
template <class Subject, class Prepare>
void measure(benchmark::State& state, Subject subject, Prepare prepare) {
    Samples samples;
    for ([[maybe_unused]] auto _ : state) {
        prepare();
        auto const time = timed(subject);
        samples.add(time);
        state.SetIterationTime(time);
    }
    state.counters[counter::seconds] = samples.median();
}

template <class Subject> void measure(benchmark::State& state, Subject subject) {
    measure(state, subject, [] {});
}

/// Times `subject` and `baseline` by turns, so that both see the same machine, after an untimed `prepare` in
/// each round.
template <class Subject, class Baseline, class Prepare>
void compare(benchmark::State& state, Subject subject, Baseline baseline, Prepare prepare) {
    Samples samples, baselineSamples;
    for ([[maybe_unused]] auto _ : state) {
        prepare();
        auto const time = timed(subject);
        samples.add(time);
        baselineSamples.add(timed(baseline));
        state.SetIterationTime(time);
    }
    state.counters[counter::seconds] = samples.median();
    state.counters[counter::baseline] = baselineSamples.median();
}

template <class Subject, class Baseline>
void compare(benchmark::State& state, Subject subject, Baseline baseline) {
    compare(state, subject, baseline, [] {});
}

} // namespace trelundo::bench

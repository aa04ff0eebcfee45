#pragma once

#include <benchmark/benchmark.h>

#include <functional>
#include <string>
#include <vector>

namespace trelundo::bench {

/// What a benchmark tells the table.
namespace counter {
inline constexpr auto seconds = "seconds";
inline constexpr auto baseline = "baseline";   // seconds of what is compared with
inline constexpr auto megabytes = "megabytes"; // MiB
} // namespace counter

/// What a row should not exceed; the unit says of which of its counters.
struct Aim {
    enum class Unit { times, microseconds, milliseconds, megabytes };
    double limit;
    Unit unit;
};
constexpr Aim times(double limit) { return {limit, Aim::Unit::times}; }
constexpr Aim microseconds(double limit) { return {limit, Aim::Unit::microseconds}; }
constexpr Aim milliseconds(double limit) { return {limit, Aim::Unit::milliseconds}; }
constexpr Aim megabytes(double limit) { return {limit, Aim::Unit::megabytes}; }

/// Adds a row to the table. Rows stand in the order of `order`, rows of one order in the order of their
/// names.
benchmark::internal::Benchmark* addRow(int order, std::string const& name, Aim aim,
                                       std::function<void(benchmark::State&)> run);

/// Prints nothing while the benchmarks run and one table when all are done.
class TableReporter : public benchmark::BenchmarkReporter {
public:
    bool ReportContext(Context const& context) override;
    void ReportRuns(std::vector<Run> const& runs) override;
    void Finalize() override;

private:
    struct Line {
        int order;
        std::string name, measured, ratio, aim, verdict;
    };
    std::vector<Line> lines_;
};

} // namespace trelundo::bench

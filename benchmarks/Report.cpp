#include "benchmarks/Report.h"

#include <algorithm>
#include <fmt/core.h>
#include <map>
#include <tuple>

namespace trelundo::bench {

namespace {

struct Row {
    int order;
    Aim aim;
};

std::map<std::string, Row>& rows() {
    static std::map<std::string, Row> all;
    return all;
}

double counterOf(benchmark::BenchmarkReporter::Run const& run, char const* name) {
    auto const found = run.counters.find(name);
    return found == run.counters.end() ? 0 : found->second.value;
}

std::string timeText(double seconds) {
    if (seconds < 1e-3) return fmt::format("{:.3g} us", seconds * 1e6);
    return fmt::format("{:.3g} ms", seconds * 1e3);
}

std::string aimText(Aim const& aim) {
    static constexpr char const* units[] = {"times", "us", "ms", "MB"}; // as Aim::Unit has them
    return fmt::format("{:g} {}", aim.limit, units[static_cast<int>(aim.unit)]);
}

} // namespace

benchmark::internal::Benchmark* addRow(int order, std::string const& name, Aim aim,
                                       std::function<void(benchmark::State&)> run) {
    rows()[name] = {order, aim};
    return benchmark::RegisterBenchmark(name.c_str(), std::move(run))->UseManualTime();
}

bool TableReporter::ReportContext(Context const& /*context*/) { return true; }

void TableReporter::ReportRuns(std::vector<Run> const& runs) {
    for (auto const& run : runs) {
        auto const& [order, aim] = rows().at(run.run_name.function_name);
        if (run.error_occurred) {
            lines_.push_back({order, run.run_name.function_name, run.error_message, "", aimText(aim), "-"});
            continue;
        }
        auto const time = counterOf(run, counter::seconds);
        auto const baseline = counterOf(run, counter::baseline);
        auto const memory = counterOf(run, counter::megabytes);
        // What has no baseline is a multiple of its aim.
        auto const share = aim.unit == Aim::Unit::times          ? time / baseline
                           : aim.unit == Aim::Unit::microseconds ? time * 1e6 / aim.limit
                           : aim.unit == Aim::Unit::milliseconds ? time * 1e3 / aim.limit
                                                                 : memory / aim.limit;
        auto const most = aim.unit == Aim::Unit::times ? aim.limit : 1;
        lines_.push_back(
            {order, run.run_name.function_name,
             aim.unit == Aim::Unit::megabytes ? fmt::format("{:.1f} MB", memory) : timeText(time),
             fmt::format("{:.2f}", share), aimText(aim), share <= most ? "met" : "MISSED"});
    }
}

void TableReporter::Finalize() {
    std::ranges::stable_sort(lines_, {}, [](Line const& line) { return std::tie(line.order, line.name); });
    for (auto const& line : lines_)
        GetOutputStream() << fmt::format("{:<50} {:>10} {:>6} {:>10}  {}\n", line.name, line.measured,
                                         line.ratio, line.aim, line.verdict);
}

} // namespace trelundo::bench

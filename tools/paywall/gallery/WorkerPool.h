#pragma once

#include "tools/paywall/output/Json.h"

#include <functional>
#include <string>
#include <vector>

namespace trelundo::paywall {

/// Work for a process of its own. `work` calls its argument for every result; a Failure ends it.
struct Job {
    using Report = std::function<void(Json const&)>;
    std::string name;
    std::function<void(Report const&)> work;
};

struct JobListener {
    std::function<void(Json const&)> reported;
    std::function<void(Job const&)> finished;
};

/// Runs the jobs in copies of this process, as many at once as there are cores, and hears their results in
/// this one, which must not have started threads or graphics. What the processes write to standard error is
/// told once, however many of them write it. The first failure throws a Failure after the others at work
/// ended.
void runJobs(std::vector<Job> const& jobs, JobListener const& listener);

} // namespace trelundo::paywall

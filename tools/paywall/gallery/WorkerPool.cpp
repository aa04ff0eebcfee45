#include "tools/paywall/gallery/WorkerPool.h"

#include "tools/paywall/Failure.h"
#include "tools/paywall/system/WorkerProcesses.h"

#include <algorithm>
#include <cstdio>
#include <fmt/core.h>
#include <optional>
#include <set>
#include <thread>

namespace trelundo::paywall {

namespace {

int work(Job const& job, WorkerProcesses::WriteLine const& writeLine) {
    auto const fail = [&](int status, std::string const& reason) {
        writeLine(toText({{"failure", reason}}));
        return status;
    };
    try {
        job.work([&](Json const& report) { writeLine(toText({{"report", report}})); });
        return statusOk;
    } catch (Failure const& failure) {
        return fail(failure.status, failure.message);
    } catch (std::exception const& error) {
        return fail(statusFailure, error.what());
    }
}

class WorkerPool {
public:
    WorkerPool(std::vector<Job> const& jobs, JobListener const& listener)
        : jobs_(jobs)
        , listener_(listener)
        , processes_({.wrote = [this](std::string const& line) { take(line); },
                      .complained = [this](std::string const& line) { tell(line); }}) {}

    void run() {
        auto const cores = std::max(1U, std::thread::hardware_concurrency());
        while (true) {
            while (!failure_ && next_ < jobs_.size() && processes_.count() < cores) startNext();
            if (processes_.count() == 0) break;
            for (auto const& end : processes_.listen()) finish(end);
        }
        if (failure_) throw Failure{*failure_};
    }

private:
    void startNext() {
        auto const& job = jobs_[next_];
        processes_.start(next_++, [&job](auto const& writeLine) { return work(job, writeLine); });
    }

    void finish(WorkerProcesses::End const& end) {
        auto const& job = jobs_.at(end.worker);
        if (end.succeeded)
            listener_.finished(job);
        else
            fail(fmt::format("{}: the process ended with {}", job.name, end.manner));
    }

    void take(std::string const& line) {
        auto const json = Json::parse(line);
        if (json.contains("report"))
            listener_.reported(json.at("report"));
        else
            fail(json.at("failure"));
    }

    void tell(std::string const& line) {
        if (told_.insert(line).second) std::fprintf(stderr, "%s\n", line.c_str());
    }

    /// The first reason counts.
    void fail(std::string reason) {
        if (!failure_) failure_ = Failure{statusFailure, std::move(reason)};
    }

    std::vector<Job> const& jobs_;
    JobListener const& listener_;
    WorkerProcesses processes_;
    std::size_t next_ = 0;
    std::set<std::string> told_;
    std::optional<Failure> failure_;
};

} // namespace

void runJobs(std::vector<Job> const& jobs, JobListener const& listener) { WorkerPool{jobs, listener}.run(); }

} // namespace trelundo::paywall

#include "tools/paywall/gallery/WorkerPool.h"

#include "tools/paywall/Failure.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <cstdio>
#include <cstring>
#include <fmt/format.h>
#include <list>
#include <optional>
#include <poll.h>
#include <set>
#include <sys/wait.h>
#include <thread>
#include <unistd.h>

namespace trelundo::paywall {

namespace {

struct Pipe {
    int readEnd;
    int writeEnd;
};

Pipe makePipe() {
    std::array<int, 2> ends{};
    if (pipe(ends.data()) != 0) failInput(std::string{"no pipe to a worker: "} + std::strerror(errno));
    return {ends[0], ends[1]};
}

void writeLine(int file, Json const& json) {
    auto const line = toText(json) + "\n";
    for (std::size_t written = 0; written < line.size();) {
        auto const count = write(file, line.data() + written, line.size() - written);
        if (count < 0 && errno == EINTR) continue;
        if (count < 0) _exit(statusFailure); // nobody listens any more
        written += static_cast<std::size_t>(count);
    }
}

/// The child's whole life.
[[noreturn]] void work(Job const& job, int reports, int errors) {
    dup2(errors, STDERR_FILENO);
    int status = statusOk;
    try {
        job.work([&](Json const& report) { writeLine(reports, {{"report", report}}); });
    } catch (Failure const& failure) {
        status = failure.status;
        writeLine(reports, {{"failure", failure.message}});
    } catch (std::exception const& error) {
        status = statusFailure;
        writeLine(reports, {{"failure", error.what()}});
    }
    std::fflush(stderr);
    // What the parent left in its buffers is the parent's to write.
    _exit(status);
}

/// The complete lines that arrive at a pipe.
class LineReader {
public:
    explicit LineReader(int file)
        : file_(file) {}
    ~LineReader() { close(file_); }
    LineReader(LineReader const&) = delete;
    LineReader& operator=(LineReader const&) = delete;

    /// -1 once the other side has closed.
    int file() const { return isAtEnd_ ? -1 : file_; }

    template <class Take> void read(Take take) {
        std::array<char, 1 << 14> buffer;
        auto const count = ::read(file_, buffer.data(), buffer.size());
        if (count < 0 && errno == EINTR) return;
        isAtEnd_ = count <= 0;
        if (!isAtEnd_) text_.append(buffer.data(), static_cast<std::size_t>(count));
        for (auto end = text_.find('\n'); end != std::string::npos; end = text_.find('\n')) {
            take(text_.substr(0, end));
            text_.erase(0, end + 1);
        }
    }

private:
    int file_;
    bool isAtEnd_ = false;
    std::string text_;
};

struct Worker {
    Worker(Job const& itsJob, pid_t itsProcess, int reportsFile, int errorsFile)
        : job(itsJob)
        , process(itsProcess)
        , reports(reportsFile)
        , errors(errorsFile) {}

    Job const& job;
    pid_t process;
    LineReader reports;
    LineReader errors;

    bool hasEnded() const { return reports.file() < 0 && errors.file() < 0; }
};

class WorkerPool {
public:
    WorkerPool(std::vector<Job> const& jobs, JobListener const& listener)
        : jobs_(jobs)
        , listener_(listener) {}

    void run() {
        auto const cores = std::max(1U, std::thread::hardware_concurrency());
        while (true) {
            while (!failure_ && next_ < jobs_.size() && workers_.size() < cores) start(jobs_[next_++]);
            if (workers_.empty()) break;
            listen();
            std::erase_if(workers_, [this](Worker& worker) { return reap(worker); });
        }
        if (failure_) throw *failure_;
    }

private:
    void start(Job const& job) {
        auto const reports = makePipe();
        auto const errors = makePipe();
        std::fflush(nullptr);
        auto const process = fork();
        if (process < 0) failInput(std::string{"no process for a worker: "} + std::strerror(errno));
        if (process == 0) {
            // Only this way a worker notices that nobody reads any more.
            for (auto const& other : workers_) {
                close(other.reports.file());
                close(other.errors.file());
            }
            close(reports.readEnd);
            close(errors.readEnd);
            work(job, reports.writeEnd, errors.writeEnd);
        }
        close(reports.writeEnd);
        close(errors.writeEnd);
        workers_.emplace_back(job, process, reports.readEnd, errors.readEnd);
    }

    void listen() {
        std::vector<pollfd> files;
        for (auto const& worker : workers_) {
            files.push_back({worker.reports.file(), POLLIN, 0});
            files.push_back({worker.errors.file(), POLLIN, 0});
        }
        if (poll(files.data(), files.size(), -1) < 0) return;
        auto file = files.begin();
        for (auto& worker : workers_) {
            if ((file++)->revents != 0) worker.reports.read([&](std::string const& line) { take(line); });
            if ((file++)->revents != 0) worker.errors.read([&](std::string const& line) { tell(line); });
        }
    }

    void take(std::string const& line) {
        auto const json = Json::parse(line);
        if (json.contains("report")) return listener_.reported(json.at("report"));
        if (!failure_) failure_ = Failure{statusFailure, json.at("failure")};
    }

    void tell(std::string const& line) {
        if (told_.insert(line).second) std::fprintf(stderr, "%s\n", line.c_str());
    }

    /// Whether the worker has ended and was taken care of.
    bool reap(Worker& worker) {
        if (!worker.hasEnded()) return false;
        int status = 0;
        while (waitpid(worker.process, &status, 0) < 0 && errno == EINTR) {
        }
        if (status == 0)
            listener_.finished(worker.job);
        else if (!failure_)
            failure_ = Failure{statusFailure,
                               fmt::format("{}: the process ended with {} {}", worker.job.name,
                                           WIFSIGNALED(status) ? "signal" : "status",
                                           WIFSIGNALED(status) ? WTERMSIG(status) : WEXITSTATUS(status))};
        return true;
    }

    std::vector<Job> const& jobs_;
    JobListener const& listener_;
    std::size_t next_ = 0;
    std::list<Worker> workers_;
    std::set<std::string> told_;
    std::optional<Failure> failure_;
};

} // namespace

void runJobs(std::vector<Job> const& jobs, JobListener const& listener) { WorkerPool{jobs, listener}.run(); }

} // namespace trelundo::paywall

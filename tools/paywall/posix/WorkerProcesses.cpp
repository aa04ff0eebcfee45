#include "tools/paywall/system/WorkerProcesses.h"

#include "tools/paywall/Failure.h"

#include <array>
#include <cerrno>
#include <cstdio>
#include <cstring>
#include <fmt/core.h>
#include <poll.h>
#include <sys/wait.h>
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

void writeLine(int file, std::string const& text) {
    auto const line = text + "\n";
    for (std::size_t written = 0; written < line.size();) {
        auto const count = write(file, line.data() + written, line.size() - written);
        if (count < 0 && errno == EINTR) continue;
        if (count < 0) _exit(statusFailure); // nobody listens any more
        written += static_cast<std::size_t>(count);
    }
}

/// The copy's whole life.
[[noreturn]] void live(WorkerProcesses::Work const& work, int lines, int errors) {
    dup2(errors, STDERR_FILENO);
    int const status = work([lines](std::string const& line) { writeLine(lines, line); });
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

    void read(WorkerProcesses::WriteLine const& take) {
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

} // namespace

struct WorkerProcesses::Process {
    Process(std::size_t itsWorker, pid_t itsIdentifier, int linesFile, int errorsFile)
        : worker(itsWorker)
        , identifier(itsIdentifier)
        , lines(linesFile)
        , errors(errorsFile) {}

    std::size_t worker;
    pid_t identifier;
    LineReader lines;
    LineReader errors;

    bool hasEnded() const { return lines.file() < 0 && errors.file() < 0; }

    End end() const {
        int status = 0;
        while (waitpid(identifier, &status, 0) < 0 && errno == EINTR) {
        }
        return {worker, status == 0,
                WIFSIGNALED(status) ? fmt::format("signal {}", WTERMSIG(status))
                                    : fmt::format("status {}", WEXITSTATUS(status))};
    }
};

WorkerProcesses::WorkerProcesses(Listener listener)
    : listener_(std::move(listener)) {}

WorkerProcesses::~WorkerProcesses() = default;

std::size_t WorkerProcesses::count() const { return processes_.size(); }

void WorkerProcesses::start(std::size_t worker, Work const& work) {
    auto const lines = makePipe();
    auto const errors = makePipe();
    std::fflush(nullptr);
    auto const identifier = fork();
    if (identifier < 0) failInput(std::string{"no process for a worker: "} + std::strerror(errno));
    if (identifier == 0) {
        leaveToOthers();
        close(lines.readEnd);
        close(errors.readEnd);
        live(work, lines.writeEnd, errors.writeEnd);
    }
    close(lines.writeEnd);
    close(errors.writeEnd);
    processes_.push_back(std::make_unique<Process>(worker, identifier, lines.readEnd, errors.readEnd));
}

/// Only this way a copy notices that nobody reads any more.
void WorkerProcesses::leaveToOthers() const {
    for (auto const& other : processes_) {
        close(other->lines.file());
        close(other->errors.file());
    }
}

std::vector<WorkerProcesses::End> WorkerProcesses::listen() {
    std::vector<pollfd> files;
    for (auto const& process : processes_) {
        files.push_back({process->lines.file(), POLLIN, 0});
        files.push_back({process->errors.file(), POLLIN, 0});
    }
    if (poll(files.data(), files.size(), -1) < 0) return {};
    auto file = files.begin();
    for (auto const& process : processes_) {
        if ((file++)->revents != 0) process->lines.read(listener_.wrote);
        if ((file++)->revents != 0) process->errors.read(listener_.complained);
    }
    std::vector<End> ended;
    std::erase_if(processes_, [&](std::unique_ptr<Process> const& process) {
        if (process->hasEnded()) ended.push_back(process->end());
        return process->hasEnded();
    });
    return ended;
}

} // namespace trelundo::paywall

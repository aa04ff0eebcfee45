#pragma once

#include <cstddef>
#include <functional>
#include <memory>
#include <string>
#include <vector>

namespace trelundo::paywall {

/// Copies of this process that work beside it and are heard line by line. This process must not have started
/// threads or graphics. What the system refuses throws a Failure.
class WorkerProcesses {
public:
    using WriteLine = std::function<void(std::string const& line)>;
    /// What a copy does with its life; the result is its exit status.
    using Work = std::function<int(WriteLine const& writeLine)>;
    struct Listener {
        WriteLine wrote;      // a line given to `writeLine`
        WriteLine complained; // a line on standard error
    };
    struct End {
        std::size_t worker; // as start() was told
        bool succeeded;
        std::string manner; // "status 1", "signal 11"
    };

    explicit WorkerProcesses(Listener listener);
    ~WorkerProcesses();
    WorkerProcesses(WorkerProcesses const&) = delete;
    WorkerProcesses& operator=(WorkerProcesses const&) = delete;

    void start(std::size_t worker, Work const& work);
    /// How many are at work.
    std::size_t count() const;
    /// Waits until one is heard or ends, and gives those that have ended.
    std::vector<End> listen();

private:
    struct Process;
    void leaveToOthers() const;

    Listener listener_;
    std::vector<std::unique_ptr<Process>> processes_;
};

} // namespace trelundo::paywall

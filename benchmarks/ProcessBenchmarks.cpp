#include "benchmarks/Comparison.h"

#include <cstdio>
#include <fcntl.h>
#include <filesystem>
#include <sched.h>
#include <spawn.h>
#include <stdexcept>
#include <sys/wait.h>
#include <unistd.h>

namespace trelundo::bench {
namespace {

/// Keeps this process, and those that it starts, on one core.
class OneCore {
public:
    OneCore() {
        sched_getaffinity(0, sizeof all_, &all_);
        cpu_set_t one;
        CPU_ZERO(&one);
        for (int core = CPU_SETSIZE - 1; core >= 0; --core) {
            if (!CPU_ISSET(core, &all_)) continue;
            CPU_SET(core, &one);
            break;
        }
        sched_setaffinity(0, sizeof one, &one);
    }
    ~OneCore() { sched_setaffinity(0, sizeof all_, &all_); }
    OneCore(OneCore const&) = delete;
    OneCore& operator=(OneCore const&) = delete;

private:
    cpu_set_t all_;
};

/// A started program whose standard output can be read.
class Program {
public:
    explicit Program(std::vector<std::string> words) {
        int ends[2];
        if (pipe2(ends, O_CLOEXEC) != 0) throw std::runtime_error("no pipe");
        posix_spawn_file_actions_t actions;
        posix_spawn_file_actions_init(&actions);
        posix_spawn_file_actions_adddup2(&actions, ends[1], STDOUT_FILENO);
        std::vector<char*> arguments;
        for (auto& word : words) arguments.push_back(word.data());
        arguments.push_back(nullptr);
        auto const result = posix_spawn(&id_, arguments[0], &actions, nullptr, arguments.data(), environ);
        posix_spawn_file_actions_destroy(&actions);
        close(ends[1]);
        output_ = fdopen(ends[0], "r");
        if (result != 0) throw std::runtime_error(words[0] + " does not start");
    }
    ~Program() { std::fclose(output_); }
    Program(Program const&) = delete;
    Program& operator=(Program const&) = delete;

    /// Without its end; empty after the last one.
    std::string line() {
        char text[256] = "";
        std::string const line = std::fgets(text, sizeof text, output_) ? text : "";
        return line.substr(0, line.find('\n'));
    }
    void wait() {
        int status = 0;
        if (waitpid(id_, &status, 0) != id_ || status != 0) throw std::runtime_error("a program failed");
    }

private:
    pid_t id_ = 0;
    std::FILE* output_ = nullptr;
};

/// The least of all rounds: whatever else runs can only lengthen one.
void firstFrame(benchmark::State& state) {
    OneCore const core;
    Samples times, memory;
    for ([[maybe_unused]] auto _ : state) {
        auto const start = Clock::now();
        Program program{{TRELUNDO_FIRST_FRAME_PROGRAM}};
        if (program.line() != "drawn") throw std::runtime_error("no first frame");
        times.add(seconds(Clock::now() - start));
        memory.add(std::stod(program.line()) / 1024);
        program.wait();
        state.SetIterationTime(times.least());
    }
    state.counters[counter::seconds] = times.least();
    state.counters[counter::megabytes] = memory.least();
}

void renderScreen(benchmark::State& state, std::string const& screen) {
    auto const picture =
        std::filesystem::temp_directory_path() / ("bench-" + std::to_string(getpid()) + ".png");
    Samples times;
    for ([[maybe_unused]] auto _ : state) {
        times.add(timed([&] {
            Program{{TRELUNDO_PAYWALL_PROGRAM, "render", screen, "--out", picture}}.wait();
        }));
        state.SetIterationTime(times.least());
    }
    std::filesystem::remove(picture);
    state.counters[counter::seconds] = times.least();
}

std::vector<std::string> screens() {
    Program program{{TRELUNDO_PAYWALL_PROGRAM, "screens"}};
    std::vector<std::string> names;
    for (auto name = program.line(); !name.empty(); name = program.line()) names.push_back(name);
    program.wait();
    return names;
}

[[maybe_unused]] bool const added = [] {
    constexpr int rounds = 15;
    addRow(0, "start to the first finished frame, one core", milliseconds(55), firstFrame)
        ->Iterations(rounds);
    addRow(1, "memory at the first finished frame", megabytes(52), firstFrame)->Iterations(3);
    for (auto const& screen : screens())
        addRow(2, "paywall render " + screen, milliseconds(150), [screen](benchmark::State& state) {
            renderScreen(state, screen);
        })->Iterations(rounds);
    return true;
}();

} // namespace
} // namespace trelundo::bench

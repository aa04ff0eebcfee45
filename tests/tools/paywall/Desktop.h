#pragma once

#include <optional>
#include <string>
#include <sys/types.h>
#include <vector>

namespace trelundo::paywall::test {

/// A program that runs beside the test and tells its state line by line on descriptor 3. Ended with its
/// object at the latest.
class Companion {
public:
    explicit Companion(std::vector<std::string> arguments);
    ~Companion();
    Companion(Companion const&) = delete;
    Companion& operator=(Companion const&) = delete;

    /// Why the program could not be started; empty when it runs.
    std::string const& error() const { return error_; }
    /// Waits for the next line; absent when the program has ended, or when the test takes a minute too long.
    std::optional<std::string> nextLine();
    /// Waits for the program's end and gives its exit status, 128 and the number for a signal. To be called
    /// after the last line.
    int status();

private:
    bool waitForText();

    std::string error_;
    pid_t process_ = -1;
    int reader_ = -1;
    std::string pending_; // read, and not yet given out
};

/// A display without a screen, for one test, and a hand on its mouse and keyboard. Programs that the test
/// starts open their windows there.
class Desktop {
public:
    static constexpr int width = 1280, height = 1024; // pixels

    Desktop();
    /// Why there is no display; empty when there is one.
    std::string const& error() const { return error_; }

    void click(double x, double y) const;
    /// A key by its X name, with modifiers before it: "Return", "ctrl+q".
    void press(std::string const& key) const;
    /// To whole pixels, as if the corner of the window with this title were pulled.
    void resizeWindow(std::string const& title, double toWidth, double toHeight) const;

private:
    Companion server_;
    std::string error_;
};

} // namespace trelundo::paywall::test

#pragma once

#include "trelundo/platform/graphics/Geometry.h"

#include <cstdio>
#include <optional>
#include <string>
#include <sys/types.h>

namespace trelundo::test {

/// A shell command that runs beside the test and is read line by line. Ended with its object at the latest,
/// and two minutes after its start.
class Companion {
public:
    explicit Companion(std::string const& command);
    ~Companion();
    Companion(Companion const&) = delete;
    Companion& operator=(Companion const&) = delete;

    /// Waits for the next line of its standard output; absent when the command has ended.
    std::optional<std::string> nextLine();
    /// Reads on until a line begins with `text`; false when the command has ended before.
    bool awaitLine(std::string const& text);
    /// Waits for the command's end and gives its exit status. To be called after the last line.
    int status();

private:
    FILE* pipe_;
    pid_t process_ = 0;
};

/// A display without a screen, for one test, and a hand on its mouse and keyboard. Programs that the test
/// starts open their windows there.
class Desktop {
public:
    static constexpr int width = 1280, height = 1024; // pixels

    Desktop();
    /// Why there is no display; empty when there is one.
    std::string const& error() const { return error_; }

    /// Where the upper left corner of the window with this title is, in pixels.
    CGPoint originOf(std::string const& title) const;
    void click(double x, double y) const;
    /// At a place in the window with this title.
    void click(std::string const& title, CGPoint place) const;
    /// A key by its X name, with modifiers before it: "Return", "ctrl+q".
    void press(std::string const& key) const;
    /// To whole pixels, as if the corner of the window with this title were pulled.
    void resizeWindow(std::string const& title, double toWidth, double toHeight) const;

private:
    Companion server_;
    std::string error_;
};

} // namespace trelundo::test

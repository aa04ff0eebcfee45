#pragma once

namespace trelundo {

/// A call at the window system that the environment names. It stays connected for as long as it lives: a
/// server may start over when its only visitor leaves, and would then drop the application that is just
/// coming.
class DisplayProbe {
public:
    DisplayProbe();
    ~DisplayProbe();
    DisplayProbe(DisplayProbe const&) = delete;
    DisplayProbe& operator=(DisplayProbe const&) = delete;

    bool answers() const { return answers_; }

private:
    bool answers_ = false;
    int socket_ = -1;
};

} // namespace trelundo

#pragma once

#include <cstddef>
#include <string>

namespace trelundo::paywall {

/// How far a gallery is, on standard output: on a terminal one line that is written over, elsewhere a plain
/// line for each group of pictures.
class GalleryProgress {
public:
    explicit GalleryProgress(std::size_t total);

    void drew(std::string const& group);
    void finished(std::string const& group);
    /// Replaces the line by the outcome.
    void end(std::string const& outcome);

private:
    std::string bar() const;

    std::size_t total_;
    std::size_t drawn_ = 0;
    bool isTerminal_;
};

} // namespace trelundo::paywall

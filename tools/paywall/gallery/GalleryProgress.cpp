#include "tools/paywall/gallery/GalleryProgress.h"

#include "tools/paywall/system/Environment.h"

#include <algorithm>
#include <cstdio>
#include <fmt/core.h>

namespace trelundo::paywall {

namespace {

constexpr std::size_t barWidth = 24; // characters
constexpr std::string_view toLineStart = "\r\x1b[K";

void print(std::string const& text) {
    std::fputs(text.c_str(), stdout);
    std::fflush(stdout);
}

} // namespace

GalleryProgress::GalleryProgress(std::size_t total)
    : total_(total)
    , isTerminal_(isStandardOutputTerminal()) {}

std::string GalleryProgress::bar() const {
    auto const done = barWidth * drawn_ / std::max<std::size_t>(1, total_);
    return std::string(done, '#') + std::string(barWidth - done, '.');
}

void GalleryProgress::drew(std::string const& group) {
    ++drawn_;
    if (isTerminal_) print(fmt::format("{}{} {} of {}, {}", toLineStart, bar(), drawn_, total_, group));
}

void GalleryProgress::finished(std::string const& group) {
    if (!isTerminal_) print(fmt::format("{} of {} drawn: {}\n", drawn_, total_, group));
}

void GalleryProgress::end(std::string const& outcome) {
    print(fmt::format("{}{}\n", isTerminal_ ? toLineStart : "", outcome));
}

} // namespace trelundo::paywall

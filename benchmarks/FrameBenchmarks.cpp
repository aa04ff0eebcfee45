#include "benchmarks/Comparison.h"
#include "benchmarks/StagedScreen.h"
#include "trelundo/platform/coreanimation/internal/Compositor.h"
#include "trelundo/platform/graphics/Surface.h"

#include <cstring>

namespace trelundo::bench {
namespace {

/// Copies as many full rows of a surface.
class RowCopy {
public:
    RowCopy(Surface const& source, int rows)
        : source_(source)
        , target_(static_cast<std::size_t>(rows) * static_cast<std::size_t>(source.bytesPerLine())) {}
    void operator()() {
        std::memcpy(target_.data(), source_.bytes(), target_.size());
        benchmark::DoNotOptimize(target_.data());
    }

private:
    Surface const& source_;
    std::vector<std::uint8_t> target_;
};

/// The measured screen, drawn once into a frame of its own.
struct DrawnScreen {
    DrawnScreen() {
        staged.shell().advance(1);
        render();
    }
    void render() { compositor.render(staged.window().layer(), frame); }

    StagedScreen staged{measuredScreen};
    Surface frame{1170, 2532, 3};
    Compositor compositor;
};

/// A frame whose carousel has moved on, against copying the carousel's band.
void driftingFrame(benchmark::State& state) {
    DrawnScreen screen;
    constexpr int bandRows = 128 * 3;
    RowCopy const copy{screen.frame, bandRows};
    compare(
        state, [&] { screen.render(); }, copy, [&] { screen.staged.shell().advance(1.0 / 60); });
}

/// A whole frame with its pictures kept, against copying the frame.
void fullRepaint(benchmark::State& state) {
    DrawnScreen screen;
    RowCopy const copy{screen.frame, screen.frame.pixelHeight()};
    compare(
        state, [&] { screen.render(); }, copy, [&] { screen.compositor.invalidate(); });
}

[[maybe_unused]] bool const added = [] {
    addRow(10, "a drifting carousel frame / copying its band", times(4), driftingFrame);
    addRow(11, "a full repaint, pictures kept / copying the frame", times(8), fullRepaint);
    return true;
}();

} // namespace
} // namespace trelundo::bench

#pragma once

#include "tests/support/MainThread.h"
#include "tests/support/ScopedState.h"
#include "trelundo/platform/coreanimation/CALayer.h"
#include "trelundo/platform/coreanimation/CATransaction.h"
#include "trelundo/platform/foundation/DispatchQueue.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace trelundo {

/// A shown root layer, virtual time, and a record of completions.
class LayerTest : public testing::Test {
protected:
    LayerTest() {
        root->setDisplayRoot(true);
        root->setBounds({0, 0, 100, 100});
    }
    ~LayerTest() override { test::MainThreadScope::clear(); }

    Ref<CALayer> add(CGRect frame) {
        auto layer = make<CALayer>();
        layer->setFrame(frame);
        root->addSublayer(layer);
        return layer;
    }
    void animate(CATransaction::Settings settings, std::function<void()> const& changes) {
        CATransaction::begin(std::move(settings));
        changes();
        CATransaction::commit();
    }
    /// Writes down when it ends, under `name`.
    void animate(std::string const& name, CATransaction::Settings settings,
                 std::function<void()> const& changes) {
        settings.completion = [this, name](bool finished) {
            ended.push_back(name + (finished ? "" : " cut"));
        };
        animate(std::move(settings), changes);
    }
    /// A frame as shells run it.
    void frame() {
        ++frames;
        time.clock.setNow(frames / 60.0);
        CATransaction::advanceFrame();
        DispatchQueue::main().runReady();
    }
    void frameAt(double seconds) {
        while (time.clock.now() < seconds - 1e-9) frame();
    }

    test::ScopedVirtualClock time;
    int frames = 0;
    Ref<CALayer> root = make<CALayer>();
    std::vector<std::string> ended;
};

} // namespace trelundo

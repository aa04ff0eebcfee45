#pragma once

#include "tests/support/MainThread.h"
#include "tests/support/ScopedState.h"
#include "trelundo/platform/graphics/Surface.h"
#include "trelundo/platform/uikit/accessibility/TextChanges.h"
#include "trelundo/platform/window/OffscreenShell.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace trelundo {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

/// What the witnesses of the running test have written down.
inline std::vector<std::string> journal;

/// A picture of 20 x 10 points, green all over.
inline constexpr std::string_view greenPicture =
    R"(<svg xmlns="http://www.w3.org/2000/svg" viewBox="0 0 20 10" width="20" height="10">)"
    R"(<rect width="20" height="10" fill="#00ff00"/></svg>)";

/// Counts what a control tells it.
class Counter : public NSObject {
public:
    void act() { ++count; }
    int count = 0;
};

/// A small phone at 2 pixels a point with an empty visible window; warnings are kept instead of printed.
class DeviceFixture : public ::testing::Test {
protected:
    DeviceFixture() { journal.clear(); }
    ~DeviceFixture() override {
        setTextChangeListener(nullptr);
        UIScreen::main().setUserInterfaceStyle(UIUserInterfaceStyle::light);
    }

    /// Puts `view` into the window and lays it out.
    template <class T> Ref<T> show(Ref<T> view, CGRect frame) {
        view->setFrame(frame);
        shell.window().addSubview(view);
        shell.window().layoutWindow();
        return view;
    }

    /// Records text changes as "Class: text".
    void recordTexts() {
        setTextChangeListener([this](UIView& view, std::string const& text) {
            texts.push_back(view.className() + ": " + text);
        });
    }

    /// The colour of the pixel at a point of the window, as 0xAARRGGBB.
    std::uint32_t pixelAt(CGPoint point) {
        auto const& surface = shell.render();
        return surface.pixel(static_cast<int>(point.x * surface.scale()),
                             static_cast<int>(point.y * surface.scale()));
    }

    /// Whether anything is drawn there, going by the empty corner of the window.
    bool isInked(CGPoint point) { return pixelAt(point) != pixelAt({319, 567}); }

    test::RecordedWarnings recorded;
    std::vector<std::string>& warnings = recorded.lines;
    std::vector<std::string> texts;
    test::MainThreadScope mainThread;
    OffscreenShell shell{{.device = DeviceProfile::find("phone-320x568")}};
};

} // namespace trelundo

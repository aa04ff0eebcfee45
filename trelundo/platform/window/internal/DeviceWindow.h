#pragma once

#include "trelundo/platform/coreanimation/internal/Compositor.h"
#include "trelundo/platform/graphics/Surface.h"
#include "trelundo/platform/uikit/views/UIScreen.h"
#include "trelundo/platform/uikit/views/UIWindow.h"
#include "trelundo/platform/window/WindowPlacement.h"
#include "trelundo/platform/window/internal/AccessibleTree.h"

#include <QRasterWindow>
#include <QTimer>

#include <atomic>
#include <functional>
#include <memory>

namespace trelundo {

/// The desktop's side of a device window: shows its frames, hands input to it and beats its time. Frames run
/// only while something moves; otherwise the window sleeps until input, a dispatched block or a deadline
/// wakes it.
class DeviceWindow : public QRasterWindow {
public:
    /// `zoom`: desktop points shown for a device point.
    DeviceWindow(Ref<UIWindow> window, DeviceProfile const& device, double zoom);
    ~DeviceWindow() override;

    void setListener(std::function<void(WindowPlacement const&)> listener) {
        listener_ = std::move(listener);
    }
    /// Shows the window and serves the main queue from now on.
    void start();

    QAccessibleInterface* accessibleRoot() const override { return accessible_.root(); }

protected:
    void paintEvent(QPaintEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;
    void exposeEvent(QExposeEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;
    void touchEvent(QTouchEvent* event) override;
    void wheelEvent(QWheelEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;

private:
    void frame();
    /// A main-queue turn after input or a wake-up, then what it changed.
    void turn();
    void present();
    void prepareSurface();
    /// Frames while they are needed, else a single alarm for the next deadline.
    void arm();
    void scheduleFrame();
    void wakeUp();
    void takeSize(QSize size);
    void report(WindowPlacement::Cause cause);
    CGPoint devicePoint(QPointF point) const { return {point.x() / zoom_, point.y() / zoom_}; }

    Ref<UIWindow> window_;
    DeviceProfile device_;
    double zoom_;
    AccessibleTree accessible_;
    Compositor compositor_;
    std::unique_ptr<Surface> surface_;
    QTimer frameTimer_;    // one shot
    QTimer alarm_;         // one shot
    double nextFrame_ = 0; // Clock::now() of the frame that is due or was last
    std::atomic<bool> isWoken_ = false;
    bool isPressed_ = false;
    bool isShown_ = false;
    std::function<void(WindowPlacement const&)> listener_;
};

} // namespace trelundo

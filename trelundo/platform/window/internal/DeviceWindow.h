#pragma once

#include "trelundo/platform/window/EmbeddedShell.h"
#include "trelundo/platform/window/WindowPlacement.h"
#include "trelundo/platform/window/internal/AccessibleTree.h"

#include <QRasterWindow>
#include <QTimer>

#include <functional>
#include <memory>

namespace trelundo {

/// A desktop window around an embedded shell that behaves like a device. Frames run only while something
/// moves; otherwise the window sleeps until input, a dispatched block or a deadline wakes it.
class DeviceWindow : public QRasterWindow {
public:
    /// `zoom`: desktop points shown for a device point.
    DeviceWindow(DeviceProfile const& device, bool landscape, double zoom);
    ~DeviceWindow() override;

    EmbeddedShell& shell() { return shell_; }
    void setListener(std::function<void(WindowPlacement const&)> listener) {
        listener_ = std::move(listener);
    }
    /// Called whenever the window has been closed.
    void setClosedListener(std::function<void()> listener) { closed_ = std::move(listener); }
    /// Shows the window with its first frame.
    void start();

    QAccessibleInterface* accessibleRoot() const override { return accessible_.root(); }

protected:
    void paintEvent(QPaintEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;
    void exposeEvent(QExposeEvent* event) override;
    void closeEvent(QCloseEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;
    void touchEvent(QTouchEvent* event) override;
    void wheelEvent(QWheelEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;

private:
    void frame();
    void wakeUp();
    void takeSize();
    void report(WindowPlacement::Cause cause);
    EmbeddedScreen screenAt(QSizeF size) const;

    DeviceProfile device_;
    double zoom_;
    EmbeddedShell shell_;
    AccessibleTree accessible_;
    QTimer timer_; // of the next frame; one shot
    bool isPressed_ = false;
    bool isShown_ = false;
    std::function<void(WindowPlacement const&)> listener_;
    std::function<void()> closed_;
};

} // namespace trelundo

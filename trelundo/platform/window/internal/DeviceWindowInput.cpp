#include "trelundo/platform/window/internal/DeviceWindow.h"

#include "trelundo/platform/window/internal/WheelScrolling.h"

#include <QGuiApplication>
#include <QKeyEvent>
#include <QMouseEvent>
#include <QTouchEvent>
#include <QWheelEvent>

#include <optional>

namespace trelundo {

namespace {

constexpr int pointerTouch = 0; // the mouse is one finger
constexpr int firstFinger = 1;
constexpr double pointsPerWheelStep = 40; // one notch, an eighth of a degree 120 times
constexpr double wheelStep = 120;

std::optional<UIWindow::Key> windowKey(int key) {
    switch (key) {
    case Qt::Key_Return:
    case Qt::Key_Enter:
        return UIWindow::Key::returnKey;
    case Qt::Key_Escape:
        return UIWindow::Key::escape;
    case Qt::Key_Tab:
        return UIWindow::Key::tab;
    case Qt::Key_Backtab:
        return UIWindow::Key::backtab;
    case Qt::Key_Space:
        return UIWindow::Key::space;
    default:
        return std::nullopt;
    }
}

} // namespace

void DeviceWindow::mousePressEvent(QMouseEvent* event) {
    if (event->button() != Qt::LeftButton || pressed_) return;
    pressed_ = true;
    window_->touchBegan(pointerTouch, devicePoint(event->position()));
    turn();
}

void DeviceWindow::mouseMoveEvent(QMouseEvent* event) {
    if (!pressed_) return;
    window_->touchMoved(pointerTouch, devicePoint(event->position()));
    turn();
}

void DeviceWindow::mouseReleaseEvent(QMouseEvent* event) {
    if (event->button() != Qt::LeftButton || !pressed_) return;
    pressed_ = false;
    window_->touchEnded(pointerTouch, devicePoint(event->position()));
    turn();
}

void DeviceWindow::touchEvent(QTouchEvent* event) {
    // Accepted, so that the desktop does not send the same touch once more as a mouse.
    event->accept();
    for (auto const& point : event->points()) {
        auto const id = firstFinger + point.id();
        auto const location = devicePoint(point.position());
        if (event->type() == QEvent::TouchCancel)
            window_->touchCancelled(id);
        else if (point.state() == QEventPoint::Pressed)
            window_->touchBegan(id, location);
        else if (point.state() == QEventPoint::Updated)
            window_->touchMoved(id, location);
        else if (point.state() == QEventPoint::Released)
            window_->touchEnded(id, location);
    }
    turn();
}

void DeviceWindow::wheelEvent(QWheelEvent* event) {
    auto dx = -event->angleDelta().x() / wheelStep * pointsPerWheelStep;
    auto dy = -event->angleDelta().y() / wheelStep * pointsPerWheelStep;
    if (!event->pixelDelta().isNull()) {
        dx = -event->pixelDelta().x() / zoom_;
        dy = -event->pixelDelta().y() / zoom_;
    }
    if (scrollByWheel(*window_, devicePoint(event->position()), dx, dy)) turn();
}

void DeviceWindow::keyPressEvent(QKeyEvent* event) {
    if (event->matches(QKeySequence::Quit) || event->matches(QKeySequence::Close)) {
        close();
        return;
    }
    auto const key = windowKey(event->key());
    if (!key) return QRasterWindow::keyPressEvent(event);
    // A key that is held down may run through the controls, but presses once.
    bool const movesFocus = key == UIWindow::Key::tab || key == UIWindow::Key::backtab;
    if (event->isAutoRepeat() && !movesFocus) return;
    window_->keyPressed(*key);
    turn();
}

} // namespace trelundo

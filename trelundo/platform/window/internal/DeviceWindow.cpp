#include "trelundo/platform/window/internal/DeviceWindow.h"

#include "trelundo/platform/graphics/internal/SurfacePixels.h"

#include <QGuiApplication>
#include <QKeyEvent>
#include <QMouseEvent>
#include <QPaintEvent>
#include <QPainter>
#include <QTouchEvent>
#include <QWheelEvent>

#include <algorithm>
#include <cmath>
#include <optional>
#include <utility>

namespace trelundo {

namespace {

constexpr double longestAlarm = 3600; // seconds
constexpr double wholeFrame = 0.017;  // seconds; what is at most this far away is the next frame

/// Desktop points around `rect`, which is in pixels.
QRect desktopRect(CGRect const& rect, double ratio) {
    return QRectF(rect.minX() / ratio, rect.minY() / ratio, rect.width() / ratio, rect.height() / ratio)
        .toAlignedRect();
}

/// Frames come on time on average, deadlines never too early.
int milliseconds(double seconds) {
    auto const exact = std::clamp(seconds, 0.0, longestAlarm) * 1000;
    return static_cast<int>(seconds <= wholeFrame ? std::round(exact) : std::ceil(exact));
}

CGPoint hostPoint(QPointF point) { return {point.x(), point.y()}; }

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

DeviceWindow::DeviceWindow(DeviceProfile const& device, bool landscape, double zoom)
    : device_(device)
    , zoom_(zoom)
    , shell_({.screen = screenAt(landscape ? QSizeF(device.points.height * zoom, device.points.width * zoom)
                                           : QSizeF(device.points.width * zoom, device.points.height * zoom)),
              .wakeUp = [this] { wakeUp(); }})
    , accessible_(*this, shell_) {
    auto const size = shell_.screen().size;
    resize(static_cast<int>(std::lround(size.width)), static_cast<int>(std::lround(size.height)));
    setMinimumSize({160, 160});
    timer_.setTimerType(Qt::PreciseTimer);
    timer_.setSingleShot(true);
    QObject::connect(&timer_, &QTimer::timeout, this, [this] { frame(); });
}

DeviceWindow::~DeviceWindow() = default;

void DeviceWindow::start() {
    show();
    // Without a window manager nobody else gives the window the keyboard.
    requestActivate();
    frame();
}

/// Any thread may call.
void DeviceWindow::wakeUp() {
    QMetaObject::invokeMethod(
        this, [this] { frame(); }, Qt::QueuedConnection);
}

void DeviceWindow::frame() {
    if (shell_.screen().scale != devicePixelRatio()) shell_.setScreen(screenAt(size()));
    shell_.setVisible(isExposed());
    shell_.step();
    accessible_.update();
    QRegion changed;
    if (isExposed() && !size().isEmpty())
        for (auto const& rect : shell_.render()) changed += desktopRect(rect, devicePixelRatio());
    if (!changed.isEmpty()) update(changed);
    auto const next = shell_.untilNextFrame();
    std::isfinite(next) ? timer_.start(milliseconds(next)) : timer_.stop();
}

void DeviceWindow::paintEvent(QPaintEvent* event) {
    auto const& image = shell_.pixels().pixels().image;
    QPainter painter(this);
    painter.setCompositionMode(QPainter::CompositionMode_Source);
    auto const ratio = devicePixelRatio();
    for (auto const& rect : event->region()) {
        painter.drawImage(
            QRectF(rect), image,
            QRectF(rect.x() * ratio, rect.y() * ratio, rect.width() * ratio, rect.height() * ratio));
    }
    if (std::exchange(isShown_, true)) return;
    QMetaObject::invokeMethod(
        this, [this] { report(WindowPlacement::Cause::shown); }, Qt::QueuedConnection);
}

void DeviceWindow::exposeEvent(QExposeEvent* event) {
    frame();
    QRasterWindow::exposeEvent(event);
}

void DeviceWindow::resizeEvent(QResizeEvent* event) {
    takeSize();
    QRasterWindow::resizeEvent(event);
}

EmbeddedScreen DeviceWindow::screenAt(QSizeF size) const {
    return {.size = {size.width(), size.height()},
            .scale = devicePixelRatio(),
            .zoom = zoom_,
            .device = &device_};
}

void DeviceWindow::closeEvent(QCloseEvent* event) {
    QRasterWindow::closeEvent(event);
    if (closed_) closed_();
}

void DeviceWindow::takeSize() {
    if (size().isEmpty()) return;
    auto const before = shell_.window().bounds().size;
    shell_.setScreen(screenAt(size()));
    if (shell_.window().bounds().size == before) return;
    frame();
    report(WindowPlacement::Cause::resized);
}

void DeviceWindow::report(WindowPlacement::Cause cause) {
    if (!listener_) return;
    auto const ratio = devicePixelRatio();
    auto const origin = QPointF(mapToGlobal(QPoint(0, 0))) * ratio;
    listener_({.cause = cause,
               .origin = {origin.x(), origin.y()},
               .size = shell_.window().bounds().size,
               .zoom = shell_.zoom() * ratio});
}

// Input.

void DeviceWindow::mousePressEvent(QMouseEvent* event) {
    if (event->button() != Qt::LeftButton || isPressed_) return;
    isPressed_ = true;
    shell_.touchBegan(pointerTouch, hostPoint(event->position()));
}

void DeviceWindow::mouseMoveEvent(QMouseEvent* event) {
    if (!isPressed_) return;
    shell_.touchMoved(pointerTouch, hostPoint(event->position()));
}

void DeviceWindow::mouseReleaseEvent(QMouseEvent* event) {
    if (event->button() != Qt::LeftButton || !isPressed_) return;
    isPressed_ = false;
    shell_.touchEnded(pointerTouch, hostPoint(event->position()));
}

void DeviceWindow::touchEvent(QTouchEvent* event) {
    // Accepted, so that the desktop does not send the same touch once more as a mouse.
    event->accept();
    for (auto const& point : event->points()) {
        auto const id = firstFinger + point.id();
        auto const location = hostPoint(point.position());
        if (event->type() == QEvent::TouchCancel)
            shell_.touchCancelled(id);
        else if (point.state() == QEventPoint::Pressed)
            shell_.touchBegan(id, location);
        else if (point.state() == QEventPoint::Updated)
            shell_.touchMoved(id, location);
        else if (point.state() == QEventPoint::Released)
            shell_.touchEnded(id, location);
    }
}

void DeviceWindow::wheelEvent(QWheelEvent* event) {
    auto way = QPointF(event->angleDelta()) / wheelStep * pointsPerWheelStep * shell_.zoom();
    if (!event->pixelDelta().isNull()) way = QPointF(event->pixelDelta());
    shell_.scroll(hostPoint(event->position()), -way.x(), -way.y());
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
    shell_.keyPressed(*key);
}

} // namespace trelundo

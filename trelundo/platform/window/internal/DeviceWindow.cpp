#include "trelundo/platform/window/internal/DeviceWindow.h"

#include "trelundo/platform/foundation/Clock.h"
#include "trelundo/platform/foundation/DispatchQueue.h"
#include "trelundo/platform/graphics/internal/SurfacePixels.h"
#include "trelundo/platform/uikit/controllers/UIApplication.h"
#include "trelundo/platform/window/internal/WheelScrolling.h"

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

constexpr double frameDuration = 1.0 / 60; // seconds
constexpr double longestAlarm = 3600;      // seconds

QRect pixelRect(CGRect const& rect) {
    return QRectF(rect.minX(), rect.minY(), rect.width(), rect.height()).toAlignedRect();
}

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

DeviceWindow::DeviceWindow(Ref<UIWindow> window, DeviceProfile const& device, double zoom)
    : window_(std::move(window))
    , device_(device)
    , zoom_(zoom)
    , accessible_(*this, *window_, zoom, [this] { turn(); }) {
    auto const size = UIScreen::main().bounds().size;
    resize(static_cast<int>(std::lround(size.width * zoom)),
           static_cast<int>(std::lround(size.height * zoom)));
    setMinimumSize({160, 160});
    frameTimer_.setTimerType(Qt::PreciseTimer);
    frameTimer_.setSingleShot(true);
    alarm_.setSingleShot(true);
    QObject::connect(&frameTimer_, &QTimer::timeout, this, [this] { frame(); });
    QObject::connect(&alarm_, &QTimer::timeout, this, [this] { turn(); });
}

DeviceWindow::~DeviceWindow() { DispatchQueue::main().setWakeUp(nullptr); }

void DeviceWindow::start() {
    DispatchQueue::main().setWakeUp([this] { wakeUp(); });
    show();
    // Without a window manager nobody else gives the window the keyboard.
    requestActivate();
    turn();
}

/// Any thread may call; many calls before the loop turns become one.
void DeviceWindow::wakeUp() {
    if (isWoken_.exchange(true)) return;
    QMetaObject::invokeMethod(
        this,
        [this] {
            isWoken_ = false;
            turn();
        },
        Qt::QueuedConnection);
}

void DeviceWindow::frame() {
    UIApplication::shared().frame();
    present();
    arm();
}

void DeviceWindow::turn() {
    UIApplication::shared().turn();
    present();
    arm();
}

void DeviceWindow::arm() {
    if (isExposed() && UIApplication::shared().needsFrames()) {
        scheduleFrame();
        return alarm_.stop();
    }
    frameTimer_.stop();
    if (DispatchQueue::main().hasReady()) return wakeUp();
    auto const wait = DispatchQueue::main().nextDeadline() - Clock::current().now();
    if (!std::isfinite(wait)) return alarm_.stop();
    alarm_.start(static_cast<int>(std::ceil(std::clamp(wait, 0.0, longestAlarm) * 1000)));
}

/// Timers know whole milliseconds only: counting from frame to frame keeps 60 a second on average.
void DeviceWindow::scheduleFrame() {
    if (frameTimer_.isActive()) return;
    auto const now = Clock::current().now();
    nextFrame_ = std::max(nextFrame_ + frameDuration, now); // a late frame does not hurry those after it
    frameTimer_.start(static_cast<int>(std::lround((nextFrame_ - now) * 1000)));
}

void DeviceWindow::prepareSurface() {
    auto const pixels = size() * devicePixelRatio();
    if (surface_ && surface_->pixelWidth() == pixels.width() && surface_->pixelHeight() == pixels.height())
        return;
    surface_ = std::make_unique<Surface>(pixels.width(), pixels.height(), devicePixelRatio() * zoom_);
    compositor_.invalidate();
}

void DeviceWindow::present() {
    accessible_.update();
    if (!isExposed() || size().isEmpty()) return;
    prepareSurface();
    QRegion changed;
    for (auto const& rect : compositor_.render(window_->layer(), *surface_)) {
        auto const ratio = devicePixelRatio();
        changed += pixelRect(
            {rect.minX() / ratio, rect.minY() / ratio, rect.width() / ratio, rect.height() / ratio});
    }
    if (!changed.isEmpty()) update(changed);
}

void DeviceWindow::paintEvent(QPaintEvent* event) {
    if (!surface_) return;
    QPainter painter(this);
    painter.setCompositionMode(QPainter::CompositionMode_Source);
    auto const ratio = devicePixelRatio();
    for (auto const& rect : event->region()) {
        painter.drawImage(
            QRectF(rect), surface_->pixels().image,
            QRectF(rect.x() * ratio, rect.y() * ratio, rect.width() * ratio, rect.height() * ratio));
    }
    if (std::exchange(isShown_, true)) return;
    QMetaObject::invokeMethod(
        this, [this] { report(WindowPlacement::Cause::shown); }, Qt::QueuedConnection);
}

void DeviceWindow::exposeEvent(QExposeEvent* event) {
    present();
    QRasterWindow::exposeEvent(event);
    arm();
}

void DeviceWindow::resizeEvent(QResizeEvent* event) {
    takeSize(size());
    QRasterWindow::resizeEvent(event);
}

void DeviceWindow::takeSize(QSize size) {
    if (size.isEmpty()) return;
    CGSize const points{size.width() / zoom_, size.height() / zoom_};
    auto const current = UIScreen::main().bounds().size;
    // A zoomed window has whole desktop points, so that it can miss the device's size by a rounding.
    auto const tolerance = 1 / zoom_;
    if (std::abs(points.width - current.width) <= tolerance &&
        std::abs(points.height - current.height) <= tolerance)
        return;
    UIScreen::main().configure(device_.resizedTo(points), points.width > points.height);
    window_->screenDidChange();
    turn();
    report(WindowPlacement::Cause::resized);
}

void DeviceWindow::report(WindowPlacement::Cause cause) {
    if (!listener_) return;
    auto const ratio = devicePixelRatio();
    auto const origin = QPointF(mapToGlobal(QPoint(0, 0))) * ratio;
    listener_({.cause = cause,
               .origin = {origin.x(), origin.y()},
               .size = UIScreen::main().bounds().size,
               .zoom = zoom_ * ratio});
}

// Input.

void DeviceWindow::mousePressEvent(QMouseEvent* event) {
    if (event->button() != Qt::LeftButton || isPressed_) return;
    isPressed_ = true;
    window_->touchBegan(pointerTouch, devicePoint(event->position()));
    turn();
}

void DeviceWindow::mouseMoveEvent(QMouseEvent* event) {
    if (!isPressed_) return;
    window_->touchMoved(pointerTouch, devicePoint(event->position()));
    turn();
}

void DeviceWindow::mouseReleaseEvent(QMouseEvent* event) {
    if (event->button() != Qt::LeftButton || !isPressed_) return;
    isPressed_ = false;
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

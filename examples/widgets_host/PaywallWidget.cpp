#include "PaywallWidget.h"

#include "QtInput.h"

#include <QMouseEvent>
#include <QPaintEvent>
#include <QPainter>

using namespace trelundo;

namespace {

constexpr int mouse = 0; // the id of its finger

CGPoint hostPoint(QMouseEvent const& event) { return {event.position().x(), event.position().y()}; }

QRect widgetRect(CGRect const& pixels, double scale) {
    return QRectF(pixels.minX() / scale, pixels.minY() / scale, pixels.width() / scale,
                  pixels.height() / scale)
        .toAlignedRect();
}

} // namespace

PaywallWidget::PaywallWidget(QWidget* parent)
    : QWidget(parent)
    , shell_({.screen = place(), .wakeUp = [this] {
                  QMetaObject::invokeMethod(
                      this, [this] { frame(); }, Qt::QueuedConnection);
              }}) {
    setAttribute(Qt::WA_OpaquePaintEvent);
    setFocusPolicy(Qt::StrongFocus);
    timer_.setSingleShot(true);
    timer_.setTimerType(Qt::PreciseTimer);
    connect(&timer_, &QTimer::timeout, this, [this] { frame(); });
}

EmbeddedScreen PaywallWidget::place() const {
    return {.size = {double(width()), double(height())}, .scale = devicePixelRatioF()};
}

void PaywallWidget::frame() {
    auto const frame = shell_.frame();
    for (auto const& rect : frame.dirty) update(widgetRect(rect, devicePixelRatioF()));
    setTimer(timer_, frame.next);
}

void PaywallWidget::paintEvent(QPaintEvent* event) {
    auto image = imageOf(shell_.pixels());
    image.setDevicePixelRatio(devicePixelRatioF());
    QPainter painter(this);
    painter.setClipRegion(event->region());
    painter.drawImage(0, 0, image);
}

void PaywallWidget::resizeEvent(QResizeEvent* /*event*/) {
    shell_.setScreen(place());
    frame();
}

void PaywallWidget::showEvent(QShowEvent* /*event*/) { shell_.setVisible(true); }

void PaywallWidget::hideEvent(QHideEvent* /*event*/) { shell_.setVisible(false); }

void PaywallWidget::mousePressEvent(QMouseEvent* event) {
    if (event->button() == Qt::LeftButton) shell_.touchBegan(mouse, hostPoint(*event));
}

void PaywallWidget::mouseMoveEvent(QMouseEvent* event) { shell_.touchMoved(mouse, hostPoint(*event)); }

void PaywallWidget::mouseReleaseEvent(QMouseEvent* event) {
    if (event->button() == Qt::LeftButton) shell_.touchEnded(mouse, hostPoint(*event));
}

void PaywallWidget::wheelEvent(QWheelEvent* event) { event->setAccepted(scrollByWheel(shell_, *event)); }

/// Before the window takes Tab for its own.
bool PaywallWidget::event(QEvent* event) {
    if (event->type() != QEvent::KeyPress) return QWidget::event(event);
    keyPressEvent(static_cast<QKeyEvent*>(event));
    return event->isAccepted();
}

void PaywallWidget::keyPressEvent(QKeyEvent* event) {
    auto const key = keyOf(*event);
    if (!key) return QWidget::keyPressEvent(event);
    shell_.keyPressed(*key);
    event->accept();
}

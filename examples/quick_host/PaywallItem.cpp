#include "PaywallItem.h"

#include "QtInput.h"

#include <QQuickWindow>
#include <QSGSimpleTextureNode>
#include <QVariantMap>

using namespace trelundo;

namespace {

constexpr int mouse = 0; // the id of its finger

CGPoint hostPoint(QMouseEvent const& event) { return {event.position().x(), event.position().y()}; }

QVariantMap listed(AccessibleView const& view) {
    return {{"x", view.frame.minX()},
            {"y", view.frame.minY()},
            {"width", view.frame.width()},
            {"height", view.frame.height()},
            {"name", QString::fromStdString(view.name)},
            {"isPressable", view.isPressable}};
}

} // namespace

PaywallItem::PaywallItem(QQuickItem* parent)
    : QQuickItem(parent)
    , shell_({.screen = place(), .wakeUp = [this] {
                  QMetaObject::invokeMethod(
                      this, [this] { frame(); }, Qt::QueuedConnection);
              }}) {
    setFlag(ItemHasContents);
    setAcceptedMouseButtons(Qt::LeftButton);
    timer_.setSingleShot(true);
    timer_.setTimerType(Qt::PreciseTimer);
    connect(&timer_, &QTimer::timeout, this, [this] { frame(); });
}

EmbeddedScreen PaywallItem::place() const {
    return {.size = {width(), height()}, .scale = window() ? window()->effectiveDevicePixelRatio() : 1};
}

void PaywallItem::frame() {
    auto const frame = shell_.frame();
    setTimer(timer_, frame.next);
    if (frame.dirty.empty()) return;
    image_ = imageOf(shell_.pixels()).copy();
    update();
    listViews();
}

void PaywallItem::listViews() {
    views_ = shell_.accessibleViews();
    QVariantList now;
    for (auto const& view : views_) now.append(listed(view));
    if (now == listed_) return;
    listed_ = now;
    emit accessibleViewsChanged();
}

void PaywallItem::press(int index) {
    auto const place = static_cast<std::size_t>(index);
    if (index >= 0 && place < views_.size()) shell_.press(views_[place]);
}

/// Runs on the scene's thread, while that of the items waits.
QSGNode* PaywallItem::updatePaintNode(QSGNode* node, UpdatePaintNodeData* /*data*/) {
    auto* picture = static_cast<QSGSimpleTextureNode*>(node);
    if (!picture) {
        picture = new QSGSimpleTextureNode;
        picture->setOwnsTexture(true);
    }
    picture->setTexture(window()->createTextureFromImage(image_));
    picture->setRect(boundingRect());
    return picture;
}

void PaywallItem::geometryChange(QRectF const& now, QRectF const& before) {
    QQuickItem::geometryChange(now, before);
    shell_.setScreen(place());
    frame();
}

void PaywallItem::mousePressEvent(QMouseEvent* event) { shell_.touchBegan(mouse, hostPoint(*event)); }

void PaywallItem::mouseMoveEvent(QMouseEvent* event) { shell_.touchMoved(mouse, hostPoint(*event)); }

void PaywallItem::mouseReleaseEvent(QMouseEvent* event) { shell_.touchEnded(mouse, hostPoint(*event)); }

void PaywallItem::wheelEvent(QWheelEvent* event) { event->setAccepted(scrollByWheel(shell_, *event)); }

void PaywallItem::keyPressEvent(QKeyEvent* event) {
    auto const key = keyOf(*event);
    if (!key) return QQuickItem::keyPressEvent(event);
    shell_.keyPressed(*key);
}

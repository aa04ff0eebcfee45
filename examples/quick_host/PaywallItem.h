#pragma once

#include <trelundo/Window.h>

#include <QImage>
#include <QQuickItem>
#include <QTimer>
#include <QVariantList>

#include <vector>

/// Shows an embedded shell in a Qt Quick scene.
class PaywallItem : public QQuickItem {
    Q_OBJECT
    /// For assistive programs: x, y, width, height, name and isPressable of each view.
    Q_PROPERTY(QVariantList accessibleViews READ accessibleViews NOTIFY accessibleViewsChanged)

public:
    explicit PaywallItem(QQuickItem* parent = nullptr);

    trelundo::EmbeddedShell& shell() { return shell_; }
    QVariantList accessibleViews() const { return listed_; }
    Q_INVOKABLE void press(int index);

signals:
    void accessibleViewsChanged();

protected:
    void geometryChange(QRectF const& now, QRectF const& before) override;
    QSGNode* updatePaintNode(QSGNode* node, UpdatePaintNodeData* data) override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;
    void wheelEvent(QWheelEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;

private:
    void frame();
    void listViews();
    trelundo::EmbeddedScreen place() const;

    trelundo::EmbeddedShell shell_;
    QTimer timer_; // of the next frame; one shot
    QImage image_; // as the scene's own thread may draw it
    std::vector<trelundo::AccessibleView> views_;
    QVariantList listed_;
};

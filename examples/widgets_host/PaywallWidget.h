#pragma once

#include <trelundo/Window.h>

#include <QTimer>
#include <QWidget>

/// Shows an embedded shell in a window of widgets.
class PaywallWidget : public QWidget {
public:
    explicit PaywallWidget(QWidget* parent = nullptr);

    trelundo::EmbeddedShell& shell() { return shell_; }
    QSize sizeHint() const override { return {390, 800}; }

protected:
    bool event(QEvent* event) override;
    void paintEvent(QPaintEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;
    void showEvent(QShowEvent* event) override;
    void hideEvent(QHideEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;
    void wheelEvent(QWheelEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;

private:
    void frame();
    trelundo::EmbeddedScreen place() const;

    trelundo::EmbeddedShell shell_;
    QTimer timer_; // of the next frame; one shot
};

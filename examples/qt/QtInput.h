#pragma once

#include <trelundo/Window.h>

#include <QImage>
#include <QKeyEvent>
#include <QRegion>
#include <QTimer>
#include <QWheelEvent>

#include <algorithm>
#include <cmath>
#include <optional>

// What every host of Qt hands over to a shell in the same way.

/// The key as the shell knows it; none for those that it has no use for.
inline std::optional<trelundo::UIWindow::Key> keyOf(QKeyEvent const& event) {
    using Key = trelundo::UIWindow::Key;
    switch (event.key()) {
    case Qt::Key_Return:
    case Qt::Key_Enter:
        return Key::returnKey;
    case Qt::Key_Escape:
        return Key::escape;
    case Qt::Key_Tab:
        return Key::tab;
    case Qt::Key_Backtab:
        return Key::backtab;
    case Qt::Key_Space:
        return Key::space;
    default:
        return std::nullopt;
    }
}

/// Whether anything scrolled; what did not is for those around the shell.
inline bool scrollByWheel(trelundo::EmbeddedShell& shell, QWheelEvent const& event) {
    constexpr double pointsPerUnit = 40.0 / 120; // a notch of a wheel has 120 units
    auto const way = event.pixelDelta().isNull() ? QPointF(event.angleDelta()) * pointsPerUnit
                                                 : QPointF(event.pixelDelta());
    return shell.scroll({event.position().x(), event.position().y()}, -way.x(), -way.y());
}

/// Sets `timer` to the next frame; without one it sleeps until the shell wakes its host.
inline void setTimer(QTimer& timer, double seconds) {
    constexpr double longest = 3600;
    if (!std::isfinite(seconds)) return timer.stop();
    timer.start(static_cast<int>(std::ceil(std::min(seconds, longest) * 1000)));
}

/// The shell's pixels, of which nothing is copied.
inline QImage imageOf(trelundo::Surface const& pixels) {
    return {pixels.bytes(), pixels.pixelWidth(), pixels.pixelHeight(), pixels.bytesPerLine(),
            QImage::Format_ARGB32_Premultiplied};
}

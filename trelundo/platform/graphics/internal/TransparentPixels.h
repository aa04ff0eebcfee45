#pragma once

#include <QImage>

namespace trelundo {

/// Transparent premultiplied pixels; null for an empty size and when memory does not hold them. Many pixels
/// get large pages where the system has them: a first frame spends much of its time on getting pages.
QImage transparentPixels(int width, int height);

} // namespace trelundo

#pragma once

#include "trelundo/platform/foundation/Result.h"

#include <cstdint>
#include <string>

namespace trelundo {

/// Premultiplied 32-bit pixels (0xAARRGGBB in memory order of the machine), rows `bytesPerLine` apart.
struct PngSource {
    std::uint8_t const* pixels;
    int bytesPerLine;
    int width;
    int height;
    bool isOpaque; // written without an alpha channel
};

/// Writes `source` as a PNG file (8 bits a channel, no interlacing, no metadata): equal pixels give equal
/// bytes. The error names the file; a failure leaves no half-written file.
Result<void> writePngFile(PngSource const& source, std::string const& path);

} // namespace trelundo

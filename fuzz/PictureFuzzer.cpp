#include "fuzz/Pieces.h"
#include "trelundo/platform/foundation/Log.h"
#include "trelundo/platform/graphics/Canvas.h"
#include "trelundo/platform/graphics/Picture.h"
#include "trelundo/platform/graphics/Surface.h"

#include <cstdlib>

using namespace trelundo;

/// A picture is refused with its name, or has a size and can be drawn.
extern "C" int LLVMFuzzerTestOneInput(std::uint8_t const* data, std::size_t size) {
    setWarningSink([](auto) {});
    auto const picture = Picture::decode(fuzz::textOf(data, size), "file", 1);
    if (!picture) {
        if (picture.error().message.find("file") == std::string::npos) std::abort();
        return 0;
    }
    auto const [width, height] = (*picture)->size();
    if (!(width >= 0 && height >= 0 && width * height <= Picture::maximumPixels)) std::abort();
    Surface surface(24, 24, 1);
    Canvas canvas(surface);
    canvas.drawPicture(**picture, {{0, 0}, {24, 24}}, {{0, 0}, {24, 24}}, {}, std::nullopt);
    return 0;
}

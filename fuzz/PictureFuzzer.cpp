#include "fuzz/Fuzzer.h"
#include "trelundo/platform/foundation/Log.h"
#include "trelundo/platform/graphics/Canvas.h"
#include "trelundo/platform/graphics/Picture.h"
#include "trelundo/platform/graphics/Surface.h"

using namespace trelundo;

/// A picture is refused with its name, or has a size and can be drawn.
void fuzz::run(std::string_view input) {
    setWarningSink([](auto) {});
    auto const picture = Picture::decode(input, "file", 1);
    if (!picture) return require(picture.error().message.find("file") != std::string::npos);
    auto const [width, height] = (*picture)->size();
    require(width >= 0 && height >= 0 && width * height <= Picture::maximumPixels);
    Surface surface(24, 24, 1);
    Canvas canvas(surface);
    canvas.drawPicture(**picture, {{0, 0}, {24, 24}}, {{0, 0}, {24, 24}}, {}, std::nullopt);
}

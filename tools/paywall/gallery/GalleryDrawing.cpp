#include "tools/paywall/gallery/GalleryDrawing.h"

#include "platform/graphics/PngWriter.h"
#include "platform/graphics/Surface.h"
#include "tools/paywall/Describe.h"
#include "tools/paywall/Failure.h"
#include "tools/paywall/Scene.h"

#include <array>
#include <cmath>
#include <vector>

namespace trelundo::paywall {

namespace {

/// Averages squares of `side` pixels into one.
class Reduction {
public:
    Reduction(Surface const& surface, int side)
        : surface_(surface)
        , side_(side)
        , width_(surface.pixelWidth() / side)
        , height_(surface.pixelHeight() / side) {
        bytes_.reserve(static_cast<std::size_t>(width_) * static_cast<std::size_t>(height_) * channels);
        for (int y = 0; y < height_; ++y)
            for (int x = 0; x < width_; ++x)
                for (auto const sum : sums(x * side_, y * side_))
                    bytes_.push_back(static_cast<std::uint8_t>((sum + area() / 2) / area()));
    }

    PngSource source() const {
        return {.pixels = bytes_.data(),
                .bytesPerLine = width_ * channels,
                .width = width_,
                .height = height_,
                .opaque = surface_.isOpaque()};
    }

private:
    static constexpr int channels = 4;

    unsigned area() const { return static_cast<unsigned>(side_ * side_); }

    std::array<unsigned, channels> sums(int left, int top) const {
        std::array<unsigned, channels> sums{};
        for (int y = top; y < top + side_; ++y) {
            auto const* pixel = surface_.bytes() + static_cast<std::ptrdiff_t>(y) * surface_.bytesPerLine() +
                                static_cast<std::ptrdiff_t>(left) * channels;
            for (int i = 0; i < side_ * channels; ++i)
                sums[static_cast<std::size_t>(i % channels)] += pixel[i];
        }
        return sums;
    }

    Surface const& surface_;
    int side_;
    int width_;
    int height_;
    std::vector<std::uint8_t> bytes_;
};

void write(Surface const& surface, std::filesystem::path const& picture,
           std::filesystem::path const& preview) {
    std::string reason;
    if (!surface.writePng(picture.string(), reason)) failInput(reason);
    Reduction const reduced{surface, static_cast<int>(std::lround(surface.scale()))};
    if (!writePngFile(reduced.source(), preview.string(), reason)) failInput(reason);
}

CGRect frameOf(Json const& view) {
    auto const frame = view.at("frame").get<std::array<double, 4>>();
    return {frame[0], frame[1], frame[2], frame[3]};
}

/// Collects the texts inside `visible` of a view and of those below it.
void addFlagged(Json& flags, Json const& view, std::string const& around, CGRect visible) {
    if (view.at("hidden") == true || view.at("alpha") == 0) return;
    std::string const name = view.at("name");
    bool const isFlagged = view.value("truncated", false) || view.contains("shrunkTo");
    if (isFlagged && frameOf(view).intersects(visible)) {
        Json flag{{"view", name.empty() ? around + " " + view.at("class").get<std::string>() : name},
                  {"text", view.at("text")},
                  {"frame", view.at("frame")},
                  {"truncated", view.at("truncated")}};
        if (view.contains("shrunkTo")) flag["shrunkTo"] = view.at("shrunkTo");
        flags.push_back(std::move(flag));
    }
    for (auto const& subview : view.at("subviews"))
        addFlagged(flags, subview, name.empty() ? around : name, visible);
}

} // namespace

Json flaggedTexts(Json const& description) {
    Json flags = Json::array();
    addFlagged(flags, description, "", frameOf(description));
    return flags;
}

Json drawPicture(GalleryPicture const& picture, StoreConfiguration const& catalogue,
                 std::filesystem::path const& folder) {
    EventLog log{"/dev/null"};
    Scene scene{picture.scene, log, catalogue};
    write(scene.shell.render(), folder / picture.picturePath(), folder / picture.previewPath());
    return flaggedTexts(describe(*scene.stage.screen()));
}

} // namespace trelundo::paywall

#include "tools/paywall/gallery/GalleryDrawing.h"

#include "tools/paywall/Failure.h"
#include "tools/paywall/output/Describe.h"
#include "tools/paywall/session/OffscreenSession.h"
#include "trelundo/platform/graphics/PngWriter.h"
#include "trelundo/platform/graphics/Surface.h"

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
                .isOpaque = surface_.isOpaque()};
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
    valueOrFail(surface.writePng(picture.string()));
    Reduction const reduced{surface, static_cast<int>(std::lround(surface.scale()))};
    valueOrFail(writePngFile(reduced.source(), preview.string()));
}

CGRect frameOf(Json const& view) {
    auto const frame = view.at("frame").get<std::array<double, 4>>();
    return {frame[0], frame[1], frame[2], frame[3]};
}

constexpr double edgeTolerance = 0.5; // points

bool reachesOut(CGRect frame, CGRect screen) {
    return frame.minX() < screen.minX() - edgeTolerance || frame.maxX() > screen.maxX() + edgeTolerance ||
           frame.minY() < screen.minY() - edgeTolerance || frame.maxY() > screen.maxY() + edgeTolerance;
}

/// Where a view stands in the described tree.
struct Place {
    CGRect screen;
    std::string around; // the nearest named view
    bool scrolls = false;
};

/// What is wrong with a label's text, by key; empty when it is fine. What scrolls may reach out.
Json faultsOf(Json const& label, Place const& place) {
    auto const frame = frameOf(label);
    Json faults = Json::object();
    if (place.scrolls && !frame.intersects(place.screen)) return faults;
    if (label.contains("shrunkTo")) faults["shrunkTo"] = label.at("shrunkTo");
    if (label.at("truncated") == true) faults["truncated"] = true;
    if (!place.scrolls && !label.at("text").get_ref<std::string const&>().empty() &&
        reachesOut(frame, place.screen))
        faults["offScreen"] = true;
    return faults;
}

void addFlagged(Json& flags, Json const& view, Place place) {
    if (view.at("hidden") == true || view.at("alpha") == 0) return;
    std::string const name = view.at("name");
    bool const isLabel = view.contains("truncated");
    if (auto const faults = isLabel ? faultsOf(view, place) : Json::object(); !faults.empty()) {
        flags.push_back(
            {{"view", name.empty() ? place.around + " " + view.at("class").get<std::string>() : name},
             {"text", view.at("text")},
             {"frame", view.at("frame")}});
        flags.back().update(faults);
    }
    if (!name.empty()) place.around = name;
    if (view.contains("contentSize")) place.scrolls = true;
    for (auto const& subview : view.at("subviews")) addFlagged(flags, subview, place);
}

} // namespace

Json flaggedTexts(Json const& description) {
    Json flags = Json::array();
    addFlagged(flags, description, {.screen = frameOf(description), .around = ""});
    return flags;
}

Json drawPicture(GalleryPicture const& picture, StoreConfiguration const& catalogue,
                 std::filesystem::path const& folder) {
    EventLog log;
    OffscreenSession offscreen{picture.options, log, catalogue};
    write(offscreen.shell.render(), folder / picture.picturePath(), folder / picture.previewPath());
    return flaggedTexts(describe(*offscreen.session.screen()));
}

} // namespace trelundo::paywall

#include "trelundo/platform/coreanimation/internal/Damage.h"

#include <algorithm>
#include <limits>

namespace trelundo {

namespace {

constexpr std::size_t mostRects = 12;
constexpr double acceptableGrowth = 1.15; // of the merged area over the sum of its parts

} // namespace

void Damage::add(PixelRect const& rect) {
    if (rect.isEmpty()) return;
    auto added = rect;
    for (std::size_t index = 0; index < rects_.size();) {
        auto const merged = rects_[index].unionWith(added);
        if (merged.area() > (rects_[index].area() + added.area()) * acceptableGrowth) {
            ++index;
            continue;
        }
        added = merged;
        rects_.erase(rects_.begin() + static_cast<std::ptrdiff_t>(index));
        index = 0;
    }
    rects_.push_back(added);
    if (rects_.size() > mostRects) mergeCheapest();
}

void Damage::mergeCheapest() {
    std::size_t first = 0, second = 1;
    auto least = std::numeric_limits<double>::infinity();
    for (std::size_t i = 0; i < rects_.size(); ++i) {
        for (std::size_t j = i + 1; j < rects_.size(); ++j) {
            auto const growth = rects_[i].unionWith(rects_[j]).area() - rects_[i].area() - rects_[j].area();
            if (growth >= least) continue;
            least = growth;
            first = i;
            second = j;
        }
    }
    auto const merged = rects_[first].unionWith(rects_[second]);
    rects_.erase(rects_.begin() + static_cast<std::ptrdiff_t>(second));
    rects_.erase(rects_.begin() + static_cast<std::ptrdiff_t>(first));
    add(merged);
}

bool Damage::absorb(PixelRect const& rect) {
    if (rect.isEmpty()) return false;
    auto whole = rect;
    std::size_t absorbed = 0;
    bool covered = false;
    for (std::size_t index = 0; index < rects_.size();) {
        if (!rects_[index].intersects(whole)) {
            ++index;
            continue;
        }
        covered = covered || rects_[index].contains(whole);
        whole = whole.unionWith(rects_[index]);
        rects_.erase(rects_.begin() + static_cast<std::ptrdiff_t>(index));
        ++absorbed;
        index = 0;
    }
    rects_.push_back(whole);
    return !(covered && absorbed == 1);
}

bool Damage::intersects(PixelRect const& rect) const {
    return std::ranges::any_of(rects_, [&](auto const& each) { return each.intersects(rect); });
}

} // namespace trelundo

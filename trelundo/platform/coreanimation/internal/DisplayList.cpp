#include "trelundo/platform/coreanimation/internal/DisplayList.h"

#include "trelundo/platform/coreanimation/internal/LayerBitmap.h"

#include <algorithm>
#include <bit>
#include <unordered_map>

namespace trelundo {

namespace {

/// Whether only the pixels of the bitmap differ.
bool differInPixelsOnly(DisplayItem const& left, DisplayItem const& right) {
    auto same = left;
    same.serial = right.serial;
    return left.bitmap && right.bitmap && same.isEquivalent(right);
}

void addChange(Damage& damage, DisplayItem const& last, DisplayItem const& next, std::uint64_t frame) {
    if (last.isEquivalent(next)) return;
    auto const* const parts = next.bitmap ? next.bitmap->changesSince(last.serial, frame) : nullptr;
    if (!parts || !differInPixelsOnly(last, next)) {
        damage.add(last.visible());
        return damage.add(next.visible());
    }
    auto const dx = next.rect.x - next.bitmap->rect().x;
    auto const dy = next.rect.y - next.bitmap->rect().y;
    for (auto const& part : parts->rects()) damage.add(part.translated(dx, dy).intersection(next.visible()));
}

bool haveSameKeys(DisplayList const& left, DisplayList const& right) {
    return std::ranges::equal(left, right, [](auto const& a, auto const& b) { return a.key == b.key; });
}

/// Steps that changed their place in the order count as taken away and drawn anew.
void addReordered(Damage& damage, DisplayList const& last, DisplayList const& next, std::uint64_t frame) {
    std::unordered_map<std::uint64_t, std::size_t> places;
    for (std::size_t index = 0; index < last.size(); ++index) places.emplace(last[index].key, index);
    std::vector<bool> kept(last.size(), false);
    std::size_t reached = 0;
    for (auto const& item : next) {
        auto const found = places.find(item.key);
        if (found == places.end() || found->second < reached) {
            damage.add(item.visible());
            continue;
        }
        reached = found->second + 1;
        kept[found->second] = true;
        addChange(damage, last[found->second], item, frame);
    }
    for (std::size_t index = 0; index < last.size(); ++index) {
        if (!kept[index]) damage.add(last[index].visible());
    }
}

class Hash {
public:
    void add(std::uint64_t value) {
        value_ ^= value + 0x9e3779b97f4a7c15u + (value_ << 6) + (value_ >> 2);
        value_ *= 0xff51afd7ed558ccdu;
        value_ ^= value_ >> 32;
    }
    void add(double value) { add(std::bit_cast<std::uint64_t>(value)); }
    void add(PixelRect const& rect) {
        for (auto const part : {rect.x, rect.y, rect.width, rect.height})
            add(static_cast<std::uint64_t>(part));
    }
    std::uint64_t value() const { return value_; }

private:
    std::uint64_t value_ = 0;
};

} // namespace

bool DisplayItem::isEquivalent(DisplayItem const& other) const {
    return key == other.key && rect == other.rect && clip == other.clip && opacity == other.opacity &&
           color == other.color && serial == other.serial;
}

DisplayItem DisplayItem::moved(int dx, int dy, PixelRect const& within, double fading) const {
    auto item = *this;
    item.rect = rect.translated(dx, dy);
    item.clip = clip.translated(dx, dy).intersection(within);
    if (bitmap)
        item.opacity *= fading;
    else
        item.color.alpha = std::min(1.0, color.alpha) * fading;
    return item;
}

bool isEquivalent(DisplayList const& left, DisplayList const& right) {
    return std::ranges::equal(left, right, [](auto const& a, auto const& b) { return a.isEquivalent(b); });
}

PixelRect extent(DisplayList const& list) {
    PixelRect all;
    for (auto const& item : list) all = all.unionWith(item.visible());
    return all;
}

Damage difference(DisplayList const& last, DisplayList const& next, std::uint64_t frame) {
    Damage damage;
    if (haveSameKeys(last, next)) {
        for (std::size_t index = 0; index < next.size(); ++index)
            addChange(damage, last[index], next[index], frame);
    } else {
        addReordered(damage, last, next, frame);
    }
    return damage;
}

std::uint64_t signature(DisplayList const& list, std::size_t count, PixelRect const& area) {
    Hash hash;
    hash.add(area);
    for (std::size_t index = 0; index < count; ++index) {
        auto const& item = list[index];
        if (!item.visible().intersects(area)) continue;
        hash.add(item.key);
        hash.add(item.serial);
        hash.add(item.rect);
        hash.add(item.clip);
        for (auto const part :
             {item.opacity, item.color.red, item.color.green, item.color.blue, item.color.alpha})
            hash.add(part);
    }
    return hash.value();
}

} // namespace trelundo

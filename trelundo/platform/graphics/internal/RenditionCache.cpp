#include "trelundo/platform/graphics/internal/RenditionCache.h"

#include <algorithm>

namespace trelundo {

RenditionCache& RenditionCache::shared() {
    // Never destroyed: pictures may outlive static destruction.
    static auto& cache = *new RenditionCache(64 * 1024 * 1024);
    return cache;
}

QImage RenditionCache::find(Key const& key) {
    auto const entry = std::ranges::find(entries_, key, &Entry::key);
    if (entry == entries_.end()) return {};
    entries_.splice(entries_.begin(), entries_, entry);
    return entries_.front().image;
}

void RenditionCache::insert(Key const& key, QImage const& image) {
    if (image.sizeInBytes() > maximumBytes_) return;
    entries_.push_front({key, image});
    bytes_ += image.sizeInBytes();
    while (bytes_ > maximumBytes_) {
        bytes_ -= entries_.back().image.sizeInBytes();
        entries_.pop_back();
    }
}

void RenditionCache::removePicture(std::uint64_t picture) {
    std::erase_if(entries_, [&](Entry const& entry) {
        if (entry.key.picture != picture) return false;
        bytes_ -= entry.image.sizeInBytes();
        return true;
    });
}

} // namespace trelundo

#pragma once

#include "trelundo/platform/graphics/CGColor.h"

#include <QImage>

#include <cstdint>
#include <list>
#include <optional>

namespace trelundo {

/// Scaled pictures of the whole process, the least recently used dropped first when the bound is exceeded.
class RenditionCache {
public:
    struct Key {
        std::uint64_t picture;
        int width;
        int height;
        std::optional<CGColor> tint;
        bool operator==(Key const&) const = default;
    };

    static RenditionCache& shared();
    explicit RenditionCache(qsizetype maximumBytes)
        : maximumBytes_(maximumBytes) {}

    /// The kept image, or null.
    QImage find(Key const& key);
    /// Keeps `image` unless it alone exceeds the bound.
    void insert(Key const& key, QImage const& image);
    void removePicture(std::uint64_t picture);
    qsizetype bytes() const { return bytes_; }

private:
    struct Entry {
        Key key;
        QImage image;
    };

    qsizetype maximumBytes_;
    qsizetype bytes_ = 0;
    std::list<Entry> entries_; // most recently used first
};

} // namespace trelundo

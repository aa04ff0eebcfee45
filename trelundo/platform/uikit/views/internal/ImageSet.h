#pragma once

#include "trelundo/platform/foundation/Result.h"
#include "trelundo/platform/uikit/views/UIImageRenderingMode.h"
#include "trelundo/platform/uikit/views/UITraitCollection.h"

#include <string>
#include <string_view>
#include <vector>

namespace trelundo {

/// What "Contents.json" in a folder "NAME.imageset" says: which file serves which device, and how the picture
/// wants to be drawn. The format is that of the image sets of asset catalogues; slots that ask for more than
/// an idiom and a scale (an appearance, say) are passed over.
class ImageSet {
public:
    struct Slot {
        std::string file;                                               // within the folder
        UIUserInterfaceIdiom idiom = UIUserInterfaceIdiom::unspecified; // that of "universal"
        int scale = 0;                                                  // 0: serves every scale
    };

    /// The set that `text` describes. The error names `file`, and the line of broken text.
    static Result<ImageSet> parse(std::string_view text, std::string const& file);

    /// The slot for a device: one of its own idiom before a universal one, then its own scale before one for
    /// every scale before the finest. Null when none serves it.
    Slot const* best(UIUserInterfaceIdiom idiom, int scale) const;
    UIImageRenderingMode renderingMode() const { return renderingMode_; }

private:
    std::vector<Slot> slots_;
    UIImageRenderingMode renderingMode_ = UIImageRenderingMode::automatic;
};

} // namespace trelundo

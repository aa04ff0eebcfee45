#pragma once

#include "trelundo/platform/foundation/NSObject.h"
#include "trelundo/platform/uikit/Forward.h"

#include <string>

namespace trelundo {

/// Whether a constraint may name the object: a view or a layout guide.
bool isLayoutItem(NSObject& item);
/// The guide; null for a view.
UILayoutGuide* layoutGuide(NSObject& item);
/// How reports call it: its identifier, else its class.
std::string layoutItemName(NSObject& item);

} // namespace trelundo

#pragma once

#include "trelundo/platform/uikit/views/UIWindow.h"

#include <QAccessible>

#include <functional>
#include <map>
#include <vector>

class QWindow;

namespace trelundo {

class AccessibleElement;

/// What assistive programs see of a device window: its labelled and pressable views as a flat list below the
/// desktop window, in reading order of the view tree. A button hides what it is made of.
class AccessibleTree {
public:
    /// `zoom`: desktop points shown for a device point. `pressed` runs after an assistive program has pressed
    /// something.
    AccessibleTree(QWindow& host, UIWindow& window, double zoom, std::function<void()> pressed);
    ~AccessibleTree();

    QAccessibleInterface* root() const;
    /// Tells assistive programs when elements have come or gone. Costs nothing while none listens.
    void update();

    // For the elements.
    std::vector<AccessibleElement*> elements();
    QRect screenRect(UIView const& view) const;
    QWindow& host() const { return host_; }
    void press(UIView& view);

private:
    void collect(UIView const& view, std::vector<UIView*>& views) const;
    AccessibleElement* elementFor(UIView& view);

    QWindow& host_;
    UIWindow& window_;
    double zoom_;
    std::function<void()> pressed_;
    QAccessible::Id root_ = 0;
    std::map<UIView const*, QAccessible::Id> elements_;
    std::vector<UIView*> last_; // as told; compared, never followed
};

} // namespace trelundo

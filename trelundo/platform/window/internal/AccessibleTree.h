#pragma once

#include "trelundo/platform/window/EmbeddedShell.h"

#include <QAccessible>

#include <map>
#include <vector>

class QWindow;

namespace trelundo {

class AccessibleElement;

/// What assistive programs see of a device window: its accessible views as a flat list below the desktop
/// window.
class AccessibleTree {
public:
    /// The shell fills `host`; its host points are desktop points.
    AccessibleTree(QWindow& host, EmbeddedShell& shell);
    ~AccessibleTree();

    QAccessibleInterface* root() const;
    /// Tells assistive programs when elements have come or gone. Costs nothing while none listens.
    void update();

    // For the elements.
    std::vector<AccessibleElement*> elements();
    QRect screenRect(CGRect const& frame) const;
    QWindow& host() const { return host_; }
    EmbeddedShell& shell() const { return shell_; }

private:
    AccessibleElement* elementFor(UIView& view);

    QWindow& host_;
    EmbeddedShell& shell_;
    QAccessible::Id root_ = 0;
    std::map<UIView const*, QAccessible::Id> elements_;
    std::vector<UIView*> last_; // as told; compared, never followed
};

} // namespace trelundo

#include "trelundo/platform/window/internal/AccessibleTree.h"

#include "trelundo/platform/foundation/Weak.h"
#include "trelundo/platform/window/internal/AccessibleViews.h"

#include <QGuiApplication>
#include <QWindow>

#include <algorithm>
#include <optional>

namespace trelundo {

namespace {

QAccessible::Role roleOf(AccessibleView const& view) {
    switch (view.role) {
    case AccessibleView::Role::button:
        return QAccessible::Button;
    case AccessibleView::Role::link:
        return QAccessible::Link;
    case AccessibleView::Role::image:
        return QAccessible::Graphic;
    case AccessibleView::Role::text:
        return QAccessible::StaticText;
    }
    return QAccessible::NoRole;
}

/// The desktop window itself: the parent of all elements.
class AccessibleWindow : public QAccessibleInterface {
public:
    explicit AccessibleWindow(AccessibleTree& tree)
        : tree_(tree) {}

    bool isValid() const override { return true; }
    QObject* object() const override { return &tree_.host(); }
    QWindow* window() const override { return &tree_.host(); }
    QAccessibleInterface* parent() const override { return QAccessible::queryAccessibleInterface(qApp); }
    QAccessibleInterface* child(int index) const override;
    int childCount() const override { return static_cast<int>(tree_.elements().size()); }
    int indexOfChild(QAccessibleInterface const* child) const override;
    QAccessibleInterface* childAt(int x, int y) const override;
    QString text(QAccessible::Text kind) const override {
        return kind == QAccessible::Name ? tree_.host().title() : QString();
    }
    void setText(QAccessible::Text /*kind*/, QString const& /*text*/) override {}
    QRect rect() const override { return tree_.host().geometry(); }
    QAccessible::Role role() const override { return QAccessible::Window; }
    QAccessible::State state() const override {
        QAccessible::State state;
        state.active = tree_.host().isActive();
        return state;
    }

private:
    AccessibleTree& tree_;
};

} // namespace

/// One view for assistive programs. It may outlive the view and is invalid then.
class AccessibleElement : public QAccessibleInterface, public QAccessibleActionInterface {
public:
    AccessibleElement(AccessibleTree& tree, UIView& view)
        : tree_(tree)
        , view_(&view) {}

    bool isValid() const override { return static_cast<bool>(view_.lock()); }
    QObject* object() const override { return nullptr; }
    QWindow* window() const override { return &tree_.host(); }
    QAccessibleInterface* parent() const override { return tree_.root(); }
    QAccessibleInterface* child(int /*index*/) const override { return nullptr; }
    int childCount() const override { return 0; }
    int indexOfChild(QAccessibleInterface const* /*child*/) const override { return -1; }
    QAccessibleInterface* childAt(int /*x*/, int /*y*/) const override { return nullptr; }
    void setText(QAccessible::Text /*kind*/, QString const& /*text*/) override {}
    void* interface_cast(QAccessible::InterfaceType type) override {
        return type == QAccessible::ActionInterface ? static_cast<QAccessibleActionInterface*>(this)
                                                    : nullptr;
    }

    QString text(QAccessible::Text kind) const override {
        auto const view = described();
        return view && kind == QAccessible::Name ? QString::fromStdString(view->name) : QString();
    }
    QRect rect() const override {
        auto const view = described();
        return view ? tree_.screenRect(view->frame) : QRect();
    }
    QAccessible::Role role() const override {
        auto const view = described();
        return view ? roleOf(*view) : QAccessible::NoRole;
    }
    QAccessible::State state() const override {
        QAccessible::State state;
        auto const view = described();
        state.invalid = !view;
        if (!view) return state;
        state.disabled = !view->isEnabled;
        state.selectable = state.selected = view->isSelected;
        state.focusable = view->isPressable;
        return state;
    }

    QStringList actionNames() const override {
        auto const view = described();
        return view && view->isPressable ? QStringList{pressAction()} : QStringList{};
    }
    void doAction(QString const& name) override {
        auto const view = described();
        if (view && name == pressAction()) tree_.shell().press(*view);
    }
    QStringList keyBindingsForAction(QString const& /*name*/) const override { return {}; }

private:
    std::optional<AccessibleView> described() const {
        auto const view = view_.lock();
        if (!view) return std::nullopt;
        return describeAccessible(*view, tree_.shell().zoom());
    }

    AccessibleTree& tree_;
    Weak<UIView> view_;
};

namespace {

QAccessibleInterface* AccessibleWindow::child(int index) const {
    auto const elements = tree_.elements();
    auto const place = static_cast<std::size_t>(index);
    return index >= 0 && place < elements.size() ? elements[place] : nullptr;
}

int AccessibleWindow::indexOfChild(QAccessibleInterface const* child) const {
    auto const elements = tree_.elements();
    auto const found = std::ranges::find(elements, child);
    return found == elements.end() ? -1 : static_cast<int>(found - elements.begin());
}

QAccessibleInterface* AccessibleWindow::childAt(int x, int y) const {
    auto elements = tree_.elements();
    std::ranges::reverse(elements); // the front ones first
    auto const found =
        std::ranges::find_if(elements, [&](auto const* element) { return element->rect().contains(x, y); });
    return found == elements.end() ? nullptr : *found;
}

} // namespace

AccessibleTree::AccessibleTree(QWindow& host, EmbeddedShell& shell)
    : host_(host)
    , shell_(shell)
    , root_(QAccessible::registerAccessibleInterface(new AccessibleWindow(*this))) {}

AccessibleTree::~AccessibleTree() {
    for (auto const& [view, id] : elements_) QAccessible::deleteAccessibleInterface(id);
    QAccessible::deleteAccessibleInterface(root_);
}

QAccessibleInterface* AccessibleTree::root() const { return QAccessible::accessibleInterface(root_); }

std::vector<AccessibleElement*> AccessibleTree::elements() {
    std::vector<AccessibleElement*> elements;
    for (auto* view : accessibleViews(shell_.window())) elements.push_back(elementFor(*view));
    return elements;
}

AccessibleElement* AccessibleTree::elementFor(UIView& view) {
    auto const found = elements_.find(&view);
    if (found != elements_.end()) {
        auto* const known = QAccessible::accessibleInterface(found->second);
        if (known && known->isValid()) return static_cast<AccessibleElement*>(known);
        // Another view has taken a dead one's place in memory.
        QAccessible::deleteAccessibleInterface(found->second);
    }
    auto* const element = new AccessibleElement(*this, view);
    elements_[&view] = QAccessible::registerAccessibleInterface(element);
    return element;
}

QRect AccessibleTree::screenRect(CGRect const& frame) const {
    QRectF const shown(frame.minX(), frame.minY(), frame.width(), frame.height());
    return shown.toAlignedRect().translated(host_.mapToGlobal(QPoint(0, 0)));
}

void AccessibleTree::update() {
    if (!QAccessible::isActive()) return;
    auto views = accessibleViews(shell_.window());
    if (views == last_) return;
    last_ = std::move(views);
    std::erase_if(elements_, [&](auto const& entry) {
        auto const* known = QAccessible::accessibleInterface(entry.second);
        if (known && known->isValid()) return false;
        QAccessible::deleteAccessibleInterface(entry.second);
        return true;
    });
    QAccessibleEvent event(root(), QAccessible::ObjectReorder);
    QAccessible::updateAccessibility(&event);
}

} // namespace trelundo

#include "trelundo/platform/window/internal/AccessibleTree.h"

#include "trelundo/platform/foundation/Weak.h"
#include "trelundo/platform/uikit/controls/UIControl.h"

#include <QGuiApplication>
#include <QWindow>

#include <algorithm>

namespace trelundo {

namespace {

constexpr double leastAlpha = 0.01; // below it a view cannot be pressed either

bool has(UIAccessibilityTraits traits, UIAccessibilityTraits bit) {
    return (static_cast<unsigned>(traits) & static_cast<unsigned>(bit)) != 0;
}

bool isPressable(UIView const& view) {
    auto const traits = view.accessibilityTraits();
    return has(traits, UIAccessibilityTraits::button) || has(traits, UIAccessibilityTraits::link);
}

bool isElement(UIView const& view) { return isPressable(view) || !view.accessibilityLabel().empty(); }

QAccessible::Role roleOf(UIAccessibilityTraits traits) {
    if (has(traits, UIAccessibilityTraits::button)) return QAccessible::Button;
    if (has(traits, UIAccessibilityTraits::link)) return QAccessible::Link;
    if (has(traits, UIAccessibilityTraits::image)) return QAccessible::Graphic;
    return QAccessible::StaticText;
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
        auto const view = view_.lock();
        if (!view || kind != QAccessible::Name) return {};
        auto const label = view->accessibilityLabel();
        // A button with nothing but a picture is known by its name in the code: better than silence.
        return QString::fromStdString(label.empty() ? view->accessibilityIdentifier() : label);
    }
    QRect rect() const override {
        auto const view = view_.lock();
        return view ? tree_.screenRect(*view) : QRect();
    }
    QAccessible::Role role() const override {
        auto const view = view_.lock();
        return view ? roleOf(view->accessibilityTraits()) : QAccessible::NoRole;
    }
    QAccessible::State state() const override {
        QAccessible::State state;
        auto const view = view_.lock();
        state.invalid = !view;
        if (!view) return state;
        auto const traits = view->accessibilityTraits();
        state.disabled = has(traits, UIAccessibilityTraits::notEnabled);
        state.selectable = state.selected = has(traits, UIAccessibilityTraits::selected);
        state.focusable = isPressable(*view);
        return state;
    }

    QStringList actionNames() const override {
        auto const view = view_.lock();
        return view && isPressable(*view) ? QStringList{pressAction()} : QStringList{};
    }
    void doAction(QString const& action) override {
        auto const view = view_.lock();
        if (view && action == pressAction()) tree_.press(*view);
    }
    QStringList keyBindingsForAction(QString const& /*action*/) const override { return {}; }

private:
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

AccessibleTree::AccessibleTree(QWindow& host, UIWindow& window, double zoom, std::function<void()> pressed)
    : host_(host)
    , window_(window)
    , zoom_(zoom)
    , pressed_(std::move(pressed))
    , root_(QAccessible::registerAccessibleInterface(new AccessibleWindow(*this))) {}

AccessibleTree::~AccessibleTree() {
    for (auto const& [view, id] : elements_) QAccessible::deleteAccessibleInterface(id);
    QAccessible::deleteAccessibleInterface(root_);
}

QAccessibleInterface* AccessibleTree::root() const { return QAccessible::accessibleInterface(root_); }

void AccessibleTree::collect(UIView const& view, std::vector<UIView*>& views) const {
    for (auto const& subview : view.subviews()) {
        if (subview->isHidden() || subview->alpha() < leastAlpha) continue;
        if (isElement(*subview)) views.push_back(subview.get());
        if (!isPressable(*subview)) collect(*subview, views);
    }
}

std::vector<AccessibleElement*> AccessibleTree::elements() {
    std::vector<UIView*> views;
    collect(window_, views);
    std::vector<AccessibleElement*> elements;
    for (auto* view : views) elements.push_back(elementFor(*view));
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

QRect AccessibleTree::screenRect(UIView const& view) const {
    auto const rect = view.convertRectTo(view.bounds(), nullptr);
    QRectF const shown(rect.minX() * zoom_, rect.minY() * zoom_, rect.width() * zoom_, rect.height() * zoom_);
    return shown.toAlignedRect().translated(host_.mapToGlobal(QPoint(0, 0)));
}

void AccessibleTree::press(UIView& view) {
    auto* const control = dynamic_cast<UIControl*>(&view);
    if (control && !control->isEnabled()) return;
    auto const keep = strong(view);
    if (control) control->sendActions(UIControlEvents::touchUpInside);
    pressed_();
}

void AccessibleTree::update() {
    if (!QAccessible::isActive()) return;
    std::vector<UIView*> views;
    collect(window_, views);
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

#include "PaywallAccessibility.h"

#include "PaywallWidget.h"

#include <QAccessible>
#include <QAccessibleWidget>

#include <map>
#include <vector>

using namespace trelundo;

namespace {

QAccessible::Role roleOf(AccessibleView::Role role) {
    switch (role) {
    case AccessibleView::Role::button:
        return QAccessible::Button;
    case AccessibleView::Role::link:
        return QAccessible::Link;
    case AccessibleView::Role::image:
        return QAccessible::Graphic;
    case AccessibleView::Role::text:
        break;
    }
    return QAccessible::StaticText;
}

/// The place of one view in the list; what lies there may change.
class Element : public QAccessibleInterface, public QAccessibleActionInterface {
public:
    Element(PaywallWidget& widget, std::size_t place)
        : widget_(widget)
        , place_(place) {}

    bool isValid() const override { return place_ < views().size(); }
    QObject* object() const override { return nullptr; }
    QAccessibleInterface* parent() const override { return QAccessible::queryAccessibleInterface(&widget_); }
    QAccessibleInterface* child(int /*index*/) const override { return nullptr; }
    QAccessibleInterface* childAt(int /*x*/, int /*y*/) const override { return nullptr; }
    int childCount() const override { return 0; }
    int indexOfChild(QAccessibleInterface const* /*child*/) const override { return -1; }
    void setText(QAccessible::Text /*kind*/, QString const& /*text*/) override {}
    QAccessible::Role role() const override { return isValid() ? roleOf(view().role) : QAccessible::NoRole; }
    QString text(QAccessible::Text kind) const override {
        return isValid() && kind == QAccessible::Name ? QString::fromStdString(view().name) : QString();
    }
    QRect rect() const override {
        if (!isValid()) return {};
        auto const frame = view().frame;
        QRectF const shown(frame.minX(), frame.minY(), frame.width(), frame.height());
        return shown.toAlignedRect().translated(widget_.mapToGlobal(QPoint(0, 0)));
    }
    QAccessible::State state() const override {
        QAccessible::State state;
        state.invalid = !isValid();
        if (state.invalid) return state;
        state.disabled = !view().isEnabled;
        state.selectable = state.selected = view().isSelected;
        return state;
    }
    void* interface_cast(QAccessible::InterfaceType type) override {
        return type == QAccessible::ActionInterface ? static_cast<QAccessibleActionInterface*>(this)
                                                    : nullptr;
    }
    QStringList actionNames() const override {
        return isValid() && view().isPressable ? QStringList{pressAction()} : QStringList{};
    }
    void doAction(QString const& name) override {
        if (isValid() && name == pressAction()) widget_.shell().press(view());
    }
    QStringList keyBindingsForAction(QString const& /*name*/) const override { return {}; }

private:
    std::vector<AccessibleView> views() const { return widget_.shell().accessibleViews(); }
    AccessibleView view() const { return views().at(place_); }

    PaywallWidget& widget_;
    std::size_t place_;
};

class List : public QAccessibleWidget {
public:
    explicit List(PaywallWidget& widget)
        : QAccessibleWidget(&widget, QAccessible::Pane)
        , widget_(widget) {}
    ~List() override {
        for (auto const& [place, id] : elements_) QAccessible::deleteAccessibleInterface(id);
    }

    int childCount() const override { return static_cast<int>(widget_.shell().accessibleViews().size()); }
    QAccessibleInterface* child(int index) const override {
        if (index < 0 || index >= childCount()) return nullptr;
        auto const place = static_cast<std::size_t>(index);
        auto& id = elements_[place];
        if (!id) id = QAccessible::registerAccessibleInterface(new Element(widget_, place));
        return QAccessible::accessibleInterface(id);
    }
    int indexOfChild(QAccessibleInterface const* child) const override {
        for (auto const& [place, id] : elements_)
            if (QAccessible::accessibleInterface(id) == child) return static_cast<int>(place);
        return -1;
    }
    QAccessibleInterface* childAt(int x, int y) const override {
        for (int index = childCount() - 1; index >= 0; --index)
            if (child(index)->rect().contains(x, y)) return child(index);
        return nullptr;
    }

private:
    PaywallWidget& widget_;
    mutable std::map<std::size_t, QAccessible::Id> elements_;
};

QAccessibleInterface* make(QString const& /*key*/, QObject* object) {
    auto* const widget = dynamic_cast<PaywallWidget*>(object);
    return widget ? new List(*widget) : nullptr;
}

} // namespace

void installPaywallAccessibility() { QAccessible::installFactory(make); }

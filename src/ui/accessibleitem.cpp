// SPDX-FileCopyrightText: 2026 The Pixpress authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "ui/accessibleitem.h"

#include "ui/accessibleentry.h"

#include <QAccessible>
#include <QQmlContext>
#include <QQmlEngine>
#include <QQuickWindow>

#include <algorithm>
#include <array>

namespace pixpress {

namespace {

QRect onScreen(const QQuickItem *item)
{
    return QRectF(item->mapToGlobal(QPointF()), item->size()).toAlignedRect();
}

#if QT_VERSION < QT_VERSION_CHECK(6, 8, 0) // later versions report it themselves
void tellOfEnabling(QQuickItem *item)
{
    QAccessible::State changed;
    changed.disabled = true;
    QAccessibleStateChangeEvent event(item, changed);
    QAccessible::updateAccessibility(&event);
}
#endif

QObject *attachedTo(const QQuickItem *item)
{
    for (QObject *child : item->children()) {
        // A switch has a second one, without a role.
        if (child->inherits("QQuickAccessibleAttached") && child->property("role").toInt() != 0)
            return child;
    }
    return nullptr;
}

bool isTold(const QQuickItem *item)
{
    const QObject *attached = attachedTo(item);
    return attached && !attached->property("ignored").toBool();
}

bool canBePressed(QAccessible::Role role)
{
    constexpr std::array roles{QAccessible::Button,   QAccessible::Link,
                               QAccessible::CheckBox, QAccessible::RadioButton,
                               QAccessible::PageTab,  QAccessible::ComboBox,
                               QAccessible::MenuItem, QAccessible::ListItem};
    return std::ranges::find(roles, role) != roles.end();
}

/// Those nearest below the item that are told of.
QList<QAccessibleInterface *> childrenOf(const QQuickItem *item)
{
    QList<QAccessibleInterface *> children;
    for (QQuickItem *child : item->childItems()) {
        if (isTold(child))
            children.append(QAccessible::queryAccessibleInterface(child));
        else
            children.append(childrenOf(child));
    }
    return children;
}

/// The toolkit's own dialogs are made of items that work in another way.
bool isOurs(const QQuickItem *item)
{
    const QQmlContext *context = qmlContext(item);
    return context && context->baseUrl().path().startsWith(QLatin1String("/qt/qml/Pixpress/"));
}

/// Asked with the name of an object's class, and then with those of its base classes; once for an
/// object, when it has anything to tell, which may be before it has its role.
QAccessibleInterface *makeInterface(const QString &className, QObject *object)
{
    auto *item = qobject_cast<QQuickItem *>(object);
    if (!item || !isOurs(item) || item->inherits("QQuickScrollBar"))
        return nullptr;
    if (className == QLatin1String("QQuickTextField"))
        return new AccessibleEntry(item);
    return className == QLatin1String("QQuickItem") ? new AccessibleItem(item) : nullptr;
}

} // namespace

AccessibleItem::AccessibleItem(QQuickItem *item) : QAccessibleObject(item)
{
#if QT_VERSION < QT_VERSION_CHECK(6, 8, 0)
    QObject::connect(item, &QQuickItem::enabledChanged, item, [item] { tellOfEnabling(item); });
#endif
}

QAccessibleInterface *AccessibleItem::parent() const
{
    for (QQuickItem *above = item()->parentItem(); above; above = above->parentItem()) {
        if (isTold(above))
            return QAccessible::queryAccessibleInterface(above);
    }
    return QAccessible::queryAccessibleInterface(item()->window());
}

QAccessibleInterface *AccessibleItem::child(int index) const
{
    return childrenOf(item()).value(index);
}

QAccessibleInterface *AccessibleItem::childAt(int x, int y) const
{
    for (auto *child : childrenOf(item())) {
        if (!child->state().invisible && child->rect().contains(x, y))
            return child;
    }
    return nullptr;
}

int AccessibleItem::childCount() const
{
    return static_cast<int>(childrenOf(item()).size());
}

int AccessibleItem::indexOfChild(const QAccessibleInterface *child) const
{
    return static_cast<int>(childrenOf(item()).indexOf(child));
}

QWindow *AccessibleItem::window() const
{
    return item()->window();
}

QRect AccessibleItem::rect() const
{
    return item()->window() && item()->isVisible() ? onScreen(item()) : QRect();
}

bool AccessibleItem::isScrolledAway() const
{
    QRect seen =
        onScreen(item()) & QRect(item()->window()->mapToGlobal(QPoint()), window()->size());
    for (const auto *above = item()->parentItem(); above; above = above->parentItem()) {
        if (above->clip())
            seen &= onScreen(above);
    }
    return seen.isEmpty();
}

QVariant AccessibleItem::attached(const char *property) const
{
    const QObject *attached = attachedTo(item());
    return attached ? attached->property(property) : QVariant();
}

QAccessible::Role AccessibleItem::role() const
{
#if QT_VERSION < QT_VERSION_CHECK(6, 8, 0) // where a control replaces its attached role
    if (const QVariant own = item()->property("accessibleRole"); own.isValid())
        return static_cast<QAccessible::Role>(own.toInt());
#endif
    return static_cast<QAccessible::Role>(attached("role").toInt());
}

QAccessible::State AccessibleItem::state() const
{
    QAccessible::State state;
    state.invisible = !item()->window() || !item()->isVisible() || qFuzzyIsNull(item()->opacity());
    state.offscreen = !state.invisible && isScrolledAway();
    state.disabled = !item()->isEnabled();
    state.focusable = item()->isEnabled() &&
                      (item()->activeFocusOnTab() ||
                       (role() != QAccessible::StaticText && attached("focusable").toBool()));
    state.focused = item()->hasActiveFocus() || attached("focused").toBool();
    state.checkable = attached("checkable").toBool();
    const QVariant checked = item()->property("accessibleChecked");
    state.checked = (checked.isValid() ? checked : attached("checked")).toBool();
    state.selectable = attached("selectable").toBool();
    state.selected = attached("selected").toBool();
    const QVariant expanded = item()->property("accessibleExpanded");
    state.expandable = expanded.isValid();
    state.expanded = expanded.toBool();
    state.collapsed = expanded.isValid() && !expanded.toBool();
    return state;
}

QString AccessibleItem::text(QAccessible::Text type) const
{
    switch (type) {
    case QAccessible::Name: return attached("name").toString();
    case QAccessible::Description: return attached("description").toString();
    default: return {};
    }
}

void *AccessibleItem::interface_cast(QAccessible::InterfaceType type)
{
    if (type == QAccessible::ActionInterface)
        return static_cast<QAccessibleActionInterface *>(this);
    return QAccessibleObject::interface_cast(type);
}

QStringList AccessibleItem::actionNames() const
{
    QStringList names;
    if (!item()->isEnabled())
        return names;
    if (role() == QAccessible::CheckBox)
        names.append(toggleAction());
    if (canBePressed(role()))
        names.append(pressAction());
    if (state().focusable)
        names.append(setFocusAction());
    return names;
}

void AccessibleItem::doAction(const QString &name)
{
    if (!actionNames().contains(name))
        return;
    if (name == setFocusAction())
        item()->forceActiveFocus(Qt::TabFocusReason); // so that it is seen where the keyboard is
    else
        QMetaObject::invokeMethod(attachedTo(item()),
                                  name == toggleAction() ? "toggleAction" : "pressAction");
}

void installAccessibleItems()
{
    QAccessible::installFactory(&makeInterface);
    keepPasswordsFromEvents();
}

} // namespace pixpress

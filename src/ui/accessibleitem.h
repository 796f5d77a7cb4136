// SPDX-FileCopyrightText: 2026 The Pixpress authors
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <QAccessibleObject>
#include <QQuickItem>

namespace pixpress {

/// Provides the accessibility interface of the items of our views instead of Qt Quick. In Qt up to
/// 6.11, texts can take the keyboard, what is scrolled away is not off screen, nothing is
/// expandable, and the focus that assistive technology sets is not drawn. Before 6.8, a disabled
/// control is also enabled, a control replaces the attached role by its own, and a password can be
/// read. tests/accessibility/tst_qtfaults.cpp has a reproduction of each.
///
/// Beside the attached properties of `Accessible` an item may have the properties
///     int accessibleRole        instead of the attached one, before Qt 6.8;
///     bool accessibleChecked    instead of the attached one;
///     bool accessibleExpanded   whether what it opens is open.
///
/// The toolkit has it made when assistive technology asks, and deletes it with the item. GUI thread
/// only.
class AccessibleItem : public QAccessibleObject, public QAccessibleActionInterface
{
public:
    explicit AccessibleItem(QQuickItem *item);

    QAccessibleInterface *parent() const override;
    QAccessibleInterface *child(int index) const override;
    QAccessibleInterface *childAt(int x, int y) const override;
    int childCount() const override;
    int indexOfChild(const QAccessibleInterface *child) const override;
    QWindow *window() const override;

    QRect rect() const override;
    QAccessible::Role role() const override;
    QAccessible::State state() const override;
    QString text(QAccessible::Text type) const override;
    void *interface_cast(QAccessible::InterfaceType type) override;

    QStringList actionNames() const override;
    void doAction(const QString &name) override;
    QStringList keyBindingsForAction(const QString & /*name*/) const override { return {}; }

protected:
    QQuickItem *item() const { return static_cast<QQuickItem *>(object()); }
    QVariant attached(const char *property) const;

private:
    bool isScrolledAway() const;
};

/// Has items told of as above from now on. For the start of the program.
void installAccessibleItems();

} // namespace pixpress

// SPDX-FileCopyrightText: 2026 The Pixpress authors
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <QAccessibleObject>
#include <QQuickItem>

namespace pixpress {

/// What assistive technology is told of the items of our views, in the place of what Qt Quick 6.4
/// tells: by that a disabled control is enabled, the attached role is overruled by the control's
/// own, texts can take the keyboard, what is scrolled away shows, and a password can be read.
///
/// Beside the attached properties of `Accessible` an item may have the properties
///     int accessibleRole        instead of the attached one;
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

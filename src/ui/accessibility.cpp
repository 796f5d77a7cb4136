// SPDX-FileCopyrightText: 2026 The Pixpress authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "ui/accessibility.h"

#include <QAccessible>

namespace pixpress {

void Accessibility::announce(QQuickItem *item)
{
    if (!item || !QAccessible::isActive())
        return;
#if QT_VERSION >= QT_VERSION_CHECK(6, 8, 0)
    if (auto *interface = QAccessible::queryAccessibleInterface(item)) {
        QAccessibleAnnouncementEvent event(item, interface->text(QAccessible::Name));
        QAccessible::updateAccessibility(&event);
    }
#else
    // There is no event that carries words yet. Screen readers on Linux read a notification when it
    // shows; those on Windows read what alerts.
    for (const auto type : {QAccessible::ObjectShow, QAccessible::Alert}) {
        QAccessibleEvent event(item, type);
        QAccessible::updateAccessibility(&event);
    }
#endif
}

void Accessibility::moveTo(QQuickItem *item)
{
    if (!item || !QAccessible::isActive())
        return;
    QAccessibleEvent event(item, QAccessible::Focus);
    QAccessible::updateAccessibility(&event);
}

} // namespace pixpress

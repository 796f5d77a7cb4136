// SPDX-FileCopyrightText: 2026 The Pixpress authors
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "ui/accessibleitem.h"

namespace pixpress {

/// From then on no event that Qt reports to assistive technology carries the text of a password.
void keepPasswordsFromEvents();

/// A line of text: what it shows can be read, so of a password the dots alone, and it can be
/// edited. Its property `label` names it, since Qt Quick has no name for a password.
class AccessibleEntry final : public AccessibleItem,
                              public QAccessibleTextInterface,
                              public QAccessibleEditableTextInterface
{
public:
    explicit AccessibleEntry(QQuickItem *item);

    QAccessible::State state() const override;
    QString text(QAccessible::Text type) const override;
    void *interface_cast(QAccessible::InterfaceType type) override;

    void selection(int index, int *start, int *end) const override;
    int selectionCount() const override;
    void addSelection(int start, int end) override;
    void removeSelection(int index) override;
    void setSelection(int index, int start, int end) override;
    int cursorPosition() const override;
    void setCursorPosition(int position) override;
    QString text(int start, int end) const override;
    int characterCount() const override;
    QRect characterRect(int offset) const override;
    int offsetAtPoint(const QPoint &point) const override;
    void scrollToSubstring(int start, int end) override;
    QString attributes(int offset, int *start, int *end) const override;

    void deleteText(int start, int end) override;
    void insertText(int offset, const QString &text) override;
    void replaceText(int start, int end, const QString &text) override;

private:
    QString shown() const { return item()->property("displayText").toString(); }
    void select(int start, int end);
    void edited();
};

} // namespace pixpress

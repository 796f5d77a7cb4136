// SPDX-FileCopyrightText: 2026 The Pixpress authors
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "ui/pixpressapp.h"

#include <QPointer>
#include <QQuickItem>

class QDropEvent;

namespace pixpress {

/// Makes the whole window that the item is in a target for files of other programs. The answer is
/// always "copy": after a move the file manager would delete the original. Handles the window's own
/// events, because a DropArea ends at the menu bar, and what it answers to a drag that it first
/// meets while it moves is lost. Accepts nothing while a panel is open.
class DropTarget : public QQuickItem
{
    Q_OBJECT
    QML_ELEMENT
    Q_PROPERTY(pixpress::PixpressApp *app MEMBER m_app REQUIRED)
    Q_PROPERTY(bool isTargeted READ isTargeted NOTIFY isTargetedChanged)

public:
    /// A drag hovers over the window of which at least one file would be added.
    bool isTargeted() const { return m_isTargeted; }

    bool eventFilter(QObject *watched, QEvent *event) override;

Q_SIGNALS:
    void isTargetedChanged();

protected:
    void itemChange(ItemChange change, const ItemChangeData &data) override;

private:
    void answer(QDropEvent &event);
    void setTargeted(bool targeted);

    QPointer<PixpressApp> m_app;
    QPointer<QQuickWindow> m_window;
    bool m_isTargeted = false;
};

} // namespace pixpress

// SPDX-FileCopyrightText: 2026 The Pixpress authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "ui/droptarget.h"

#include "ui/droppedfiles.h"

#include <QDropEvent>
#include <QMimeData>
#include <QQuickWindow>

namespace pixpress {

bool DropTarget::eventFilter(QObject *, QEvent *event)
{
    switch (event->type()) {
    case QEvent::DragEnter: {
        auto &drag = static_cast<QDropEvent &>(*event);
        answer(drag);
        setTargeted(drag.isAccepted() && hasSupportedFile(drag.mimeData()->urls()));
        return true;
    }
    case QEvent::DragMove: answer(static_cast<QDropEvent &>(*event)); return true;
    case QEvent::DragLeave: setTargeted(false); return true;
    case QEvent::Drop: {
        auto &drop = static_cast<QDropEvent &>(*event);
        answer(drop);
        setTargeted(false);
        if (drop.isAccepted())
            m_app->handleDrop(drop.mimeData()->urls());
        return true;
    }
    default: return false;
    }
}

void DropTarget::itemChange(ItemChange change, const ItemChangeData &data)
{
    if (change == ItemSceneChange) {
        if (m_window)
            m_window->removeEventFilter(this);
        m_window = data.window;
        if (m_window)
            m_window->installEventFilter(this);
    }
    QQuickItem::itemChange(change, data);
}

void DropTarget::answer(QDropEvent &event)
{
    event.setDropAction(Qt::CopyAction); // stays what it was if copying is not offered
    event.setAccepted(event.dropAction() == Qt::CopyAction && m_app &&
                      m_app->acceptsDrag(event.mimeData()->urls()));
}

void DropTarget::setTargeted(bool targeted)
{
    if (std::exchange(m_isTargeted, targeted) != targeted)
        Q_EMIT isTargetedChanged();
}

} // namespace pixpress

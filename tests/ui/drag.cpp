// SPDX-FileCopyrightText: 2026 The Pixpress authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "drag.h"

#include <QCoreApplication>
#include <QDragEnterEvent>

namespace pixpress::test {

namespace {

/// File managers offer all of these, and prefer moving.
constexpr Qt::DropActions offered = Qt::MoveAction | Qt::CopyAction | Qt::LinkAction;

} // namespace

void Drag::fill()
{
    m_data.clear();
    if (!urls.isEmpty())
        m_data.setUrls(urls);
    if (!text.isEmpty())
        m_data.setText(text);
}

void Drag::send(QQuickWindow *window, QDropEvent &&event)
{
    QCoreApplication::sendEvent(window, &event);
    m_accepted = event.isAccepted();
    m_action = event.dropAction();
}

void Drag::enter(QQuickWindow *window, int x, int y)
{
    fill();
    send(window, QDragEnterEvent({x, y}, offered, &m_data, Qt::LeftButton, Qt::NoModifier));
}

void Drag::move(QQuickWindow *window, int x, int y)
{
    send(window, QDragMoveEvent({x, y}, offered, &m_data, Qt::LeftButton, Qt::NoModifier));
}

void Drag::leave(QQuickWindow *window)
{
    QDragLeaveEvent event;
    QCoreApplication::sendEvent(window, &event);
}

void Drag::drop(QQuickWindow *window, int x, int y)
{
    fill();
    send(window,
         QDropEvent({qreal(x), qreal(y)}, offered, &m_data, Qt::LeftButton, Qt::NoModifier));
}

} // namespace pixpress::test

// SPDX-FileCopyrightText: 2026 The Pixpress authors
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <QDropEvent>
#include <QMimeData>
#include <QQmlEngine>
#include <QQuickWindow>
#include <QUrl>

namespace pixpress::test {

/// A drag from another program, as it arrives at a window.
class Drag : public QObject
{
    Q_OBJECT
    QML_ELEMENT
    Q_PROPERTY(QList<QUrl> urls MEMBER urls)
    Q_PROPERTY(QString text MEMBER text)
    Q_PROPERTY(bool accepted READ isAccepted)
    Q_PROPERTY(int action READ action)

public:
    /// At this place of the window. Whether anything takes it is in `accepted` afterwards, and what
    /// would be done with the files in `action`.
    Q_INVOKABLE void enter(QQuickWindow *window, int x, int y);
    Q_INVOKABLE void move(QQuickWindow *window, int x, int y);
    Q_INVOKABLE void leave(QQuickWindow *window);
    Q_INVOKABLE void drop(QQuickWindow *window, int x, int y);

    bool isAccepted() const { return m_accepted; }
    int action() const { return m_action; }

    QList<QUrl> urls;
    QString text;

private:
    void fill();
    void send(QQuickWindow *window, QDropEvent &&event);

    QMimeData m_data;
    bool m_accepted = false;
    Qt::DropAction m_action = Qt::IgnoreAction;
};

} // namespace pixpress::test

// SPDX-FileCopyrightText: 2026 The Pixpress authors
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <QByteArray>
#include <QImage>
#include <QList>
#include <QRect>

#include <memory>

struct xcb_connection_t;

namespace pixpress::test {

/// What anybody connected to an X display can see of its windows. A window that is gone has no
/// properties and no area.
class XDisplay
{
public:
    using Window = quint32;

    /// `name` like ":1". The X server must be running.
    explicit XDisplay(const QByteArray &name);

    /// The window that the window manager keeps for a process; 0 when there is none yet.
    Window windowOf(qint64 processId) const;
    Window activeWindow() const;

    QByteArray title(Window window) const;
    QByteArray className(Window window) const; ///< By which desktops find its application.
    QImage icon(Window window) const;          ///< The first that it offers, the smallest.
    QSize minimumSize(Window window) const;    ///< As the window manager was told.
    QRect area(Window window) const;           ///< On the screen, without the frame.
    QImage picture(const QRect &area) const;
    /// Has the window manager ask a window to close, as a taskbar does and the button in its frame.
    void close(Window window) const;

private:
    QByteArray property(Window window, const char *name) const;
    QList<quint32> numbers(Window window, const char *name) const;
    quint32 atom(const char *name) const; ///< 0 when no client knows it.

    std::unique_ptr<xcb_connection_t, void (*)(xcb_connection_t *)> m_connection;
    Window m_root = 0;
};

} // namespace pixpress::test

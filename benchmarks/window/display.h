// SPDX-FileCopyrightText: 2026 The Pixpress authors
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <QByteArray>
#include <QList>

#include <memory>

struct xcb_connection_t;

namespace bench {

/// What anybody connected to an X display sees of its windows.
class Display
{
public:
    using Window = quint32;

    /// `name` like ":1". The X server must be running.
    explicit Display(const QByteArray &name);

    /// Whether the window manager keeps a window of this process that is shown and has more than
    /// one colour in it. Helper windows, which no window manager keeps, do not count.
    bool showsWindowOf(qint64 processId) const;

private:
    QList<quint32> numbers(Window window, const char *property) const;
    bool isPainted(Window window) const;

    std::unique_ptr<xcb_connection_t, void (*)(xcb_connection_t *)> m_connection;
    Window m_root = 0;
};

} // namespace bench

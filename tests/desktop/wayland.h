// SPDX-FileCopyrightText: 2026 The Pixpress authors
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "program.h"

#include <QJsonObject>

namespace pixpress::test {

/// A Wayland compositor in a window of a test's desktop, which moves its pointer too. Ends with the
/// object.
class Wayland
{
public:
    explicit Wayland(const Desktop &desktop);
    ~Wayland();

    /// Returns when programs can show their windows in it; false when it does not come.
    bool start();

    /// This, as something that a program is to run in.
    Invocation with(Invocation invocation) const;
    /// What the compositor knows of a program's window: "app_id", "name" and more. Empty until it
    /// shows.
    QJsonObject window(const Program &program) const;
    QRect area(const Program &program) const; ///< On the desktop's screen, like its picture.
    QImage picture(const Program &program) const;

private:
    QJsonObject tree() const;

    const Desktop &m_desktop;
    QProcess m_process;
    XDisplay::Window m_window = 0; ///< Its own, on the desktop.
};

} // namespace pixpress::test

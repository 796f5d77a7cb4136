// SPDX-FileCopyrightText: 2026 The Pixpress authors
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "home.h"
#include "xdisplay.h"

#include <QProcess>

#include <optional>

namespace pixpress::test {

/// How long to wait for what must come, in milliseconds: as long as a busy machine may take.
constexpr int patience = 60'000;

/// A desktop of the test's own: an X server that no screen shows, a window manager, a message bus
/// on which nothing is started by itself, and a home. All of it ends with the object.
class Desktop : public Home
{
public:
    Desktop();
    ~Desktop();

    /// Returns when everything says that it is ready; false when something does not.
    bool start();

    const XDisplay &display() const { return *m_display; }
    QString busAddress() const { return m_busAddress; }
    QProcessEnvironment environment() const; ///< With all of it.

    /// Presses a key like "ctrl+comma", or several one after the other.
    void press(const QStringList &keys) const;
    void type(const QString &text) const;
    void resize(XDisplay::Window window, QSize to) const; ///< Asks; the window manager decides.
    void movePointer(QPoint to) const;
    void restPointer() const; ///< Where it hovers over nothing.
    void pressButton() const;
    void releaseButton() const;

private:
    void xdotool(const QStringList &arguments) const;
    bool startServer();
    bool startBus();
    bool startWindowManager();

    QProcess m_bus;
    QProcess m_server;
    std::optional<XDisplay> m_display;
    QProcess m_windowManager;
    QString m_displayName;
    QString m_busAddress;
};

/// Has a process that is started after this end when this one does, even if this one is killed.
void bindToThisProcess(QProcess &process);

} // namespace pixpress::test

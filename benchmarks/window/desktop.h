// SPDX-FileCopyrightText: 2026 The Pixpress authors
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "display.h"

#include <QProcess>
#include <QTemporaryDir>

#include <functional>
#include <optional>

namespace bench {

/// A desktop of the benchmark's own, alike for every program that is measured on it: an X server
/// that no screen shows, a window manager, a message bus on which nothing is started by itself, and
/// an empty home.
class Desktop
{
public:
    Desktop();
    ~Desktop();

    const Display &display() const { return *m_display; }
    QProcessEnvironment environment() const;

private:
    QString startAndRead(QProcess &process, const QString &program, const QStringList &arguments);

    QTemporaryDir m_home;
    QProcess m_bus;
    QProcess m_server;
    std::optional<Display> m_display;
    QProcess m_windowManager;
    QString m_displayName;
    QString m_busAddress;
};

/// Has the process end with this one, also when this one is killed.
void bindToBenchmark(QProcess &process);

/// Asks again and again, every millisecond. Fails after half a minute.
void waitUntil(const QString &what, const std::function<bool()> &holds);

} // namespace bench

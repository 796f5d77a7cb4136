// SPDX-FileCopyrightText: 2026 The Pixpress authors
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "desktop.h"

#include <QElapsedTimer>
#include <QProcess>

#include <functional>

namespace bench {

namespace test = pixpress::test;

/// A desktop that is ready, as the tests have it. Fails when some program of it does not start.
class Desktop : public test::Desktop
{
public:
    Desktop();
};

/// Asks again and again, every millisecond. Fails after half a minute.
void waitUntil(const QString &what, const std::function<bool()> &holds);

/// A program with a window, looked at from outside. Ends with the object.
class Program
{
public:
    /// What its threads have done so far.
    struct Activity
    {
        qint64 wakeUps = 0; ///< Times that a thread was given a processor.
        double processorMs = 0;
        QString threads; ///< For people: the wake-ups of each.
    };

    Program(const Desktop &desktop, const QString &executable, const QStringList &arguments = {},
            const QList<std::pair<QString, QString>> &variables = {});
    ~Program();

    bool isPainted() const; ///< Whether something is seen in its window.
    double secondsSinceStart() const;

    /// A field of its memory statistics, such as "VmHWM", in bytes.
    qint64 memoryFigure(const QByteArray &name) const;
    Activity activity() const;

private:
    QString file(const QString &name) const;

    const Desktop &m_desktop;
    QElapsedTimer m_timer;
    QProcess m_process;
};

} // namespace bench

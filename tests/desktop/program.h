// SPDX-FileCopyrightText: 2026 The Pixpress authors
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "desktop.h"

#include <functional>

namespace pixpress::test {

struct Invocation
{
    QStringList arguments = {};
    QList<std::pair<QString, QString>> environment = {}; ///< Beside the desktop's.
};

/// A program with a window, on a desktop of a test.
class Program
{
public:
    Program(const Desktop &desktop, const QString &executable, const Invocation &invocation = {});
    ~Program();

    /// Waits until its window is the active one, has been painted, and looks the same twice.
    bool isInFront();
    bool isRunning() const { return m_process.state() == QProcess::Running; }
    /// The status it ends with by itself; -1 when it does not, or crashes.
    int exitStatus();

    qint64 processId() const { return m_process.processId(); }
    XDisplay::Window window() const;
    QRect area() const; ///< Of its window, on the screen.
    QImage picture() const;

    QByteArray output(); ///< All of it so far.
    QByteArray errors();

private:
    const Desktop &m_desktop;
    QProcess m_process;
    QByteArray m_output;
    QByteArray m_errors;
};

/// Waits until there is something in a picture that is taken again and again, and it is the same
/// twice.
bool settles(const std::function<QImage()> &picture);
/// How many points of a picture are of a strong red, as failures are written in.
int redPoints(const QImage &picture);
/// How many are of a strong green, as what was saved is written in.
int greenPoints(const QImage &picture);
/// Whether the logo is in it, which greets where there is no key.
bool showsLogo(const QImage &picture);

/// How the program that offers files is told which.
Invocation offering(const QStringList &files);
/// Drags what `source` offers from one point of the screen to another. Returns the drop's actions
/// as they were offered, and the one carried out at last.
QStringList drag(const Desktop &desktop, Program &source, QPoint from, QPoint to);
/// Has a program of its own offer files, and drags them to a point of the screen.
QStringList drag(const Desktop &desktop, const QStringList &files, QPoint to);
/// The same onto the middle of the target.
QStringList drag(const Desktop &desktop, const QStringList &files, const Program &target);

} // namespace pixpress::test

// SPDX-FileCopyrightText: 2026 The Pixpress authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "desktop.h"

#include <QTest>

#include <csignal>
#include <sys/prctl.h>

using namespace Qt::StringLiterals;

namespace pixpress::test {

namespace {

/// What a process tells on its output once it is ready; empty when it ends without a word.
QString readyLine(QProcess &process)
{
    const bool said = QTest::qWaitFor(
        [&] { return process.canReadLine() || process.state() == QProcess::NotRunning; }, patience);
    return said ? QString::fromUtf8(process.readLine()).trimmed() : QString();
}

void end(QProcess &process)
{
    process.terminate(); // it then removes its lock and its socket
    if (!process.waitForFinished()) {
        process.kill();
        process.waitForFinished();
    }
}

const QByteArray busConfiguration = R"(<busconfig>
  <type>session</type>
  <listen>unix:runtime=yes</listen>
  <policy context="default">
    <allow send_destination="*" eavesdrop="true"/>
    <allow eavesdrop="true"/>
    <allow own="*"/>
  </policy>
</busconfig>
)";

} // namespace

void bindToThisProcess(QProcess &process)
{
    process.setChildProcessModifier([] { prctl(PR_SET_PDEATHSIG, SIGTERM); });
}

Desktop::Desktop()
{
    for (QProcess *process : {&m_bus, &m_server, &m_windowManager})
        bindToThisProcess(*process);
}

Desktop::~Desktop()
{
    end(m_windowManager);
    m_display.reset();
    end(m_server);
    end(m_bus);
}

bool Desktop::start()
{
    return isValid() && startBus() && startServer() && startWindowManager();
}

bool Desktop::startBus()
{
    const QString configuration = configure(u"bus.conf"_s, busConfiguration);
    m_bus.setProcessEnvironment(Home::environment());
    m_bus.start(u"dbus-daemon"_s, {u"--config-file="_s + configuration, u"--nofork"_s,
                                   u"--nosyslog"_s, u"--print-address"_s});
    m_busAddress = readyLine(m_bus);
    return !m_busAddress.isEmpty();
}

bool Desktop::startServer()
{
    // It takes the first free number itself, and tells it when it takes connections; those of
    // other users too (-ac), since a compositor in it may not be root.
    m_server.start(u"Xvfb"_s, {u"-displayfd"_s, u"1"_s, u"-screen"_s, u"0"_s, u"1600x1000x24"_s,
                               u"-nolisten"_s, u"tcp"_s, u"-noreset"_s, u"-ac"_s});
    const QString number = readyLine(m_server);
    if (number.isEmpty())
        return false;
    m_displayName = u':' + number;
    m_display.emplace(m_displayName.toLatin1());
    return true;
}

bool Desktop::startWindowManager()
{
    m_windowManager.setProcessEnvironment(environment());
    // It tells other clients too early that it is there: windows that appear before it has begun
    // are lost on it.
    m_windowManager.start(u"openbox"_s, {u"--sm-disable"_s, u"--startup"_s, u"echo ready"_s});
    QByteArray output;
    const bool isReady = QTest::qWaitFor(
        [&] {
            output += m_windowManager.readAll();
            return output.endsWith("ready\n");
        },
        patience);
    restPointer();
    return isReady;
}

QProcessEnvironment Desktop::environment() const
{
    QProcessEnvironment environment = Home::environment();
    environment.insert(u"QT_QPA_PLATFORM"_s, u"xcb"_s);
    environment.insert(u"DBUS_SESSION_BUS_ADDRESS"_s, m_busAddress);
    environment.insert(u"DISPLAY"_s, m_displayName);
    return environment;
}

void Desktop::press(const QStringList &keys) const
{
    xdotool(QStringList{u"key"_s} + keys);
}

void Desktop::type(const QString &text) const
{
    xdotool({u"type"_s, text});
}

void Desktop::resize(XDisplay::Window window, QSize to) const
{
    xdotool({u"windowsize"_s, QString::number(window), QString::number(to.width()),
             QString::number(to.height())});
}

void Desktop::movePointer(QPoint to) const
{
    xdotool({u"mousemove"_s, QString::number(to.x()), QString::number(to.y())});
}

void Desktop::restPointer() const
{
    movePointer({1599, 999});
}

void Desktop::pressButton() const
{
    xdotool({u"mousedown"_s, u"1"_s});
}

void Desktop::releaseButton() const
{
    xdotool({u"mouseup"_s, u"1"_s});
}

void Desktop::xdotool(const QStringList &arguments) const
{
    QProcess process;
    process.setProcessEnvironment(environment());
    process.start(u"xdotool"_s, arguments);
    if (!process.waitForFinished() || process.exitCode() != 0)
        qFatal("xdotool: %s", process.readAllStandardError().constData());
}

} // namespace pixpress::test

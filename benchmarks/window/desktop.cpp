// SPDX-FileCopyrightText: 2026 The Pixpress authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "desktop.h"

#include "../support.h"

#include <QDir>
#include <QElapsedTimer>
#include <QFile>
#include <QThread>

#include <csignal>
#include <sys/prctl.h>

using namespace Qt::StringLiterals;

namespace bench {

namespace {

constexpr qint64 patience = 30'000; // milliseconds

void end(QProcess &process)
{
    process.kill();
    process.waitForFinished();
}

const QByteArray busConfiguration = R"(<busconfig>
  <type>session</type>
  <listen>unix:tmpdir=/tmp</listen>
  <policy context="default">
    <allow send_destination="*" eavesdrop="true"/>
    <allow eavesdrop="true"/>
    <allow own="*"/>
  </policy>
</busconfig>
)";

} // namespace

void bindToBenchmark(QProcess &process)
{
    process.setChildProcessModifier([] { prctl(PR_SET_PDEATHSIG, SIGKILL); });
}

void waitUntil(const QString &what, const std::function<bool()> &holds)
{
    QElapsedTimer timer;
    timer.start();
    while (!holds()) {
        if (timer.hasExpired(patience))
            throw Failure(u"Waited in vain: "_s + what);
        QThread::usleep(1000);
    }
}

Desktop::Desktop()
{
    for (const QString &folder : {u"config"_s, u"cache"_s, u"data"_s, u"run"_s})
        QDir(m_home.path()).mkdir(folder);
    QFile::setPermissions(m_home.filePath(u"run"_s),
                          QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);

    QFile configuration(m_home.filePath(u"bus.conf"_s));
    if (!configuration.open(QIODevice::WriteOnly) || configuration.write(busConfiguration) < 0)
        throw Failure(u"No temporary files can be made: "_s + configuration.errorString());
    configuration.close();
    m_busAddress = startAndRead(m_bus, u"dbus-daemon"_s,
                                {u"--config-file="_s + configuration.fileName(), u"--nofork"_s,
                                 u"--nosyslog"_s, u"--print-address"_s});

    // It takes the first free number itself, and tells it when it takes connections.
    m_displayName =
        u':' + startAndRead(m_server, u"Xvfb"_s,
                            {u"-displayfd"_s, u"1"_s, u"-screen"_s, u"0"_s, u"1600x1000x24"_s,
                             u"-nolisten"_s, u"tcp"_s, u"-noreset"_s});
    m_display.emplace(m_displayName.toLatin1());

    bindToBenchmark(m_windowManager);
    m_windowManager.setProcessEnvironment(environment());
    // It tells other clients too early that it is there: windows that appear before it has begun
    // are lost on it.
    m_windowManager.start(u"openbox"_s, {u"--sm-disable"_s, u"--startup"_s, u"echo ready"_s});
    QByteArray output;
    waitUntil(u"openbox starts"_s, [&] {
        m_windowManager.waitForReadyRead(0);
        output += m_windowManager.readAll();
        return output.endsWith("ready\n");
    });
}

Desktop::~Desktop()
{
    end(m_windowManager);
    m_display.reset();
    end(m_server);
    end(m_bus);
}

QProcessEnvironment Desktop::environment() const
{
    QProcessEnvironment environment;
    environment.insert(u"PATH"_s, qEnvironmentVariable("PATH"));
    environment.insert(u"LC_ALL"_s, u"C.UTF-8"_s);
    environment.insert(u"HOME"_s, m_home.path());
    environment.insert(u"XDG_CONFIG_HOME"_s, m_home.filePath(u"config"_s));
    environment.insert(u"XDG_CACHE_HOME"_s, m_home.filePath(u"cache"_s));
    environment.insert(u"XDG_DATA_HOME"_s, m_home.filePath(u"data"_s));
    environment.insert(u"XDG_RUNTIME_DIR"_s, m_home.filePath(u"run"_s));
    environment.insert(u"QT_QPA_PLATFORM"_s, u"xcb"_s);
    environment.insert(u"DBUS_SESSION_BUS_ADDRESS"_s, m_busAddress);
    environment.insert(u"DISPLAY"_s, m_displayName);
    return environment;
}

QString Desktop::startAndRead(QProcess &process, const QString &program,
                              const QStringList &arguments)
{
    bindToBenchmark(process);
    process.start(program, arguments);
    while (!process.canReadLine()) {
        if (!process.waitForReadyRead())
            throw Failure(u"%1 does not start: %2"_s.arg(program, process.errorString()));
    }
    return QString::fromUtf8(process.readLine()).trimmed();
}

} // namespace bench

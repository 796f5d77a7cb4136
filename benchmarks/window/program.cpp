// SPDX-FileCopyrightText: 2026 The Pixpress authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "program.h"

#include "../support.h"

#include <QDir>
#include <QFile>
#include <QThread>

#include <algorithm>
#include <span>

using namespace Qt::StringLiterals;

namespace bench {

namespace {

constexpr qint64 patience = 30'000; // milliseconds

/// Empty when there is no such file, since threads come and go.
QByteArray content(const QString &path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

/// Of a line "name: number" among others.
qint64 field(const QByteArray &lines, const QByteArray &name)
{
    for (const QByteArray &line : lines.split('\n')) {
        if (line.startsWith(name + ':'))
            return line.simplified().split(' ').value(1).toLongLong();
    }
    return 0;
}

/// Whether an image of 32 bits a point has more than one colour.
bool showsSomething(const QImage &image)
{
    const std::span points(reinterpret_cast<const QRgb *>(image.constBits()),
                           static_cast<size_t>(image.sizeInBytes()) / sizeof(QRgb));
    return std::ranges::any_of(points,
                               [&](QRgb point) { return ((point ^ points[0]) & RGB_MASK) != 0; });
}

} // namespace

Desktop::Desktop()
{
    if (!start())
        throw Failure(u"Xvfb, openbox or dbus-daemon does not start."_s);
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

Program::Program(const Desktop &desktop, const QString &executable, const QStringList &arguments,
                 const QList<std::pair<QString, QString>> &variables)
    : m_desktop(desktop)
{
    QProcessEnvironment environment = desktop.environment();
    for (const auto &[name, value] : variables)
        environment.insert(name, value);
    m_process.setProcessEnvironment(environment);
    m_process.setStandardOutputFile(QProcess::nullDevice());
    m_process.setStandardErrorFile(QProcess::nullDevice());
    test::bindToThisProcess(m_process);
    m_timer.start();
    m_process.start(executable, arguments);
    if (!m_process.waitForStarted())
        throw Failure(u"%1 does not start: %2"_s.arg(executable, m_process.errorString()));
}

Program::~Program()
{
    m_process.kill();
    m_process.waitForFinished();
}

bool Program::isPainted() const
{
    const test::XDisplay &display = m_desktop.display();
    const auto window = display.windowOf(m_process.processId());
    if (window == 0)
        return false;
    // No more than the menu: asking for all of it would take the time of what is measured.
    QRect menu = display.area(window);
    menu.setHeight(std::min(menu.height(), 32));
    return showsSomething(display.picture(menu));
}

double Program::secondsSinceStart() const
{
    return static_cast<double>(m_timer.nsecsElapsed()) / 1e9;
}

qint64 Program::memoryFigure(const QByteArray &name) const
{
    return field(content(file(u"status"_s)), name) * 1024;
}

Program::Activity Program::activity() const
{
    Activity sum;
    QStringList threads;
    for (const QString &thread :
         QDir(file(u"task"_s)).entryList(QDir::Dirs | QDir::NoDotAndDotDot)) {
        const QString path = file(u"task/"_s + thread);
        const QByteArray status = content(path + u"/status"_s);
        const qint64 wakeUps =
            field(status, "voluntary_ctxt_switches") + field(status, "nonvoluntary_ctxt_switches");
        sum.wakeUps += wakeUps;
        sum.processorMs += content(path + u"/schedstat"_s).split(' ').value(0).toDouble() / 1e6;
        threads +=
            u"%1 %2"_s.arg(QString::fromUtf8(content(path + u"/comm"_s)).trimmed()).arg(wakeUps);
    }
    sum.threads = threads.join(u", "_s);
    return sum;
}

QString Program::file(const QString &name) const
{
    return u"/proc/%1/%2"_s.arg(m_process.processId()).arg(name);
}

} // namespace bench

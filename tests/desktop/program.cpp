// SPDX-FileCopyrightText: 2026 The Pixpress authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "program.h"

#include <QSet>
#include <QTest>
#include <QUrl>

#include <algorithm>
#include <span>

using namespace Qt::StringLiterals;

namespace pixpress::test {

namespace {

template <typename Wanted>
int count(const QImage &picture, Wanted isWanted)
{
    qsizetype points = 0;
    for (int y = 0; y < picture.height(); ++y) {
        const std::span line(reinterpret_cast<const QRgb *>(picture.constScanLine(y)),
                             static_cast<size_t>(picture.width()));
        points += std::ranges::count_if(line, isWanted);
    }
    return static_cast<int>(points);
}

/// A window has one colour, or some of its neighbours', until its content is there; content has the
/// many of letters with smooth edges.
bool isPainted(const QImage &picture)
{
    QSet<QRgb> colours;
    for (int y = 0; y < picture.height(); ++y) {
        for (int x = 0; x < picture.width() && colours.size() <= 32; ++x)
            colours.insert(picture.pixel(x, y));
    }
    return colours.size() > 32;
}

} // namespace

Program::Program(const Desktop &desktop, const QString &executable, const Invocation &invocation)
    : m_desktop(desktop)
{
    QProcessEnvironment environment = desktop.environment();
    for (const auto &[name, value] : invocation.environment)
        environment.insert(name, value);
    m_process.setProcessEnvironment(environment);
    m_process.setWorkingDirectory(desktop.path({}));
    bindToThisProcess(m_process);
    m_process.start(executable, invocation.arguments);
}

Program::~Program()
{
    m_process.kill();
    m_process.waitForFinished();
    if (QTest::currentTestFailed() && !errors().isEmpty())
        qWarning("The program said:\n%s", m_errors.constData());
}

bool Program::isInFront()
{
    return settles([this] {
        const auto own = window();
        return own != 0 && m_desktop.display().activeWindow() == own ? picture() : QImage();
    });
}

int Program::exitStatus()
{
    const bool ended =
        QTest::qWaitFor([this] { return m_process.state() == QProcess::NotRunning; }, patience);
    return ended && m_process.exitStatus() == QProcess::NormalExit ? m_process.exitCode() : -1;
}

XDisplay::Window Program::window() const
{
    return m_desktop.display().windowOf(processId());
}

QRect Program::area() const
{
    return m_desktop.display().area(window());
}

QImage Program::picture() const
{
    return m_desktop.display().picture(area());
}

QByteArray Program::output()
{
    m_output += m_process.readAllStandardOutput();
    return m_output;
}

QByteArray Program::errors()
{
    m_errors += m_process.readAllStandardError();
    return m_errors;
}

bool settles(const std::function<QImage()> &picture)
{
    QImage before;
    return QTest::qWaitFor(
        [&] {
            const QImage now = picture();
            const bool isSettled = isPainted(now) && now == before;
            before = now;
            return isSettled;
        },
        patience);
}

int redPoints(const QImage &picture)
{
    return count(picture, [](QRgb point) {
        return qRed(point) > 180 && qGreen(point) < 70 && qBlue(point) < 70;
    });
}

int greenPoints(const QImage &picture)
{
    return count(picture, [](QRgb point) {
        return qGreen(point) - qRed(point) > 60 && qGreen(point) - qBlue(point) > 40;
    });
}

bool showsLogo(const QImage &picture)
{
    // Nothing else is as dark a blue as the lower part of its circle, which is 88 points wide.
    const auto isDarkBlue = [](QRgb point) {
        return qGreen(point) < 95 && qBlue(point) - qRed(point) > 90;
    };
    return count(picture, isDarkBlue) > 1000;
}

Invocation offering(const QStringList &files)
{
    QStringList urls;
    for (const QString &file : files)
        urls.append(QString::fromLatin1(QUrl::fromLocalFile(file).toEncoded()));
    return {.arguments = urls};
}

QStringList drag(const Desktop &desktop, Program &source, QPoint from, QPoint to)
{
    const auto says = [&source](const char *word) {
        return QTest::qWaitFor([&] { return source.output().contains(word); }, patience);
    };
    desktop.movePointer(from);
    desktop.pressButton();
    if (!says("started"))
        return {u"the drag does not start"_s};
    desktop.movePointer(to);
    const bool isOver = says("offered");
    desktop.releaseButton();
    desktop.restPointer();
    if (!isOver || !says("read"))
        return {u"the target does not answer"_s, QString::fromUtf8(source.output())};
    QStringList actions = QString::fromUtf8(source.output()).split(u'\n', Qt::SkipEmptyParts);
    actions.removeDuplicates();
    return actions;
}

QStringList drag(const Desktop &desktop, const QStringList &files, QPoint to)
{
    Program source(desktop, QStringLiteral(PIXPRESS_DRAG_SOURCE), offering(files));
    if (!source.isInFront())
        return {u"the source does not show"_s};
    return drag(desktop, source, source.area().center(), to);
}

QStringList drag(const Desktop &desktop, const QStringList &files, const Program &target)
{
    return drag(desktop, files, target.area().center());
}

} // namespace pixpress::test

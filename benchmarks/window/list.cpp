// SPDX-FileCopyrightText: 2026 The Pixpress authors
// SPDX-License-Identifier: GPL-3.0-or-later

// Drops the files of a folder on the window, with a service that answers at once, and scrolls the
// list when all are compressed. Prints the longest stall of the event loop in milliseconds, the
// resident bytes with the idle list, the median and the longest time of a frame in milliseconds,
// and the longest processor time of one.

#include "../support.h"
#include "ui/application.h"
#include "ui/pixpressapp.h"

#include <QDir>
#include <QElapsedTimer>
#include <QQmlApplicationEngine>
#include <QQuickItem>
#include <QQuickWindow>
#include <QTimer>

#include <chrono>
#include <cstdio>
#include <ctime>

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace {

constexpr std::chrono::milliseconds calm = 500ms; // without a frame: nothing goes on any more

double milliseconds(const QElapsedTimer &timer)
{
    return static_cast<double>(timer.nsecsElapsed()) / 1e6;
}

/// Milliseconds that this thread has had a processor for. Unlike a clock it stands still while
/// others have it: other threads, other programs, other machines of the same host.
double processorTime()
{
    timespec time{};
    ::clock_gettime(CLOCK_THREAD_CPUTIME_ID, &time);
    return static_cast<double>(time.tv_sec) * 1e3 + static_cast<double>(time.tv_nsec) / 1e6;
}

/// The application, which times its frames: all that a window does for one, from the layout to the
/// finished picture.
class TimedApplication : public pixpress::Application
{
public:
    using Application::Application;

    bool notify(QObject *receiver, QEvent *event) override
    {
        if (event->type() != QEvent::UpdateRequest)
            return Application::notify(receiver, event);
        QElapsedTimer timer;
        timer.start();
        const bool handled = Application::notify(receiver, event);
        lastFrame = milliseconds(timer);
        sinceFrame.start();
        return handled;
    }

    double lastFrame = 0;
    QElapsedTimer sinceFrame;
};

/// Notes how late a timer of one millisecond is.
class StallMeter
{
public:
    StallMeter()
    {
        m_timer.setTimerType(Qt::PreciseTimer);
        m_timer.callOnTimeout([this] {
            m_longest = std::max(m_longest, milliseconds(m_sinceLast));
            m_sinceLast.start();
        });
        m_sinceLast.start();
        m_timer.start(1ms);
    }

    double longest() const { return m_longest; }

private:
    QTimer m_timer;
    QElapsedTimer m_sinceLast;
    double m_longest = 0;
};

/// Runs the event loop until no frame is painted any more and `isDone` holds.
void settle(TimedApplication &application, const std::function<bool()> &isDone)
{
    QEventLoop loop;
    QTimer timer;
    application.sinceFrame.start();
    timer.callOnTimeout([&] {
        if (isDone() && application.sinceFrame.hasExpired(calm.count()))
            loop.quit();
    });
    timer.start(50ms);
    loop.exec();
}

struct Frames
{
    bench::Samples times;          ///< Milliseconds, each with the step before it.
    bench::Samples processorTimes; ///< The same without what was waited for.
};

/// Scrolls by a whole view at a time, so that every frame shows other rows.
Frames scroll(TimedApplication &application, QQuickWindow &window, QQuickItem &list)
{
    Frames frames;
    QEventLoop loop;
    const double start = list.property("originY").toDouble();
    const double end = start + list.property("contentHeight").toDouble() - list.height();
    double position = start;
    double stepTime = 0;
    double stepBegin = 0; // in processor time
    const auto step = [&] {
        if (position >= end)
            return loop.quit();
        position = std::min(position + list.height(), end);
        QElapsedTimer timer;
        timer.start();
        stepBegin = processorTime();
        list.setProperty("contentY", position);
        stepTime = milliseconds(timer);
    };
    // Queued, since the time of a frame is known only when the window is done with it.
    QObject::connect(
        &window, &QQuickWindow::frameSwapped, &loop,
        [&] {
            frames.times.add(application.lastFrame + std::exchange(stepTime, 0));
            frames.processorTimes.add(processorTime() - stepBegin);
            step();
        },
        Qt::QueuedConnection);
    step();
    loop.exec();
    return frames;
}

int run(TimedApplication &application)
{
    const QDir folder(application.arguments().value(1));
    QList<QUrl> files;
    for (const QString &name : folder.entryList(QDir::Files, QDir::Name))
        files += QUrl::fromLocalFile(folder.filePath(name));

    const bench::Server server;
    pixpress::TransientSettings settings;
    pixpress::KeychainHelper::saveAPIKey(settings, u"key"_s);
    pixpress::PixpressApp app(settings, {.baseURL = server.url(), .limits = {}});
    const auto engine = application.takeEngine();
    if (!app.show(*engine))
        throw bench::Failure(u"There is no window."_s);
    auto &window = *qobject_cast<QQuickWindow *>(engine->rootObjects().constFirst());
    settle(application, [&] { return window.isExposed(); });

    double longestStall = 0;
    {
        const StallMeter meter;
        QMetaObject::invokeMethod(&app, [&] { app.handleDrop(files); }, Qt::QueuedConnection);
        auto &queue = *app.appState()->compressionQueue();
        settle(application, [&] {
            return queue.hasEndedTasks() && queue.firstPending() < 0 && !queue.hasActiveTasks();
        });
        if (queue.completedCount() != files.size())
            throw bench::Failure(u"Not all files were compressed."_s);
        longestStall = meter.longest();
    }
    auto *const list = window.findChild<QQuickItem *>(u"rows"_s);
    if (!list)
        throw bench::Failure(u"There is no list."_s);
    files.clear();
    const qint64 memory = bench::memoryFigure("VmRSS");
    const Frames frames = scroll(application, window, *list);
    std::printf("%f %lld %f %f %f\n", longestStall, static_cast<long long>(memory),
                frames.times.median(), frames.times.largest(), frames.processorTimes.largest());
    return 0;
}

} // namespace

int main(int argc, char *argv[])
{
    QCoreApplication::setApplicationName(u"bench_list"_s);
    TimedApplication application(argc, argv);
    try {
        return run(application);
    } catch (const bench::Failure &failure) {
        std::fprintf(stderr, "bench_list: %s\n", failure.what());
        return 1;
    }
}

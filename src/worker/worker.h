// SPDX-FileCopyrightText: 2026 The Pixpress authors
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "worker/messages.h"

#include <QDeadlineTimer>
#include <QObject>
#include <QSocketNotifier>
#include <QTimer>

#include <chrono>
#include <deque>
#include <expected>
#include <functional>
#include <map>
#include <memory>

#include <sys/types.h>

namespace pixpress {

struct WorkerConfig
{
    /// The worker's program file. By default ../libexec/pixpress/pixpress-worker, seen from the
    /// folder of the running program.
    QString program = {};
    /// How long a request may take. Beyond that the worker is assumed to hang and is killed.
    std::chrono::milliseconds compressLimit = std::chrono::minutes(10);
    std::chrono::milliseconds thumbnailLimit = std::chrono::minutes(1);
};

/// The process in which pictures are decoded and encoded: pixpress-worker, which can neither open
/// files nor connect to anything. It starts with the first request and starts again after a crash.
///
/// A crash, a hang or an answer that makes no sense costs the request that caused it. When several
/// were under way, each of them is repeated alone, so that the guilty one shows itself.
///
/// GUI thread only. Callbacks run from the event loop, never inside a call of this class; none runs
/// once the worker is destroyed.
class Worker : public QObject
{
public:
    template <typename T>
    using Callback = std::function<void(std::expected<T, QString>)>; ///< The error is a sentence.

    explicit Worker(WorkerConfig config = {});
    /// Kills the process.
    ~Worker() override;

    /// Starts the process in advance of the first request.
    void start();

    /// Compresses an image file. Any number may be under way. Returns the request's number.
    quint64 compress(const QByteArray &picture, const CompressionOptions &options,
                     Callback<Compressed> callback);

    /// Makes a thumbnail of an open image file, of which a duplicate is kept: upright, at most
    /// `longerSide` pixels on its longer side.
    quint64 makeThumbnail(int picture, int longerSide, Callback<Thumbnail> callback);

    /// Drops the callback of a request, and the request itself if the worker does not have it yet.
    void cancel(quint64 id);

private:
    struct Job
    {
        Request request;
        std::function<void(std::expected<Answer, QString>)> callback; ///< None once cancelled.
        std::chrono::milliseconds limit;
        QDeadlineTimer deadline = {};
        bool isSuspect = false; ///< Was under way in a crash; runs alone.
    };
    using Jobs = std::map<quint64, Job>;

    template <typename T>
    quint64 add(decltype(Request::work) work, std::expected<FileDescriptor, int> picture,
                std::chrono::milliseconds limit, Callback<T> callback);
    std::expected<void, QString> ensureRunning();
    std::expected<void, QString> spawn();
    void dispatch();
    bool send(Job &job);
    void finish(Jobs::iterator job, std::expected<Answer, QString> answer);
    void receive();
    bool accept(const Packet &packet);
    void onCrash();
    void onTimeout();
    void watchDeadlines();
    void stop();

    const WorkerConfig m_config;
    Jobs m_waiting; ///< In the order of their numbers.
    Jobs m_running;
    quint64 m_lastId = 0;
    bool m_isFull = false; ///< The worker had no memory for the first of those waiting.

    pid_t m_process = -1;
    bool m_isGreeted = false;
    FileDescriptor m_socket;
    std::unique_ptr<QSocketNotifier> m_notifier;
    QTimer m_timer;
};

} // namespace pixpress

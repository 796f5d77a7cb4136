// SPDX-FileCopyrightText: 2026 The Pixpress authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "cli/run.h"

#include <QFileInfo>

#include <cstdlib>

namespace pixpress::cli {

namespace {

QStringList fileNames(const QStringList &files)
{
    QStringList names;
    for (const QString &file : files)
        names.append(QFileInfo(file).fileName());
    return names;
}

} // namespace

Run::Run(const Arguments &arguments, CompressionQueue &queue)
    : m_arguments(arguments), m_queue(queue), m_report(arguments.json, fileNames(arguments.files))
{
    connect(&m_queue, &CompressionQueue::taskChanged, this, &Run::onTaskChanged);
}

void Run::start()
{
    QList<QUrl> urls;
    for (const QString &file : m_arguments.files) {
        const QUrl url = QUrl::fromLocalFile(QFileInfo(file).absoluteFilePath());
        if (isSupported(url.fileName())) // by the same name as the queue's
            urls.append(url);
        else
            m_report.skipped(file);
    }

    // Each call starts one task: that many calls let that many run at a time.
    for (qint64 i = 1; i < m_queue.maxConcurrent() && urls.size() > 1; ++i)
        m_queue.addFiles({urls.takeFirst()}, m_arguments.options);
    m_queue.addFiles(urls, m_arguments.options);
    QMetaObject::invokeMethod(this, &Run::goOn, Qt::QueuedConnection);
}

void Run::interrupt()
{
    m_report.interrupted();
}

void Run::onTaskChanged(qsizetype index)
{
    const CompressionTask &task = m_queue.tasks()[index];
    if (hasEnded(task.status)) {
        ++m_ended;
        m_report.ended(task);
        QMetaObject::invokeMethod(this, &Run::goOn, Qt::QueuedConnection);
    }
    if (isActive(task.status))
        m_running.insert(index);
    else
        m_running.erase(index);
    m_report.progress(m_queue.tasks(), m_running, m_ended);
}

void Run::goOn()
{
    if (m_finished)
        return;
    if (m_ended == m_queue.tasks().size()) {
        m_finished = true;
        m_report.total();
        Q_EMIT finished(m_report.anyFailed() || m_ended == 0 ? EXIT_FAILURE : EXIT_SUCCESS);
        return;
    }
    // A task that was refused, for want of a key or of quota, does not start the next one.
    if (m_queue.activeTasks() == 0 && m_queue.firstPending() >= 0)
        m_queue.retryTask(m_queue.tasks()[m_queue.firstPending()].id, m_arguments.options);
}

} // namespace pixpress::cli

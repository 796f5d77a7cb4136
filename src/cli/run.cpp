// SPDX-FileCopyrightText: 2026 The Pixpress authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "cli/run.h"

#include <QDir>
#include <QFileInfo>

#include <cstdlib>

using namespace Qt::StringLiterals;

namespace pixpress::cli {

namespace {

QStringList fileNames(const QList<Input> &inputs)
{
    QStringList names;
    for (const Input &input : inputs)
        names.append(QFileInfo(input.file).fileName());
    return names;
}

} // namespace

Run::Run(const Arguments &arguments, const Inputs &inputs, CompressionQueue &queue)
    : m_arguments(arguments),
      m_inputs(inputs),
      m_queue(queue),
      m_report(arguments.json, fileNames(inputs.files))
{
    connect(&m_queue, &CompressionQueue::taskChanged, this, &Run::onTaskChanged);
}

void Run::start()
{
    for (const QString &folder : m_inputs.unreadableFolders)
        m_report.unreadable(folder);
    QList<QUrl> batch; // files with the same options
    CompressionOptions options = m_arguments.options;
    for (const Input &input : m_inputs.files) {
        const QUrl url = QUrl::fromLocalFile(QFileInfo(input.file).absoluteFilePath());
        if (!isSupported(url.fileName())) { // by the same name as the queue's
            m_report.skipped(input.file, u"Not a PNG, JPEG, WebP or AVIF file"_s);
            continue;
        }
        const CompressionOptions own = optionsFor(input);
        if (own != options) {
            add(std::exchange(batch, {}), options);
            options = own;
        }
        batch.append(url);
    }
    add(batch, options);
    QMetaObject::invokeMethod(this, &Run::goOn, Qt::QueuedConnection);
}

/// The folder of the output is made if it is one of those that mirror the input's.
CompressionOptions Run::optionsFor(const Input &input) const
{
    CompressionOptions options = m_arguments.options;
    if (!input.outputFolder.isEmpty()) {
        QDir().mkpath(input.outputFolder); // or writing says what is wrong
        options.customFolderURL = QUrl::fromLocalFile(input.outputFolder);
    }
    return options;
}

/// Each call of addFiles() starts one task: that many calls let that many run at a time.
void Run::add(QList<QUrl> files, const CompressionOptions &options)
{
    for (; m_started + 1 < m_queue.maxConcurrent() && files.size() > 1; ++m_started)
        m_queue.addFiles({files.takeFirst()}, options);
    if (files.isEmpty())
        return;
    m_queue.addFiles(files, options);
    ++m_started;
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
    if (m_queue.activeTasks() == 0 && m_queue.firstPending() >= 0) {
        const CompressionTask &task = m_queue.tasks()[m_queue.firstPending()];
        m_queue.retryTask(task.id, CompressionOptions(task.options));
    }
}

} // namespace pixpress::cli

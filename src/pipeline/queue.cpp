// SPDX-FileCopyrightText: 2026 The Pixpress authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "pipeline/queue.h"

#include "pipeline/files.h"

#include <QScopedValueRollback>

#include <future>
#include <span>

using namespace Qt::StringLiterals;

namespace pixpress {

namespace {

QList<CompressionTask> tasksFor(std::span<const QUrl> urls, const CompressionOptions &options)
{
    QList<CompressionTask> tasks;
    tasks.reserve(static_cast<qsizetype>(urls.size()));
    for (const QUrl &url : urls) {
        if (isSupported(url.fileName()))
            tasks.emplace_back(url, options);
    }
    return tasks;
}

/// The same, with half of many made by another thread: most of the time is the system's, which is
/// asked for each file's size, and the window waits for it.
QList<CompressionTask> tasksForMany(std::span<const QUrl> urls, const CompressionOptions &options)
{
    constexpr size_t many = 1000;
    if (urls.size() < many)
        return tasksFor(urls, options);
    const size_t half = urls.size() / 2;
    // On this thread after all when no other can be had.
    auto others = std::async(tasksFor, urls.subspan(half), options);
    QList<CompressionTask> tasks = tasksFor(urls.first(half), options);
    tasks.append(others.get());
    return tasks;
}

} // namespace

CompressionQueue::CompressionQueue(SettingsStore &settings,
                                   std::unique_ptr<CompressionService> service,
                                   qint64 maxConcurrent)
    : m_settings(settings), m_maxConcurrent(maxConcurrent), m_service(std::move(service))
{
}

CompressionQueue::CompressionQueue(SettingsStore &settings, const ServiceConfig &service)
    : CompressionQueue(settings, std::make_unique<TinifyService>(service))
{
}

CompressionQueue::~CompressionQueue()
{
    // The tasks that end now shall find nothing to record, nobody to tell and nothing to start.
    blockSignals(true);
    replaceTasks({});
}

void CompressionQueue::setQuotaTracker(QuotaTracker *tracker)
{
    if (m_quotaTracker == tracker)
        return;
    m_quotaTracker = tracker;
    Q_EMIT quotaTrackerChanged();
}

void CompressionQueue::addFiles(const QList<QUrl> &urls, const CompressionOptions &options)
{
    const qsizetype first = m_tasks.size();
    m_tasks.reserve(first + urls.size());
    m_indexes.reserve(first + urls.size());
    m_tasks += tasksForMany(urls, options);
    for (qsizetype index = first; index < m_tasks.size(); ++index) {
        m_indexes.insert(m_tasks[index].id, index);
        m_pending.insert(m_pending.end(), index);
    }
    if (const qsizetype count = m_tasks.size() - first; count > 0)
        Q_EMIT tasksAdded(first, count);
    processNext();
}

void CompressionQueue::retryTask(const QUuid &taskId, const CompressionOptions &options)
{
    const qsizetype index = indexOf(taskId);
    if (index < 0)
        return;
    if (CompressionTask &task = taskAt(index); task.options != options) {
        task.options = options;
        Q_EMIT taskChanged(index);
    }
    setStatus(index, status::Pending{});
    processNext();
}

void CompressionQueue::clearCompleted()
{
    QList<CompressionTask> kept = m_tasks;
    const auto removed =
        kept.removeIf([](const CompressionTask &task) { return hasEnded(task.status); });
    if (removed > 0)
        replaceTasks(std::move(kept));
}

void CompressionQueue::clearAll()
{
    if (!m_tasks.isEmpty())
        replaceTasks({});
    setActiveTasks(0);
}

void CompressionQueue::processNext()
{
    if (m_activeTasks >= m_maxConcurrent)
        return;
    const qsizetype index = firstPending();
    if (index < 0)
        return;
    const auto apiKey = KeychainHelper::loadAPIKey(m_settings);
    if (!apiKey && needsAPIKey()) {
        const TinifyError error{TinifyError::Case::noAPIKey};
        setStatus(index, status::Failed{error.errorDescription()});
        return;
    }
    if (m_quotaTracker && m_quotaTracker->currentCount() >= m_quotaTracker->monthlyLimit) {
        setStatus(index, status::Failed{u"Monthly quota exhausted"_s});
        return;
    }
    const QUuid id = m_tasks[index].id;
    const CompressionOptions options = m_tasks[index].options;
    setActiveTasks(m_activeTasks + 1);
    // It runs up to its first wait within this call, and its task is pending no more: if it were
    // only posted, the next addFiles() of the same turn would start the same task again.
    const QScopedValueRollback starting(m_starting, true);
    processTask(id, options, apiKey.value_or(QString()));
}

QCoro::Task<> CompressionQueue::processTask(QUuid taskId, CompressionOptions options,
                                            QString apiKey)
{
    // 1. The task may have been cleared before it could start.
    const qsizetype index = indexOf(taskId);
    if (index < 0) {
        setActiveTasks(m_activeTasks - 1);
        co_return;
    }
    const QUrl sourceURL = taskAt(index).sourceURL;

    // 2.
    setStatus(index, status::Uploading{});

    // 3.
    auto image = readSource(sourceURL, options);
    if (!image)
        co_return endTask(taskId, status::Failed{image.error()});

    // 4.
    setStatus(index, status::Compressing{});

    const auto asked = options.toJSON() ? std::optional(options) : std::nullopt;

    // 5. The client gets the only reference to the image, so that its memory is free afterwards.
    const auto response = co_await m_service->shrink(std::move(image->content), asked, apiKey);
    if (!response)
        co_return endTask(taskId, status::Failed{errorDescription(response.error())});

    // 6. The service's number counts, also when it is lower or 0.
    syncQuota(response->compressionCount);

    // 7. By the index of step 1: the list is not searched again.
    setStatus(index, status::Downloading{});

    // 8. and 9.
    const auto fetched = co_await m_service->fetchOutput(response->outputURL, asked, apiKey);
    if (!fetched)
        co_return endTask(taskId, status::Failed{errorDescription(fetched.error())});
    const auto &[outputData, count] = *fetched;

    // 10. Here 0 means that nothing was reported.
    if (count > 0)
        syncQuota(count);

    // 11. No picture is empty: over the source it would destroy what may be the only copy.
    if (outputData.isEmpty()) {
        const TinifyError error{TinifyError::Case::downloadFailed};
        co_return endTask(taskId, status::Failed{error.errorDescription()});
    }
    const auto outputURL = writeOutput(sourceURL, options, outputData, image->digest);
    if (!outputURL)
        co_return endTask(taskId, status::Failed{outputURL.error()});

    // 12. Type and dimensions are those of the compressed image, whatever the fetch changed.
    const CompressionResult result{.originalSize = response->inputSize,
                                   .compressedSize = outputData.size(),
                                   .outputURL = *outputURL,
                                   .inputType = response->inputType,
                                   .outputType = response->outputType,
                                   .width = response->outputWidth,
                                   .height = response->outputHeight,
                                   .timestamp = QDateTime::currentDateTime()};

    // 13. and 14.
    endTask(taskId, status::Completed{result});
}

/// Records the outcome if the task is still listed, and goes on with the next.
void CompressionQueue::endTask(QUuid taskId, const TaskStatus &outcome)
{
    // A task that fails before it has waited for anything would end inside the call that starts
    // it, and a thousand unreadable files would be a recursion.
    if (m_starting) {
        QMetaObject::invokeMethod(
            this, [this, taskId, outcome] { endTask(taskId, outcome); }, Qt::QueuedConnection);
        return;
    }
    if (const qsizetype index = indexOf(taskId); index >= 0)
        setStatus(index, outcome);
    setActiveTasks(m_activeTasks - 1);
    processNext();
}

void CompressionQueue::syncQuota(qint64 reportedCount)
{
    if (!m_quotaTracker)
        return;
    m_quotaTracker->checkMonthRollover();
    m_quotaTracker->setCurrentCount(reportedCount);
    m_quotaTracker->persist();
}

CompressionTask &CompressionQueue::taskAt(qsizetype index)
{
    if (index < 0 || index >= m_tasks.size()) {
        qFatal("CompressionQueue: index %lld is out of range, the list has %lld tasks.",
               static_cast<long long>(index), static_cast<long long>(m_tasks.size()));
    }
    return m_tasks[index];
}

void CompressionQueue::setStatus(qsizetype index, const TaskStatus &status)
{
    CompressionTask &task = taskAt(index);
    if (task.status == status)
        return;

    const Totals before = m_totals;
    count(task.status, -1);
    task.status = status;
    count(task.status, +1);
    if (std::holds_alternative<status::Pending>(status))
        m_pending.insert(index);
    else
        m_pending.erase(index);

    Q_EMIT taskChanged(index);
    notifyTotals(before);
}

void CompressionQueue::setActiveTasks(qint64 count)
{
    if (m_activeTasks == count)
        return;
    m_activeTasks = count;
    Q_EMIT activeTasksChanged();
}

/// Adds what a task of this status contributes to the totals, or with -1 takes it away.
void CompressionQueue::count(const TaskStatus &status, int sign)
{
    if (isActive(status))
        m_totals.active += sign;
    if (hasEnded(status))
        m_totals.ended += sign;
    if (const auto *completed = std::get_if<status::Completed>(&status)) {
        m_totals.completed += sign;
        // Sizes are the service's word: a sum of absurd ones may wrap, it must not be undefined.
        const quint64 saved = static_cast<quint64>(completed->result.originalSize) -
                              static_cast<quint64>(completed->result.compressedSize);
        const auto total = static_cast<quint64>(m_totals.saved);
        m_totals.saved = static_cast<qint64>(sign > 0 ? total + saved : total - saved);
    }
}

void CompressionQueue::replaceTasks(QList<CompressionTask> tasks)
{
    const Totals before = std::exchange(m_totals, {});
    m_tasks = std::move(tasks);
    m_pending.clear();
    m_indexes.clear();
    for (qsizetype index = 0; const CompressionTask &task : std::as_const(m_tasks)) {
        count(task.status, +1);
        if (std::holds_alternative<status::Pending>(task.status))
            m_pending.insert(m_pending.end(), index);
        m_indexes.insert(task.id, index++);
    }
    Q_EMIT tasksRemoved();
    notifyTotals(before);
}

void CompressionQueue::notifyTotals(const Totals &before)
{
    if ((before.active > 0) != hasActiveTasks())
        Q_EMIT hasActiveTasksChanged();
    if ((before.ended > 0) != hasEndedTasks())
        Q_EMIT hasEndedTasksChanged();
    if (before.completed != m_totals.completed)
        Q_EMIT completedCountChanged();
    if (before.saved != m_totals.saved)
        Q_EMIT totalSavedChanged();
}

} // namespace pixpress

// SPDX-FileCopyrightText: 2026 The Pixpress authors
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "model/tasks.h"
#include "pipeline/quota.h"
#include "pipeline/settings.h"
#include "service/tinifyservice.h"

#include <QCoroTask>

#include <QHash>
#include <QList>
#include <QObject>
#include <QPointer>
#include <QUuid>

#include <memory>
#include <set>

namespace pixpress {

/// The list of tasks, and what runs them: each file is uploaded, its output fetched and written,
/// and the outcome recorded on its task. GUI thread only; a running task leaves that thread only
/// while it waits for the service.
///
/// Each call that adds, retries or ends a task starts at most one pending task. A batch that is
/// added at once therefore runs one file after another, and more run at a time, within the limit,
/// only when files are added while others run.
class CompressionQueue : public QObject
{
    Q_OBJECT
    Q_PROPERTY(bool hasActiveTasks READ hasActiveTasks NOTIFY hasActiveTasksChanged)
    Q_PROPERTY(bool hasEndedTasks READ hasEndedTasks NOTIFY hasEndedTasksChanged)
    Q_PROPERTY(qsizetype completedCount READ completedCount NOTIFY completedCountChanged)
    Q_PROPERTY(qint64 totalSaved READ totalSaved NOTIFY totalSavedChanged)

public:
    /// Runs at most `maxConcurrent` tasks at a time. `settings`, which hold the API key, must
    /// outlive the queue.
    CompressionQueue(SettingsStore &settings, std::unique_ptr<CompressionService> service,
                     qint64 maxConcurrent = 3);
    /// A queue with a client of the web service.
    explicit CompressionQueue(SettingsStore &settings, const ServiceConfig &service = {});
    /// Ends running tasks without an outcome; what they have not written yet is never written.
    ~CompressionQueue() override;

    qint64 maxConcurrent() const { return m_maxConcurrent; }
    /// Whether tasks fail without an API key.
    bool needsAPIKey() const { return m_service->needsAPIKey(); }
    const QList<CompressionTask> &tasks() const { return m_tasks; } ///< In the order of adding.
    /// Tasks started and not yet ended. Below zero after clearAll() while tasks were running.
    qint64 activeTasks() const { return m_activeTasks; }

    // These cost the same however long the list is.
    bool hasActiveTasks() const { return m_totals.active > 0; } ///< Pending ones do not count.
    bool hasEndedTasks() const { return m_totals.ended > 0; }   ///< Completed or failed ones.
    qsizetype completedCount() const { return m_totals.completed; }
    qint64 totalSaved() const { return m_totals.saved; } ///< Bytes; negative when outputs grew.
    /// The task that would start next, by its index in tasks(); -1 when none is pending.
    qsizetype firstPending() const { return m_pending.empty() ? -1 : *m_pending.begin(); }
    qsizetype indexOf(const QUuid &taskId) const { return m_indexes.value(taskId, -1); }

    /// The counter to keep in step with the service, not owned; without one, or when it is gone, no
    /// allowance is watched.
    void setQuotaTracker(QuotaTracker *tracker);

    /// Adds a task for each URL of a supported extension, with these options; others are ignored.
    /// The same file may be added again.
    void addFiles(const QList<QUrl> &urls, const CompressionOptions &options);
    /// Makes any task pending again, with these options.
    void retryTask(const QUuid &taskId, const CompressionOptions &options);
    /// Removes what is completed or failed. While an upload is under way this shifts the list under
    /// it: the task that then stands at its index shows as downloading.
    void clearCompleted();
    /// Empties the list. Nothing is cancelled: a task that is fetching still writes its file. While
    /// an upload is under way its answer meets an index that is no more, which is a fatal error.
    void clearAll();

Q_SIGNALS:
    void tasksAdded(qsizetype first, qsizetype count); ///< Once for a whole batch.
    void taskChanged(qsizetype index);
    void tasksRemoved(); ///< Any number at once; indexes have changed.
    void quotaTrackerChanged();
    // Not emitted when the value stays the same.
    void activeTasksChanged();
    void hasActiveTasksChanged();
    void hasEndedTasksChanged();
    void completedCountChanged();
    void totalSavedChanged();

private:
    struct Totals
    {
        qsizetype active = 0;
        qsizetype ended = 0;
        qsizetype completed = 0;
        qint64 saved = 0;
    };

    void processNext();
    QCoro::Task<> processTask(QUuid taskId, CompressionOptions options, QString apiKey);
    void endTask(QUuid taskId, const TaskStatus &outcome);
    void syncQuota(qint64 reportedCount);

    CompressionTask &taskAt(qsizetype index);
    void setStatus(qsizetype index, const TaskStatus &status);
    void setActiveTasks(qint64 count);
    void count(const TaskStatus &status, int sign);
    void replaceTasks(QList<CompressionTask> tasks);
    void notifyTotals(const Totals &before);

    SettingsStore &m_settings;
    QList<CompressionTask> m_tasks;
    qint64 m_activeTasks = 0;
    QPointer<QuotaTracker> m_quotaTracker;

    // What follows from m_tasks, kept in step with it.
    Totals m_totals;
    std::set<qsizetype> m_pending;
    QHash<QUuid, qsizetype> m_indexes;

    bool m_starting = false;
    const qint64 m_maxConcurrent;
    // Last, so that it goes first: ending its operations ends running tasks.
    std::unique_ptr<CompressionService> m_service;
};

} // namespace pixpress

// SPDX-FileCopyrightText: 2026 The Pixpress authors
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "pipeline/heldtransport.h"
#include "pipeline/naivequeue.h"
#include "pipeline/queue.h"
#include "pipeline/queuecommands.h"

#include <QTemporaryDir>

namespace pixpress::test {

/// A real queue and a naive one that live through the same things.
class TwoQueues
{
public:
    TwoQueues();
    ~TwoQueues();

    void apply(const Command &command);

    /// The first line in which what can be seen of the two differs, or nothing.
    QString difference() const;

    /// Takes the real queue away, with what still waits.
    void destroyQueue() { m_queue.reset(); }

    const NaiveQueue &naive() const { return m_naive; }

private:
    void run(const Add &add);
    void run(const Retry &retry);
    void run(const ClearCompleted &clear);
    void run(const ClearAll &clear);
    void run(const AnswerOne &answer);
    void run(const LoopTurns &turns);
    void run(const SetKey &set);
    void run(const SetQuota &set);
    void run(const WatchQuota &watch);
    void run(const NextMonth &next);
    void run(const RemoveFile &remove);
    void run(const RestoreFile &restore);

    void follow();
    QStringList describe() const;
    QString describe(const CompressionTask &task) const;
    QString toldWrongly() const;

    QTemporaryDir m_folder;
    QDateTime m_now{QDate(2026, 11, 21), QTime(12, 0)};
    TransientSettings m_settings;
    QuotaTracker m_tracker{m_settings, [this] { return m_now; }};
    std::unique_ptr<CompressionQueue> m_queue;
    NaiveQueue m_naive;
    int m_answers = 0;

    QList<QUuid> m_ids;      // of all tasks that there ever were
    QStringList m_toldTasks; // as somebody knows them who only listens to the signals
    Totals m_toldTotals;
};

} // namespace pixpress::test

// SPDX-FileCopyrightText: 2026 The Pixpress authors
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "model/options.h"

#include <QByteArray>
#include <QList>
#include <QMap>
#include <QSet>
#include <QString>
#include <QStringList>

#include <optional>

namespace pixpress::test {

/// What the service says to one request.
struct Reply
{
    QString sentence = {};            ///< Why it failed; empty: it did not.
    std::optional<qint64> count = {}; ///< Of compressions, in either answer.
    qint64 inputSize = 0;             ///< In the answer to an upload.
    QString location = {};            ///< In the answer to an upload: the path of the output.
    QByteArray output = {};           ///< In the answer to a fetch.
};

/// The rules of the queue once more, in the plainest way: without coroutines, signals, indexes or
/// running totals, on a disk that is a table. It is here to be compared with the real one, so it
/// calls nothing of that.
class NaiveQueue
{
public:
    struct Task
    {
        int id = 0;
        QString file; ///< Below the folder of the test, as all names here.
        CompressionOptions options;
        QString status = QStringLiteral("pending");
        QString outcome = {}; ///< The sentence of a failure, what came out of a success.
        qint64 saved = 0;     ///< Not 0 when it is completed only.
    };

    // What the world around the queue is like; the test sets it.
    QString apiKey;
    bool watchesQuota = true;
    qint64 quotaCount = 0;
    QString quotaMonth;
    QString storedQuota; ///< Count and month, as they were last stored.
    QString currentMonth;
    QMap<QString, QByteArray> files;
    QSet<QString> folders; ///< That exist, but for the one of the test itself.

    void addFiles(const QStringList &names, const CompressionOptions &options);
    void retryTask(int id, const CompressionOptions &options);
    void clearCompleted();
    void clearAll();

    /// What the queue has put off until the event loop runs.
    void turn();

    /// Whether this answer would meet an index that is no more, which ends the program.
    bool wouldBeFatal(qsizetype which, const Reply &reply) const;
    void answer(qsizetype which, const Reply &reply);

    /// All that there is to see, line by line.
    QStringList describe() const;

    QList<Task> tasks;
    qint64 activeTasks = 0;
    int tasksEverMade = 0;
    bool hasMistakenTasks = false; ///< Whether an answer ever met another task at its run's index.
    QStringList requests;
    qsizetype waiting() const { return m_waiting.size(); }
    qsizetype completedCount() const;

private:
    /// One run of a task: all that it remembers.
    struct Run
    {
        int id = 0;
        qsizetype index = 0; ///< Where its task stood when it started.
        QString file;
        CompressionOptions options;
        QString apiKey;
        QByteArray content = {}; ///< Of the file when it was read.
        bool fetches = false;
        qint64 inputSize = 0;
    };
    struct End
    {
        int id = 0;
        QString sentence;
    };

    qsizetype find(int id) const;
    qsizetype firstPending() const;
    void processNext();
    void startRun(Run run);
    void fetch(Run run, const Reply &reply);
    void write(const Run &run, const Reply &reply);
    void fail(int id, const QString &sentence);
    void endRun();
    void updateQuota(qint64 count);

    QList<Run> m_waiting; // for an answer, the oldest request first
    QList<End> m_putOff;
};

QString describe(const CompressionOptions &options);

/// A task as one line.
QString describe(const QString &file, const CompressionOptions &options, const QString &status,
                 const QString &outcome);

/// What came out of a success.
QString describe(qint64 inputSize, qint64 outputSize, const QString &outputName,
                 const QString &inputType, const QString &outputType, qint64 width, qint64 height);

/// What is known without looking at single tasks, as lines.
struct Totals
{
    qint64 activeTasks = 0;
    bool hasActiveTasks = false;
    bool hasEndedTasks = false;
    qsizetype completedCount = 0;
    qint64 totalSaved = 0;
    qsizetype firstPending = -1;
    qint64 quotaCount = 0;
    QString quotaMonth;
    QString storedQuota;

    QStringList lines() const;
};

} // namespace pixpress::test

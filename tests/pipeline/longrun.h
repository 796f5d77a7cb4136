// SPDX-FileCopyrightText: 2026 The Pixpress authors
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "pipeline/faultyservice.h"
#include "pipeline/queue.h"

#include <QHash>
#include <QMap>
#include <QTemporaryDir>
#include <QTestEventLoop>

#include <random>
#include <vector>

namespace pixpress::test {

/// A user in a hurry, and the books on what comes of it: adds numbered pictures in batches with
/// whatever options, retries, clears and deletes at random moments. Each task's end is checked when
/// it comes. All checks collect sentences in `complaints`.
class LongRun
{
public:
    LongRun(quint32 seed, int pictures);

    /// Adds pictures until there are so many, does what comes to mind meanwhile, and goes on until
    /// nothing runs.
    void runUntil(int pictures);
    /// Starts what a clear has made look started, which nothing else would, and waits for it.
    void retryMistaken();
    /// After the last: every task has ended, every file is what it must be, nothing ran twice.
    void checkAll();

    qsizetype tasksListed() const { return m_queue.tasks().size(); }

    QStringList complaints;
    QMap<QString, int> failures; ///< How often which.
    int completed = 0;
    int retries = 0;
    int clears = 0;
    int cleared = 0;
    int clearsWhileRunning = 0;
    int mistaken = 0;
    int connectionsRefused() const { return m_service.connectionsRefused; }

private:
    struct Picture
    {
        bool exists = false;    ///< The source does.
        int generation = 0;     ///< Of the source, which may have been overwritten.
        int asked = 0;          ///< How often it was to run, and
        int runs = 0;           ///< how often it did.
        int uploadsAtStart = 0; ///< Of the present run, as
        bool readable = false;  ///< this.
        QUuid task;
        size_t status = 0; ///< As an index of TaskStatus: results would take memory.
    };

    static int numberOf(const CompressionTask &task); ///< That of its picture.
    void act();
    void addBatch(int limit);
    void add(const QList<int> &numbers, const CompressionOptions &options);
    void retry(int number);
    void clear();
    void removeSource(int number);
    CompressionOptions anyOptions();
    bool isIdle() const;
    int dice(int below);

    void follow(qsizetype index);
    void afterRemoval();
    void begin(int number, qsizetype index);
    void end(int number, const CompressionTask &task);
    void checkOutput(int number, const CompressionTask &task, const CompressionResult &result);
    void checkUploads(int number, bool refused);
    Fault expectedFault(int number, const CompressionOptions &options) const;
    void complain(int number, const QString &what);

    Picture &at(int number) { return m_pictures.at(static_cast<size_t>(number)); }
    QString sourcePath(int number) const;

    const quint32 m_seed;
    std::mt19937 m_random;
    QTemporaryDir m_folder;
    FaultyService m_service;
    TransientSettings m_settings;
    QuotaTracker m_tracker{m_settings};
    CompressionQueue m_queue;
    QTestEventLoop m_loop;

    std::vector<Picture> m_pictures;
    QHash<QString, NumberedPicture> m_outputs; // by path
    std::vector<int> m_ended;                  // which may be retried
    QHash<int, qsizetype> m_running;           // where the task stood when it started
    int m_added = 0;
    int m_open = 0;
    int m_refusedSeen = 0;
    bool m_resting = false;
};

} // namespace pixpress::test

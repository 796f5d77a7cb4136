// SPDX-FileCopyrightText: 2026 The Pixpress authors
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "model/tasks.h"

#include <QList>
#include <QString>
#include <QTextStream>

#include <set>

namespace pixpress::cli {

/// What the program prints: a line a file and a total, or JSON, and on a terminal a line that shows
/// what is going on.
class Report
{
public:
    /// `names` are the files that will be reported, for lining up the columns.
    Report(bool json, const QStringList &names);

    /// A file that no task was made for; on standard error, except in JSON.
    void skipped(const QString &file, const QString &reason);
    /// A folder whose files are unknown; counts as a failure.
    void unreadable(const QString &folder);
    /// A task that has completed or failed.
    void ended(const CompressionTask &task);
    /// Draws the progress line; does nothing when the output is no terminal. `running` are indexes
    /// of `tasks`.
    void progress(const QList<CompressionTask> &tasks, const std::set<qsizetype> &running,
                  qsizetype endedCount);
    void total();       ///< Of what has ended; nothing in JSON.
    void interrupted(); ///< On standard error.

    bool anyFailed() const { return m_failed > 0 || m_hasUnreadable; }

private:
    void line(QTextStream &stream, const QString &text);
    void clearProgress();
    QString column(const QString &fileName) const;

    const bool m_json;
    const bool m_isTerminal;
    qsizetype m_nameWidth = 0;
    QTextStream m_out;
    QTextStream m_err;
    bool m_progressShown = false;
    bool m_hasUnreadable = false;
    qint64 m_completed = 0;
    qint64 m_failed = 0;
    qint64 m_originalSize = 0;
    qint64 m_compressedSize = 0;
};

} // namespace pixpress::cli

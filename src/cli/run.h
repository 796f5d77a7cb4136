// SPDX-FileCopyrightText: 2026 The Pixpress authors
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "cli/inputs.h"
#include "cli/report.h"
#include "pipeline/queue.h"

#include <QObject>

#include <set>

namespace pixpress::cli {

/// Puts the files of a command line through a queue and reports each.
class Run : public QObject
{
    Q_OBJECT

public:
    /// All of them outlive the run.
    Run(const Arguments &arguments, const Inputs &inputs, CompressionQueue &queue);

    /// Adds the files. The queue needs an event loop to go on.
    void start();
    /// Says that the process is being ended, and how that leaves the files.
    void interrupt();

Q_SIGNALS:
    void finished(int exitStatus); ///< Once.

private:
    void onTaskChanged(qsizetype index);
    void goOn();

    CompressionOptions optionsFor(const Input &input) const;
    void add(QList<QUrl> files, const CompressionOptions &options);

    const Arguments &m_arguments;
    const Inputs &m_inputs;
    CompressionQueue &m_queue;
    Report m_report;
    std::set<qsizetype> m_running; // indexes, which stay: this program clears nothing
    qsizetype m_ended = 0;
    qint64 m_started = 0; ///< Calls that have started a task, up to the queue's limit.
    bool m_finished = false;
};

} // namespace pixpress::cli

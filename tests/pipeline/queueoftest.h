// SPDX-FileCopyrightText: 2026 The Pixpress authors
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "pipeline/queue.h"

#include "support/scriptedserver.h"

#include <QTemporaryDir>

#include <memory>
#include <optional>

namespace pixpress::test {

/// The word or, for a failure, the sentence of a status.
QString text(const TaskStatus &status);

/// A queue that each test of a class has for itself, with a folder, settings, a quota and a service
/// that compresses everything to `m_output`.
class QueueOfTest
{
protected:
    /// With `tls` its service is an https server.
    void makeQueue(const std::optional<QSslConfiguration> &tls = {}, const QString &authority = {});
    void removeQueue();

    QUrl file(const QString &name, const QByteArray &content = "source");
    QByteArray contentOf(const QString &name) const;
    QStringList statuses() const;
    void add(const QList<QUrl> &urls, const CompressionOptions &options = {});

    std::unique_ptr<QTemporaryDir> m_folder;
    std::unique_ptr<ScriptedServer> m_server;
    std::unique_ptr<TransientSettings> m_settings;
    std::unique_ptr<QuotaTracker> m_tracker;
    std::unique_ptr<CompressionQueue> m_queue;
    QDateTime m_now;
    std::optional<qint64> m_shrinkCount;
    std::optional<qint64> m_fetchCount;
    QByteArray m_output;
    QString m_authority;
};

} // namespace pixpress::test

// SPDX-FileCopyrightText: 2026 The Pixpress authors
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "service/compressionservice.h"
#include "worker/worker.h"

#include <QHash>

namespace pixpress {

/// Compresses pictures on this computer, in the worker. Needs no key and counts nothing. All the
/// work is done by shrink(), as the options ask; the output is in memory until it is fetched.
class LocalService final : public CompressionService
{
public:
    /// `worker` must outlive the service.
    explicit LocalService(Worker &worker) : m_worker(worker) {}
    ~LocalService() override;

    bool needsAPIKey() const override { return false; }
    QCoro::Task<Result<ShrinkResponse>> shrink(QByteArray imageData,
                                               std::optional<CompressionOptions> options,
                                               QString apiKey) override;
    QCoro::Task<Result<std::pair<QByteArray, qint64>>>
    fetchOutput(QUrl outputURL, std::optional<CompressionOptions> options, QString apiKey) override;

private:
    class Reply;

    Worker &m_worker;
    QHash<quint64, Reply *> m_waiting; ///< In the frames of the coroutines that await them.
    QHash<QUrl, QByteArray> m_outputs;
    quint64 m_lastOutput = 0;
};

} // namespace pixpress

// SPDX-FileCopyrightText: 2026 The Pixpress authors
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "model/options.h"
#include "service/errors.h"
#include "service/wire.h"

#include <QCoroTask>

#include <expected>
#include <optional>
#include <utility>

namespace pixpress {

/// What compresses the queue's pictures: the web service, or this computer. Belongs to the thread
/// that made it. Destroying it ends the operations under way with an error; the coroutines that
/// await them resume inside the destructor.
class CompressionService
{
public:
    template <typename T>
    using Result = std::expected<T, ServiceError>;

    CompressionService() = default;
    CompressionService(const CompressionService &) = delete;
    CompressionService &operator=(const CompressionService &) = delete;
    virtual ~CompressionService() = default;

    /// Whether it serves only those who have an API key, within a monthly allowance.
    virtual bool needsAPIKey() const = 0;

    /// Takes a whole image file and compresses it. `options` are those that the output will be
    /// fetched with: a service that knows them now does no work that they do not ask for.
    virtual QCoro::Task<Result<ShrinkResponse>>
    shrink(QByteArray imageData, std::optional<CompressionOptions> options, QString apiKey) = 0;

    /// Returns the output of shrink() and the month's count (not positive: not reported). Options
    /// are given when they ask for more than compression.
    virtual QCoro::Task<Result<std::pair<QByteArray, qint64>>>
    fetchOutput(QUrl outputURL, std::optional<CompressionOptions> options, QString apiKey) = 0;
};

} // namespace pixpress

// SPDX-FileCopyrightText: 2026 The Pixpress authors
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "model/options.h"
#include "service/errors.h"
#include "service/http.h"
#include "service/wire.h"

#include <QCoroTask>

#include <expected>
#include <optional>
#include <utility>

namespace pixpress {

/// Where the service is, and how long to wait for it.
struct ServiceConfig
{
    /// An https origin without a path, or http on this machine. Anything else is a programming
    /// error that stops the process.
    QUrl baseURL = QUrl(QStringLiteral("https://api.tinify.com"));
    HttpLimits limits;

    /// For a service that is part of this program. Silence is nothing that has failed then: large
    /// pictures wait for each other until there is memory for them, for minutes. Only the bound on
    /// the whole transfer holds.
    static ServiceConfig builtIn(const QUrl &baseURL, HttpLimits limits = {});
};

/// The one component that speaks to the compression service. Keeps no key, no cache and no count,
/// and never retries: each operation makes one request. Belongs to the thread that made it;
/// destroying it ends what is under way with a TransportError.
class TinifyService
{
public:
    template <typename T>
    using Result = std::expected<T, ServiceError>;

    explicit TinifyService(const ServiceConfig &config = {});

    /// Uploads a whole image file. An empty key fails without a request.
    QCoro::Task<Result<ShrinkResponse>> shrink(QByteArray imageData, QString apiKey);

    /// Fetches the compressed image and the month's count (not positive: not reported). Options
    /// that ask for a change of the image make it a POST with their body, else it is a GET.
    QCoro::Task<Result<std::pair<QByteArray, qint64>>>
    fetchOutput(QUrl outputURL, std::optional<CompressionOptions> options, QString apiKey);

    /// Whether the service accepts the key. Compresses nothing and costs no compression.
    QCoro::Task<Result<bool>> validateAPIKey(QString key);

private:
    QUrl shrinkURL() const;

    QUrl m_baseURL;
    HttpClient m_session;
};

} // namespace pixpress

// SPDX-FileCopyrightText: 2026 The Pixpress authors
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "service/compressionservice.h"
#include "service/http.h"

namespace pixpress {

/// Where the service is, and how long to wait for it.
struct ServiceConfig
{
    /// An https origin without a path, or http on this machine. Anything else is a programming
    /// error that stops the process.
    QUrl baseURL = QUrl(QStringLiteral("https://api.tinify.com"));
    HttpLimits limits;
};

/// The one component that speaks to the web service. Keeps no key, no cache and no count, and never
/// retries: each operation makes one request.
class TinifyService final : public CompressionService
{
public:
    explicit TinifyService(const ServiceConfig &config = {});

    bool needsAPIKey() const override { return true; }

    /// Uploads a whole image file. An empty key fails without a request.
    QCoro::Task<Result<ShrinkResponse>> shrink(QByteArray imageData, QString apiKey);
    /// The same: the web service learns of the options when the output is fetched.
    QCoro::Task<Result<ShrinkResponse>>
    shrink(QByteArray imageData, std::optional<CompressionOptions>, QString apiKey) override
    {
        return shrink(std::move(imageData), std::move(apiKey));
    }

    /// Fetches the compressed image and the month's count (not positive: not reported). Options
    /// that ask for a change of the image make it a POST with their body, else it is a GET.
    QCoro::Task<Result<std::pair<QByteArray, qint64>>>
    fetchOutput(QUrl outputURL, std::optional<CompressionOptions> options, QString apiKey) override;

    /// Whether the service accepts the key. Compresses nothing and costs no compression.
    QCoro::Task<Result<bool>> validateAPIKey(QString key);

private:
    QUrl shrinkURL() const;

    QUrl m_baseURL;
    HttpClient m_session;
};

} // namespace pixpress

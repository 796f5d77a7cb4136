// SPDX-FileCopyrightText: 2026 The Pixpress authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "service/tinifyservice.h"

#include "service/address.h"

#include <QJsonDocument>

using namespace Qt::StringLiterals;

namespace pixpress {

namespace {

// Limits an answer that describes a picture or a failure in a few lines.
constexpr qint64 largestDescription = 1 << 20;

QByteArray authorization(const QString &apiKey)
{
    return "Basic " + ("api:" + apiKey.toUtf8()).toBase64();
}

qint64 extractCompressionCount(const HttpResponse &response)
{
    return parseCompressionCount(response.header("compression-count"));
}

/// A failure that the service explains is shown in its own words, except for a key or an allowance
/// that it refuses: there ours are clearer.
TinifyError mapAPIError(int statusCode, const QByteArray &data)
{
    using enum TinifyError::Case;
    const auto explained =
        data.size() <= largestDescription ? APIErrorResponse::decode(data) : std::nullopt;
    if (statusCode == 401)
        return {unauthorized};
    if (statusCode == 429)
        return {quotaExceeded};
    if (explained)
        return {apiError, statusCode, explained->message};
    if (statusCode == 413)
        return {fileTooLarge};
    if (statusCode == 415)
        return {invalidImage};
    return {apiError, statusCode, QStringLiteral("Unknown error")};
}

/// Whether the body is the picture itself. No encoding was asked for; one that is used all the same
/// would be written to the disk in the picture's place.
bool isPlain(const HttpResponse &response)
{
    const auto is = [&](const char *header, const char *value) {
        return response.header(header).value_or(value).compare(value, Qt::CaseInsensitive) == 0;
    };
    return is("content-encoding", "identity") && is("transfer-encoding", "chunked");
}

/// An answer that is no HTTP has no status to report; everything else passes through.
ServiceError fromTransport(const TransportError &error)
{
    if (error.kind == TransportError::Case::notHTTP)
        return TinifyError{TinifyError::Case::invalidResponse};
    return error;
}

std::unexpected<ServiceError> failure(ServiceError error)
{
    return std::unexpected(std::move(error));
}

} // namespace

TinifyService::TinifyService(const ServiceConfig &config)
    : m_baseURL(config.baseURL), m_session(config.limits)
{
    if (!isAllowedAddress(m_baseURL))
        qFatal("The service's address must be https, or http on this machine.");
}

QUrl TinifyService::shrinkURL() const
{
    QUrl url = m_baseURL;
    url.setPath(QStringLiteral("/shrink"));
    return url;
}

QCoro::Task<TinifyService::Result<ShrinkResponse>> TinifyService::shrink(QByteArray imageData,
                                                                         QString apiKey)
{
    if (apiKey.isEmpty())
        co_return failure(TinifyError{TinifyError::Case::noAPIKey});

    // No content type is sent: the service tells the format from the bytes.
    HttpRequest request{.url = shrinkURL(),
                        .authorization = authorization(apiKey),
                        .body = std::move(imageData),
                        .largestAnswer = largestDescription};
    const HttpResult answer = co_await m_session.send(std::move(request));
    if (!answer)
        co_return failure(fromTransport(answer.error()));
    if (answer->status != 201)
        co_return failure(mapAPIError(answer->status, answer->body));

    const auto decoded = ShrinkAPIResponse::decode(answer->body);
    if (!decoded)
        co_return failure(decoded.error());

    const auto location = answer->header("location");
    const QUrl reference(QString::fromUtf8(location.value_or(QByteArray())), QUrl::StrictMode);
    const QUrl outputURL = shrinkURL().resolved(reference);
    const bool lacksHost = outputURL.scheme().startsWith("http"_L1) && outputURL.host().isEmpty();
    if (reference.isEmpty() || !reference.isValid() || lacksHost)
        co_return failure(TinifyError{TinifyError::Case::invalidResponse});

    co_return ShrinkResponse{.outputURL = outputURL,
                             .inputSize = decoded->input.size,
                             .inputType = decoded->input.type,
                             .outputSize = decoded->output.size,
                             .outputType = decoded->output.type,
                             .outputWidth = decoded->output.width,
                             .outputHeight = decoded->output.height,
                             .compressionCount = extractCompressionCount(*answer)};
}

QCoro::Task<TinifyService::Result<std::pair<QByteArray, qint64>>>
TinifyService::fetchOutput(QUrl outputURL, std::optional<CompressionOptions> options,
                           QString apiKey)
{
    // From a service that is reached over TLS the key does not go out in plain, not even to this
    // machine, where anybody may listen.
    if (m_baseURL.scheme() != outputURL.scheme() && outputURL.scheme() != QLatin1String("https"))
        co_return failure(refusedAddress());
    HttpRequest request{.url = outputURL, .authorization = authorization(apiKey)};
    if (const auto json = options ? options->toJSON() : std::nullopt) {
        request.contentType = "application/json";
        request.body = QJsonDocument(*json).toJson(QJsonDocument::Compact);
    }

    HttpResult answer = co_await m_session.send(std::move(request));
    if (!answer)
        co_return failure(fromTransport(answer.error()));
    if (answer->status != 200)
        co_return failure(mapAPIError(answer->status, answer->body));
    if (!isPlain(*answer))
        co_return failure(TinifyError{TinifyError::Case::invalidResponse});
    const qint64 count = extractCompressionCount(*answer);
    co_return std::pair(std::move(answer->body), count);
}

QCoro::Task<TinifyService::Result<bool>> TinifyService::validateAPIKey(QString key)
{
    // A good key gets an error too, about the image that is missing. Only 401 is about the key.
    HttpRequest request{.url = shrinkURL(),
                        .authorization = authorization(key),
                        .body = QByteArray(),
                        .largestAnswer = largestDescription};
    const HttpResult answer = co_await m_session.send(std::move(request));
    if (!answer)
        co_return failure(fromTransport(answer.error()));
    co_return answer->status != 401;
}

} // namespace pixpress

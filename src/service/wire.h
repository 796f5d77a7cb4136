// SPDX-FileCopyrightText: 2026 The Pixpress authors
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "model/decoding.h"

#include <QByteArray>
#include <QString>
#include <QUrl>

#include <expected>
#include <optional>

/// The service's JSON answers as records. Member names match exactly, unknown members are ignored,
/// every member listed here is required.
namespace pixpress {

/// The body that answers a successful upload. Sizes in bytes, dimensions in pixels.
struct ShrinkAPIResponse
{
    struct Input
    {
        qint64 size = 0;
        QString type; ///< MIME type that the service detected.
    };
    struct Output
    {
        qint64 size = 0;
        QString type; ///< MIME type.
        qint64 width = 0;
        qint64 height = 0;
        double ratio = 0; ///< Output size over input size.
    };

    Input input;
    Output output;

    static std::expected<ShrinkAPIResponse, DecodingError> decode(const QByteArray &body);
};

/// The body that explains a failure.
struct APIErrorResponse
{
    QString error;   ///< Short name; not shown to users.
    QString message; ///< The service's explanation.

    /// None when the body is anything else: the HTTP status alone then decides what is reported.
    static std::optional<APIErrorResponse> decode(const QByteArray &body);
};

/// What one upload tells the queue.
struct ShrinkResponse
{
    QUrl outputURL; ///< Where the service holds the compressed image.
    qint64 inputSize = 0;
    QString inputType;
    qint64 outputSize = 0;
    QString outputType;
    qint64 outputWidth = 0;
    qint64 outputHeight = 0;
    qint64 compressionCount = 0; ///< Compressions made with this key this month; 0: not known.
};

/// The value of a "Compression-Count" header: an optional sign, decimal digits, nothing else.
/// Anything else, and no header, is 0.
qint64 parseCompressionCount(const std::optional<QByteArray> &header);

} // namespace pixpress

// SPDX-FileCopyrightText: 2026 The Pixpress authors
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "model/decoding.h"

#include <QString>

#include <variant>

namespace pixpress {

/// A failure of the compression service, with the fixed text that users read.
struct TinifyError
{
    enum class Case {
        apiError, ///< Any other failure status: carries the code and the service's own message.
        invalidResponse,
        downloadFailed, ///< Never raised by the client: its callers do, for an empty image.
        quotaExceeded,
        unauthorized,
        fileTooLarge,
        invalidImage,
        noAPIKey,
    };

    Case kind;
    qint64 code = 0;      ///< HTTP status, of apiError only.
    QString message = {}; ///< Of apiError only.

    bool operator==(const TinifyError &) const = default;
    QString errorDescription() const;
};

/// A failure below HTTP: no connection, a time-out, a certificate that does not verify.
struct TransportError
{
    enum class Case {
        timedOut,
        cancelled,
        notHTTP, ///< The peer answered with something that is no HTTP response.
        refusedAddress,
        other,
    };

    Case kind;
    QString description; ///< A sentence for the user.

    bool operator==(const TransportError &) const = default;
};

/// A failure of the compression on this computer.
struct LocalError
{
    QString description; ///< A sentence for the user.

    bool operator==(const LocalError &) const = default;
};

/// Whatever can end an operation of a compression service.
using ServiceError = std::variant<TinifyError, DecodingError, TransportError, LocalError>;

/// The sentence that users read, whichever of the errors it is.
QString errorDescription(const ServiceError &error);

} // namespace pixpress

// SPDX-FileCopyrightText: 2026 The Pixpress authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "service/errors.h"

using namespace Qt::StringLiterals;

namespace pixpress {

QString TinifyError::errorDescription() const
{
    switch (kind) {
    case Case::apiError: return u"API error (%1): "_s.arg(code) + message;
    case Case::invalidResponse: return u"Invalid server response"_s;
    case Case::downloadFailed: return u"Failed to download compressed image"_s;
    case Case::quotaExceeded: return u"Monthly compression limit reached (500/month)"_s;
    case Case::unauthorized: return u"Invalid API key"_s;
    case Case::fileTooLarge: return u"File exceeds 500 MB limit"_s;
    case Case::invalidImage: return u"Unsupported image format"_s;
    case Case::noAPIKey: return u"No API key configured"_s;
    }
    Q_UNREACHABLE();
}

QString errorDescription(const ServiceError &error)
{
    struct Visitor
    {
        QString operator()(const TinifyError &error) const { return error.errorDescription(); }
        QString operator()(const DecodingError &error) const { return error.description; }
        QString operator()(const TransportError &error) const { return error.description; }
        QString operator()(const LocalError &error) const { return error.description; }
    };
    return std::visit(Visitor{}, error);
}

} // namespace pixpress

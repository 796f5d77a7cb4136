// SPDX-FileCopyrightText: 2026 The Pixpress authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "localservice/requesthead.h"

#include <algorithm>
#include <array>

using namespace Qt::StringLiterals;

namespace pixpress {

namespace {

bool isOwnHost(const httplib::Request &request, int port)
{
    if (request.get_header_value_count("Host") != 1)
        return false;
    const QByteArray host = QByteArray::fromStdString(request.get_header_value("Host")).toLower();
    constexpr std::array<QByteArrayView, 3> names{"127.0.0.1", "localhost", "[::1]"};
    return std::ranges::any_of(names, [&](QByteArrayView name) {
        return host == name.toByteArray() + ':' + QByteArray::number(port);
    });
}

} // namespace

bool isOutput(const httplib::Request &request)
{
    return request.path.starts_with(outputPrefix);
}

QByteArray outputIdOf(const httplib::Request &request)
{
    return QByteArray::fromStdString(request.path.substr(outputPrefix.size()));
}

bool hasBody(const httplib::Request &request)
{
    return request.has_header("Transfer-Encoding") ||
           request.get_header_value<uint64_t>("Content-Length") > 0;
}

std::optional<qint64> bodyLength(const httplib::Request &request)
{
    if (!request.has_header("Content-Length"))
        return std::nullopt;
    return static_cast<qint64>(request.get_header_value<uint64_t>("Content-Length"));
}

Refusal inputMissing()
{
    return {400, "InputMissing", u"The request has no content."_s};
}

Refusal tooLarge(qint64 limit)
{
    return {413, "TooLarge", u"The content is larger than %1 bytes."_s.arg(limit)};
}

std::optional<Refusal> refuseWebPage(const httplib::Request &request, int port)
{
    if (request.has_header("Origin") || !isOwnHost(request, port))
        return Refusal{403, "Forbidden", u"Web pages cannot use this service."_s};
    return std::nullopt;
}

std::optional<Refusal> refuseForm(const httplib::Request &request, qint64 maxBody)
{
    if (request.path != uploadPath && !isOutput(request))
        return Refusal{404, "NotFound", u"There is nothing at this address."_s};
    const bool isFetch = isOutput(request) && (request.method == "GET" || request.method == "HEAD");
    if (request.method != "POST" && !isFetch)
        return Refusal{405, "MethodNotAllowed", u"This address does not take such requests."_s};
    if (isFetch)
        return std::nullopt;
    if (!hasBody(request))
        return inputMissing();
    if (request.is_multipart_form_data())
        return Refusal{415, "UnsupportedMediaType", u"The content must be the image alone."_s};
    if (request.get_header_value<uint64_t>("Content-Length") > static_cast<uint64_t>(maxBody))
        return tooLarge(maxBody);
    return std::nullopt;
}

} // namespace pixpress

// SPDX-FileCopyrightText: 2026 The Pixpress authors
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "service/http.h"

#include <QCoroTask>

namespace pixpress::test {

inline QCoro::Task<HttpResult> sendTask(HttpClient &client, HttpRequest request)
{
    co_return co_await client.send(std::move(request));
}

/// Sends a request and runs the event loop until its result is there.
inline HttpResult send(HttpClient &client, const HttpRequest &request)
{
    return QCoro::waitFor(sendTask(client, request));
}

inline HttpRequest get(const QUrl &url, const QByteArray &authorization = {})
{
    return {.url = url, .authorization = authorization};
}

inline HttpRequest post(const QUrl &url, const QByteArray &body,
                        const QByteArray &authorization = {})
{
    return {.url = url, .authorization = authorization, .body = body};
}

/// The error's sentence, or the status when there was an answer.
inline QString outcome(const HttpResult &result)
{
    return result ? QString::number(result->status) : result.error().description;
}

} // namespace pixpress::test

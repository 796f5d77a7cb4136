// SPDX-FileCopyrightText: 2026 The Pixpress authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "service.h"

namespace pixpress::test {

namespace {

Answer failure(int status, const QByteArray &message)
{
    return {.status = status,
            .body = R"({"error":"Failed","message":")" + message + R"("})",
            .headers = {{"Content-Type", "application/json"}}};
}

} // namespace

Service::Service() : m_server([this](const Request &request) { return answer(request); }) {}

QByteArray Service::authorization(const QByteArray &key)
{
    return "Basic " + QByteArray("api:" + key).toBase64();
}

Answer Service::answer(const Request &request) const
{
    if (request.headers.value("authorization") != authorization(goodKey))
        return failure(401, "Credentials are invalid.");
    if (request.target == "/shrink") {
        return request.body.isEmpty()
                   ? failure(400, "Input file is empty.")
                   : shrinkAnswer(m_server.url(QStringLiteral("/output")), count);
    }
    return {.status = 200,
            .body = output,
            .headers = {{"Compression-Count", QByteArray::number(count)}}};
}

QList<QByteArray> Service::authorizations() const
{
    QList<QByteArray> values;
    for (const Request &request : m_server.requests)
        values.append(request.headers.value("authorization"));
    return values;
}

QList<QByteArray> Service::uploads() const
{
    QList<QByteArray> bodies;
    for (const Request &request : m_server.requests) {
        if (request.target == "/shrink" && !request.body.isEmpty())
            bodies.append(request.body);
    }
    return bodies;
}

QList<QByteArray> Service::fetches() const
{
    QList<QByteArray> bodies;
    for (const Request &request : m_server.requests) {
        if (request.target == "/output")
            bodies.append(request.body);
    }
    return bodies;
}

} // namespace pixpress::test

// SPDX-FileCopyrightText: 2026 The Pixpress authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "service/http.h"

#include "service/address.h"
#include "service/httpworker.h"

using namespace Qt::StringLiterals;

namespace pixpress {

std::optional<QByteArray> HttpResponse::header(const QByteArray &lowerCaseName) const
{
    const auto found = headers.constFind(lowerCaseName);
    return found == headers.cend() ? std::nullopt : std::optional(*found);
}

HttpClient::HttpClient(HttpLimits limits) : m_limits(std::move(limits)) {}

HttpClient::~HttpClient()
{
    if (m_making.joinable())
        m_making.join();
    m_worker.reset();
    // A coroutine that is told must not find itself in the list, nor start another request here.
    for (Reply *reply : std::exchange(m_waiting, {})) {
        reply->m_result = std::unexpected(
            TransportError{TransportError::Case::cancelled, u"The request was cancelled."_s});
        reply->m_coroutine.resume();
    }
}

HttpClient::Reply HttpClient::send(HttpRequest request)
{
    return {*this, std::move(request)};
}

void HttpClient::start(quint64 id, HttpRequest request)
{
    if (m_worker)
        return m_worker->start(id, std::move(request));
    m_early.emplace_back(id, std::move(request));
    if (m_making.joinable())
        return;
    m_making = std::thread([this] {
        m_made = makeHttpWorker(m_limits, [this] {
            QMetaObject::invokeMethod(this, [this] { deliver(); }, Qt::QueuedConnection);
        });
        QMetaObject::invokeMethod(this, [this] { beginEarly(); }, Qt::QueuedConnection);
    });
}

void HttpClient::beginEarly()
{
    m_making.join();
    auto made = std::exchange(m_made, {});
    auto early = std::exchange(m_early, {});
    if (made)
        m_worker = std::move(*made);
    for (auto &[id, request] : early) {
        if (m_worker)
            m_worker->start(id, std::move(request));
        else
            finish(id, std::unexpected(made.error()));
    }
}

void HttpClient::deliver()
{
    for (auto &[id, result] : m_worker->takeFinished())
        finish(id, std::move(result));
}

void HttpClient::finish(quint64 id, HttpResult result)
{
    Reply *const reply = m_waiting.take(id);
    reply->m_result = std::move(result);
    reply->m_coroutine.resume();
}

HttpClient::Reply::Reply(HttpClient &client, HttpRequest request)
    : m_client(client), m_request(std::move(request))
{
}

bool HttpClient::Reply::await_ready()
{
    if (isAllowedAddress(m_request.url))
        return false;
    m_result = std::unexpected(refusedAddress());
    return true;
}

void HttpClient::Reply::await_suspend(std::coroutine_handle<> waiting)
{
    m_coroutine = waiting;
    const quint64 id = ++m_client.m_lastId;
    m_client.m_waiting.insert(id, this);
    m_client.start(id, std::move(m_request));
}

} // namespace pixpress

// SPDX-FileCopyrightText: 2026 The Pixpress authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "service/http.h"

#include "service/address.h"
#include "service/curlworker.h"
#include "service/desktopproxy.h"

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
    m_worker.reset();
    // A coroutine that resumes must not find itself in the list, nor start another request here.
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

void HttpClient::start(Reply &reply, HttpRequest request)
{
    if (!m_worker)
        m_worker = std::make_unique<CurlWorker>(m_limits, [this](quint64 id, HttpResult result) {
            {
                const std::lock_guard lock(m_mutex);
                m_results.emplace_back(id, std::move(result));
            }
            QMetaObject::invokeMethod(this, [this] { deliver(); }, Qt::QueuedConnection);
        });
    const quint64 id = ++m_lastId;
    m_waiting.insert(id, &reply);
    if (isThisMachine(request.url)) {
        m_worker->start(id, std::move(request));
        return;
    }
    const QUrl url = request.url;
    findDesktopProxy(url, this, [this, id, request](const QByteArray &proxy) mutable {
        request.proxy = proxy;
        m_worker->start(id, std::move(request));
    });
}

void HttpClient::deliver()
{
    std::vector<std::pair<quint64, HttpResult>> results;
    {
        const std::lock_guard lock(m_mutex);
        results.swap(m_results);
    }
    for (auto &[id, result] : results)
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
    m_client.start(*this, std::move(m_request));
}

} // namespace pixpress

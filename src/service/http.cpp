// SPDX-FileCopyrightText: 2026 The Pixpress authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "service/http.h"

#include "service/transfer.h"

#include <QHostAddress>

#include <algorithm>
#include <mutex>
#include <thread>
#include <vector>

using namespace std::chrono_literals;
using namespace Qt::StringLiterals;

namespace pixpress {

std::optional<QByteArray> HttpResponse::header(const QByteArray &lowerCaseName) const
{
    const auto found = headers.constFind(lowerCaseName);
    return found == headers.cend() ? std::nullopt : std::optional(*found);
}

bool isAllowedAddress(const QUrl &url)
{
    if (!url.isValid() || url.host().isEmpty())
        return false;
    if (url.scheme() == "https"_L1)
        return true;
    return url.scheme() == "http"_L1 &&
           (url.host() == "localhost"_L1 || QHostAddress(url.host()).isLoopback());
}

/// The thread that carries every transfer, and the two mailboxes between it and the client.
class HttpClient::Worker
{
public:
    Worker(HttpClient &client, HttpLimits limits)
        : m_client(client),
          m_limits(std::move(limits)),
          m_multi(curl_multi_init()),
          m_thread(&Worker::run, this)
    {
    }

    /// Ends all transfers without an answer.
    ~Worker()
    {
        {
            const std::lock_guard lock(m_mutex);
            m_stopping = true;
        }
        curl_multi_wakeup(m_multi);
        m_thread.join();
        curl_multi_cleanup(m_multi);
    }

    void start(quint64 id, HttpRequest request)
    {
        EasyHandle handle;
        {
            const std::lock_guard lock(m_mutex);
            if (!m_idle.empty()) {
                handle = std::move(m_idle.back());
                m_idle.pop_back();
            }
        }
        if (!handle)
            handle = Transfer::makeHandle(m_limits, m_sockets);
        auto transfer = std::make_unique<Transfer>(id, std::move(request), std::move(handle),
                                                   m_limits, m_sockets);
        {
            const std::lock_guard lock(m_mutex);
            m_new.push_back(std::move(transfer));
            if (!m_asleep)
                return;
        }
        curl_multi_wakeup(m_multi);
    }

    std::vector<std::pair<quint64, HttpResult>> takeFinished()
    {
        const std::lock_guard lock(m_mutex);
        return std::exchange(m_finished, {});
    }

private:
    using Clock = Transfer::Clock;

    static constexpr auto alertness = 100us;

    void run()
    {
        while (takeNew()) {
            int running = 0;
            for (const auto &transfer : m_transfers)
                transfer->resume();
            curl_multi_perform(m_multi, &running);
            finishDone();
            const auto wait = finishLate();
            if (fallAsleep())
                curl_multi_poll(m_multi, nullptr, 0, static_cast<int>(wait.count()), nullptr);
        }
        for (const auto &transfer : m_transfers)
            curl_multi_remove_handle(m_multi, transfer->handle());
        m_transfers.clear();
    }

    /// False when there is something new. A client that goes on from an answer has its next
    /// request within microseconds, long before a sleeping thread could even be woken.
    bool fallAsleep()
    {
        const auto end = m_handedOver + alertness;
        while (true) {
            const bool alert = m_transfers.empty() && Clock::now() < end;
            {
                const std::lock_guard lock(m_mutex);
                if (!m_new.empty() || m_stopping)
                    return false;
                m_asleep = !alert;
            }
            if (!alert)
                return true;
            std::this_thread::yield();
        }
    }

    /// False when it is time to stop.
    bool takeNew()
    {
        std::vector<std::unique_ptr<Transfer>> taken;
        {
            const std::lock_guard lock(m_mutex);
            m_asleep = false;
            if (m_stopping)
                return false;
            taken.swap(m_new);
        }
        for (auto &transfer : taken) {
            curl_multi_add_handle(m_multi, transfer->handle());
            m_transfers.push_back(std::move(transfer));
        }
        return true;
    }

    void finishDone()
    {
        int left = 0;
        while (const CURLMsg *message = curl_multi_info_read(m_multi, &left)) {
            if (message->msg != CURLMSG_DONE)
                continue;
            // Removing the handle invalidates the message.
            const CURLcode code = message->data.result;
            const auto found = std::ranges::find(m_transfers, message->easy_handle,
                                                 [](const auto &t) { return t->handle(); });
            curl_multi_remove_handle(m_multi, message->easy_handle);
            if (auto result = (*found)->finish(code))
                handOver(found, std::move(*result));
            else
                curl_multi_add_handle(m_multi, (*found)->handle()); // redirected
        }
    }

    /// Ends the transfers that have been silent, or on their way, for too long. Returns how long
    /// it is until that can happen to the next one.
    std::chrono::milliseconds finishLate()
    {
        const auto now = Clock::now();
        auto wait = std::chrono::milliseconds(24h);
        for (size_t i = 0; i < m_transfers.size();) {
            const auto left =
                std::chrono::ceil<std::chrono::milliseconds>(m_transfers[i]->deadline() - now);
            if (left > 0ms) {
                wait = std::min(wait, left);
                ++i;
                continue;
            }
            curl_multi_remove_handle(m_multi, m_transfers[i]->handle());
            handOver(m_transfers.begin() + static_cast<std::ptrdiff_t>(i),
                     std::unexpected(TransportError{TransportError::Case::timedOut,
                                                    u"The request timed out."_s}));
        }
        return wait;
    }

    void handOver(std::vector<std::unique_ptr<Transfer>>::iterator transfer, HttpResult result)
    {
        {
            const std::lock_guard lock(m_mutex);
            m_finished.emplace_back((*transfer)->id(), std::move(result));
            m_idle.push_back((*transfer)->takeHandle());
        }
        // First of all, so that the client goes on while this thread tidies up.
        QMetaObject::invokeMethod(
            &m_client, [client = &m_client] { client->deliver(); }, Qt::QueuedConnection);
        m_transfers.erase(transfer);
        m_handedOver = Clock::now();
    }

    HttpClient &m_client;
    const HttpLimits m_limits;
    OpenSockets m_sockets;
    CURLM *const m_multi;
    // The worker thread's alone:
    std::vector<std::unique_ptr<Transfer>> m_transfers;
    Clock::time_point m_handedOver;

    std::mutex m_mutex; // guards what follows; never held while anything is called
    std::vector<std::unique_ptr<Transfer>> m_new;
    std::vector<std::pair<quint64, HttpResult>> m_finished;
    std::vector<EasyHandle> m_idle;
    bool m_stopping = false;
    bool m_asleep = false; // or about to be: has to be woken

    std::thread m_thread; // last: it uses all of the above
};

HttpClient::HttpClient(HttpLimits limits)
    : m_worker(std::make_unique<Worker>(*this, std::move(limits)))
{
}

HttpClient::~HttpClient()
{
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

void HttpClient::deliver()
{
    for (auto &[id, result] : m_worker->takeFinished()) {
        Reply *const reply = m_waiting.take(id);
        reply->m_result = std::move(result);
        reply->m_coroutine.resume();
    }
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
    m_client.m_worker->start(id, std::move(m_request));
}

} // namespace pixpress

// SPDX-FileCopyrightText: 2026 The Pixpress authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "service/curlworker.h"

#include "service/transfer.h"

#include <algorithm>
#include <mutex>
#include <thread>
#include <vector>

using namespace std::chrono_literals;
using namespace Qt::StringLiterals;

namespace pixpress {

class CurlWorker::Thread
{
public:
    Thread(HttpLimits limits, OnFinished onFinished)
        : m_limits(std::move(limits)),
          m_onFinished(std::move(onFinished)),
          m_thread(&Thread::run, this)
    {
    }

    ~Thread()
    {
        {
            const std::lock_guard lock(m_mutex);
            m_stopping = true;
        }
        curl_multi_wakeup(m_multi.get());
        m_thread.join();
    }

    void start(quint64 id, HttpRequest request)
    {
        {
            const std::lock_guard lock(m_mutex);
            m_new.emplace_back(id, std::move(request));
        }
        curl_multi_wakeup(m_multi.get());
    }

private:
    using Clock = Transfer::Clock;

    void run()
    {
        std::vector<curl_waitfd> sockets;
        while (takeNew()) {
            m_connections.relay();
            int running = 0;
            curl_multi_perform(m_multi.get(), &running);
            finishDone();
            const auto wait = finishLate();
            const bool isEnding = m_connections.addTo(sockets);
            curl_multi_poll(m_multi.get(), sockets.data(), static_cast<unsigned>(sockets.size()),
                            isEnding ? 0 : static_cast<int>(wait.count()), nullptr);
        }
        for (const auto &transfer : m_transfers)
            curl_multi_remove_handle(m_multi.get(), transfer->handle());
        m_transfers.clear();
    }

    /// False when it is time to stop.
    bool takeNew()
    {
        std::vector<std::pair<quint64, HttpRequest>> taken;
        {
            const std::lock_guard lock(m_mutex);
            if (m_stopping)
                return false;
            taken.swap(m_new);
        }
        for (auto &[id, request] : taken) {
            EasyHandle handle;
            if (m_idle.empty()) {
                handle = Transfer::makeHandle(m_limits, m_connections);
            } else {
                handle = std::move(m_idle.back());
                m_idle.pop_back();
            }
            m_transfers.push_back(std::make_unique<Transfer>(
                id, std::move(request), std::move(handle), m_limits, m_connections));
            curl_multi_add_handle(m_multi.get(), m_transfers.back()->handle());
        }
        return true;
    }

    void finishDone()
    {
        int left = 0;
        while (const CURLMsg *message = curl_multi_info_read(m_multi.get(), &left)) {
            if (message->msg != CURLMSG_DONE)
                continue;
            // Removing the handle invalidates the message.
            const CURLcode code = message->data.result;
            const auto found = std::ranges::find(m_transfers, message->easy_handle,
                                                 [](const auto &t) { return t->handle(); });
            curl_multi_remove_handle(m_multi.get(), message->easy_handle);
            if (auto result = (*found)->finish(code))
                handOver(found, std::move(*result));
            else
                curl_multi_add_handle(m_multi.get(), (*found)->handle()); // redirected
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
            curl_multi_remove_handle(m_multi.get(), m_transfers[i]->handle());
            handOver(m_transfers.begin() + static_cast<std::ptrdiff_t>(i),
                     std::unexpected(TransportError{TransportError::Case::timedOut,
                                                    u"The request timed out."_s}));
        }
        return wait;
    }

    void handOver(std::vector<std::unique_ptr<Transfer>>::iterator transfer, HttpResult result)
    {
        m_onFinished((*transfer)->id(), std::move(result));
        m_idle.push_back((*transfer)->takeHandle());
        m_transfers.erase(transfer);
    }

    const HttpLimits m_limits;
    const OnFinished m_onFinished;
    Connections m_connections; // before libcurl, which closes its sockets there
    const std::unique_ptr<CURLM, Cleanup<curl_multi_cleanup>> m_multi{curl_multi_init()};
    // The thread's alone:
    std::vector<std::unique_ptr<Transfer>> m_transfers;
    std::vector<EasyHandle> m_idle;

    std::mutex m_mutex; // guards what follows; never held while anything is called
    std::vector<std::pair<quint64, HttpRequest>> m_new;
    bool m_stopping = false;

    std::thread m_thread; // last: it uses all of the above
};

CurlWorker::CurlWorker(HttpLimits limits, OnFinished onFinished)
    : m_thread(std::make_unique<Thread>(std::move(limits), std::move(onFinished)))
{
}

CurlWorker::~CurlWorker() = default;

void CurlWorker::start(quint64 id, HttpRequest request)
{
    m_thread->start(id, std::move(request));
}

} // namespace pixpress

// SPDX-FileCopyrightText: 2026 The Pixpress authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "service/httpworker.h"
#include "service/transfer.h"

#include <algorithm>
#include <mutex>
#include <thread>

using namespace std::chrono_literals;
using namespace Qt::StringLiterals;

namespace pixpress {

namespace {

/// The thread that carries every transfer, and the two mailboxes between it and the client.
class CurlWorker final : public HttpWorker
{
public:
    CurlWorker(HttpLimits limits, std::function<void()> onFinished)
        : m_limits(std::move(limits)),
          m_onFinished(std::move(onFinished)),
          m_multi(curl_multi_init()),
          m_thread(&CurlWorker::run, this)
    {
    }

    ~CurlWorker() override
    {
        {
            const std::lock_guard lock(m_mutex);
            m_stopping = true;
        }
        curl_multi_wakeup(m_multi);
        m_thread.join();
        curl_multi_cleanup(m_multi);
    }

    void start(quint64 id, HttpRequest request) override
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

    std::vector<std::pair<quint64, HttpResult>> takeFinished() override
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
        m_onFinished();
        m_transfers.erase(transfer);
        m_handedOver = Clock::now();
    }

    const HttpLimits m_limits;
    const std::function<void()> m_onFinished;
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

} // namespace

std::expected<std::unique_ptr<HttpWorker>, TransportError>
makeHttpWorker(HttpLimits limits, std::function<void()> onFinished)
{
    return std::make_unique<CurlWorker>(std::move(limits), std::move(onFinished));
}

} // namespace pixpress

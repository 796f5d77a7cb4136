// SPDX-FileCopyrightText: 2026 The Pixpress authors
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "service/http.h"

#include <functional>
#include <memory>

namespace pixpress {

/// Carries the requests of an HttpClient on a thread of its own, which runs libcurl's multi
/// interface. Destroying it ends those under way without a result.
class CurlWorker
{
public:
    /// Called on the worker's thread.
    using OnFinished = std::function<void(quint64 id, HttpResult result)>;

    CurlWorker(HttpLimits limits, OnFinished onFinished);
    ~CurlWorker();

    /// Sends a request to an allowed address. `id` comes back with the result.
    void start(quint64 id, HttpRequest request);

private:
    class Thread;
    const std::unique_ptr<Thread> m_thread;
};

} // namespace pixpress

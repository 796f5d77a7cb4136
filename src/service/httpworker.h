// SPDX-FileCopyrightText: 2026 The Pixpress authors
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "service/http.h"

#include <functional>
#include <memory>
#include <vector>

namespace pixpress {

/// Carries the requests of an HttpClient, on a thread of its own. Destroying it ends those under
/// way without a result.
class HttpWorker
{
public:
    virtual ~HttpWorker() = default;

    /// Sends a request to an allowed address. `id` comes back with the result.
    virtual void start(quint64 id, HttpRequest request) = 0;

    /// The results since the last call.
    virtual std::vector<std::pair<quint64, HttpResult>> takeFinished() = 0;
};

/// Makes the worker with libcurl, which an application with a window loads for it: for tens of
/// milliseconds, so not on the thread that draws. Fails when it cannot be loaded. `onFinished` is
/// called on the worker's thread when there is something to take.
std::expected<std::unique_ptr<HttpWorker>, TransportError>
makeHttpWorker(HttpLimits limits, std::function<void()> onFinished);

} // namespace pixpress

// SPDX-FileCopyrightText: 2026 The Pixpress authors
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "service/errors.h"

#include <QByteArray>
#include <QHash>
#include <QObject>
#include <QString>
#include <QUrl>

#include <chrono>
#include <coroutine>
#include <expected>
#include <memory>
#include <mutex>
#include <optional>
#include <utility>
#include <vector>

namespace pixpress {

class CurlWorker;

struct HttpLimits
{
    QString caBundle = {}; ///< File of trusted certificates (PEM); empty: the system's.
    /// The longest time in which nothing moves in either direction. Connecting, TLS included, may
    /// take this long too, and the wait for the answer is measured from there.
    std::chrono::milliseconds longestSilence = std::chrono::seconds(60);
    /// The longest time for a whole request, redirects included.
    std::chrono::milliseconds longestTransfer = std::chrono::seconds(600);
    /// Bytes. The service takes pictures of up to 500 MB: no answer needs twice that.
    qint64 largestAnswer = 1 << 30;
};

/// A GET, or with a body (an empty one counts) a POST.
struct HttpRequest
{
    QUrl url;
    QByteArray authorization = {}; ///< Value of the "Authorization" header; empty: none.
    QByteArray contentType = {};   ///< Value of the "Content-Type" header; empty: none.
    std::optional<QByteArray> body = {};
    qint64 largestAnswer = 1 << 30; ///< Bytes. The limit of the client holds too.
    QByteArray proxy = {}; ///< Filled by the client; empty: none, or what the environment names.
};

struct HttpResponse
{
    int status = 0;
    QHash<QByteArray, QByteArray> headers; ///< Names in lower case; repeated ones joined with ", ".
    QByteArray body; ///< Of a failure (400 and above) the first megabyte at most.

    /// None when the answer has no such header.
    std::optional<QByteArray> header(const QByteArray &lowerCaseName) const;
};

using HttpResult = std::expected<HttpResponse, TransportError>;

/// Sends HTTP requests over connections that it keeps alive, any number at a time.
///
/// TLS is verified. Plain http is refused unless the host is this machine, also when a redirect
/// leads there. A GET follows redirects, a POST those that turn it into a GET; what would send a
/// POST a second time (307, 308, a kept-alive connection that dies) is not done. Credentials stay
/// with the scheme, host and port that they were given for.
///
/// Other machines are reached through the proxy server that the desktop's settings name, or else
/// the environment (https_proxy, all_proxy, no_proxy), by a tunnel: the proxy sees neither requests
/// nor answers, and its credentials go to it alone.
///
/// Belongs to the thread that made it, which needs an event loop; the transfers themselves run on
/// one thread of the client's own. Destroying the client ends what is under way with
/// TransportError::Case::cancelled: the waiting coroutines resume inside the destructor.
class HttpClient : public QObject
{
public:
    class Reply;

    explicit HttpClient(HttpLimits limits);
    ~HttpClient() override;

    /// Starts the request when it is awaited. The body is not copied.
    Reply send(HttpRequest request);

private:
    void start(Reply &reply, HttpRequest request);
    void deliver();
    void finish(quint64 id, HttpResult result);

    const HttpLimits m_limits;
    QHash<quint64, Reply *> m_waiting; // in the frames of the coroutines that await them
    quint64 m_lastId = 0;
    std::mutex m_mutex;                                    ///< For the results.
    std::vector<std::pair<quint64, HttpResult>> m_results; ///< From the worker's thread.
    std::unique_ptr<CurlWorker> m_worker;                  ///< Made for the first request.
};

/// What a coroutine awaits to get an HttpResult. It must be awaited, once, on the client's thread.
class HttpClient::Reply
{
public:
    Reply(HttpClient &client, HttpRequest request);

    bool await_ready();
    void await_suspend(std::coroutine_handle<> waiting);
    HttpResult await_resume() { return std::move(m_result); }

private:
    friend class HttpClient;

    HttpClient &m_client;
    HttpRequest m_request;
    HttpResult m_result;
    std::coroutine_handle<> m_coroutine;
};

} // namespace pixpress

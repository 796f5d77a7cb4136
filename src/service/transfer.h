// SPDX-FileCopyrightText: 2026 The Pixpress authors
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "service/connections.h"
#include "service/http.h"

#include <curl/curl.h>

#include <chrono>
#include <memory>
#include <optional>

namespace pixpress {

template <auto cleanup>
struct Cleanup
{
    template <typename T>
    void operator()(T *object) const
    {
        cleanup(object);
    }
};

/// libcurl's handle of a request, which one request after another may use.
using EasyHandle = std::unique_ptr<CURL, Cleanup<curl_easy_cleanup>>;

/// One request on its way: a libcurl handle with what its callbacks read and fill. Used by one
/// thread at a time; stays where it was made, for libcurl holds its address.
class Transfer
{
public:
    using Clock = Relay::Clock;

    /// A handle for transfers with these limits and connections, which outlive it.
    static EasyHandle makeHandle(const HttpLimits &limits, Connections &connections);

    /// `limits` and `connections` are those of the handle.
    Transfer(quint64 id, HttpRequest request, EasyHandle handle, const HttpLimits &limits,
             Connections &connections);
    Transfer(const Transfer &) = delete;
    Transfer &operator=(const Transfer &) = delete;

    quint64 id() const { return m_id; }
    CURL *handle() const { return m_easy.get(); }

    /// When the transfer is late, unless something moves before.
    Clock::time_point deadline() const;

    /// What came of it when libcurl has ended with `code`; none when the answer was a redirect and
    /// the handle is ready for the request that follows.
    std::optional<HttpResult> finish(CURLcode code);

    /// The handle, for the next transfer; what remains of this one can only be destroyed.
    EasyHandle takeHandle() { return std::move(m_easy); }

private:
    void prepare();
    std::optional<HttpResult> follow(const QUrl &target);
    TransportError describeWithProxy(CURLcode code) const;
    void readHeaders();
    void keep(QByteArrayView piece);
    bool useConnection(const QByteArray &name);

    static size_t receiveHeader(char *data, size_t size, size_t count, void *self);
    static size_t receiveBody(char *data, size_t size, size_t count, void *self);
    static curl_socket_t openSocket(void *self, curlsocktype purpose, curl_sockaddr *address);
    static int beforeRequest(void *self, char *serverAddress, char *ownAddress, int serverPort,
                             int ownPort);

    const quint64 m_id;
    const HttpLimits &m_limits;
    Connections &m_connections;
    HttpRequest m_request;
    HttpResponse m_response;

    std::unique_ptr<curl_slist, Cleanup<curl_slist_free_all>> m_headers;
    EasyHandle m_easy;       // before what it uses goes
    QByteArray m_proxy;      ///< With its credentials; empty: none.
    QByteArray m_connection; ///< Its name, once there is one.
    bool m_headIsComplete = false;
    size_t m_headSize = 0;     ///< Of the interim answers too.
    bool m_isCut = false;      ///< No more of the body is wanted.
    bool m_reconnects = false; ///< The kept-alive connection that was chosen is not to be used.
    int m_attempts = 0;
    int m_redirects = 0;
    std::optional<TransportError> m_refused; ///< Why an answer was not taken to its end.
    const Clock::time_point m_started = Clock::now();
    Clock::time_point m_connected = m_started;
};

} // namespace pixpress

// SPDX-FileCopyrightText: 2026 The Pixpress authors
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "service/relay.h"

#include <QByteArray>

#include <curl/curl.h>

#include <vector>

namespace pixpress {

/// The connections that libcurl holds, each with a relay from the first request on it. Outlives the
/// multi handle; used by its thread alone.
class Connections
{
public:
    /// libcurl's callbacks. `self` of the second is the Connections.
    curl_socket_t open(const void *owner, const curl_sockaddr &address);
    static int close(void *self, curl_socket_t socket);

    /// The relay of the connection with this name, or nullptr.
    Relay *find(const QByteArray &name) const;
    /// Names the connection that `owner` has just opened, and inserts a relay. Returns nullptr if
    /// the system has no more sockets.
    Relay *add(const void *owner, const QByteArray &name);

    /// Each does to all what Relay says.
    void relay();
    bool addTo(std::vector<curl_waitfd> &sockets) const;

private:
    struct Connection
    {
        curl_socket_t socket;
        const void *owner;
        QByteArray name = {};
        std::unique_ptr<Relay> relay = {};
    };

    std::vector<Connection> m_connections;
};

} // namespace pixpress

// SPDX-FileCopyrightText: 2026 The Pixpress authors
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <curl/curl.h>

#include <vector>

namespace pixpress {

/// The sockets of the connections that libcurl holds. libcurl does not tell a running transfer
/// which of them it uses, only the local port. Outlives the multi handle; used by its thread alone.
class OpenSockets
{
public:
    /// Has libcurl make and close the sockets of this handle's connections here.
    void watch(CURL *easy);

    /// The socket bound to this port, or CURL_SOCKET_BAD.
    curl_socket_t find(int localPort) const;

private:
    static curl_socket_t open(void *self, curlsocktype purpose, curl_sockaddr *address);
    static int close(void *self, curl_socket_t socket);

    std::vector<curl_socket_t> m_sockets;
};

} // namespace pixpress

// SPDX-FileCopyrightText: 2026 The Pixpress authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "service/opensockets.h"

#include <algorithm>
#include <arpa/inet.h>
#include <sys/socket.h>
#include <unistd.h>

namespace pixpress {

namespace {

/// -1 for what has no port.
int localPort(curl_socket_t socket)
{
    sockaddr_storage address = {};
    socklen_t length = sizeof address;
    if (getsockname(socket, reinterpret_cast<sockaddr *>(&address), &length) != 0)
        return -1;
    if (address.ss_family == AF_INET)
        return ntohs(reinterpret_cast<const sockaddr_in &>(address).sin_port);
    if (address.ss_family == AF_INET6)
        return ntohs(reinterpret_cast<const sockaddr_in6 &>(address).sin6_port);
    return -1;
}

} // namespace

void OpenSockets::watch(CURL *easy)
{
    curl_easy_setopt(easy, CURLOPT_OPENSOCKETFUNCTION, &OpenSockets::open);
    curl_easy_setopt(easy, CURLOPT_OPENSOCKETDATA, this);
    curl_easy_setopt(easy, CURLOPT_CLOSESOCKETFUNCTION, &OpenSockets::close);
    curl_easy_setopt(easy, CURLOPT_CLOSESOCKETDATA, this);
}

curl_socket_t OpenSockets::find(int port) const
{
    const auto found = std::ranges::find(m_sockets, port, &localPort);
    return found == m_sockets.end() ? CURL_SOCKET_BAD : *found;
}

curl_socket_t OpenSockets::open(void *self, curlsocktype, curl_sockaddr *address)
{
    const curl_socket_t socket =
        ::socket(address->family, address->socktype | SOCK_CLOEXEC, address->protocol);
    if (socket != CURL_SOCKET_BAD)
        static_cast<OpenSockets *>(self)->m_sockets.push_back(socket);
    return socket;
}

int OpenSockets::close(void *self, curl_socket_t socket)
{
    std::erase(static_cast<OpenSockets *>(self)->m_sockets, socket);
    return ::close(socket);
}

} // namespace pixpress

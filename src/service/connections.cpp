// SPDX-FileCopyrightText: 2026 The Pixpress authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "service/connections.h"

#include <algorithm>
#include <sys/socket.h>
#include <unistd.h>

namespace pixpress {

namespace {

/// libcurl tries several addresses at once, each with a socket; one of them gets connected.
bool isConnected(curl_socket_t socket)
{
    sockaddr_storage address = {};
    socklen_t length = sizeof address;
    return getpeername(socket, reinterpret_cast<sockaddr *>(&address), &length) == 0;
}

} // namespace

curl_socket_t Connections::open(const void *owner, const curl_sockaddr &address)
{
    const curl_socket_t socket =
        ::socket(address.family, address.socktype | SOCK_CLOEXEC, address.protocol);
    if (socket != CURL_SOCKET_BAD)
        m_connections.push_back({.socket = socket, .owner = owner});
    return socket;
}

int Connections::close(void *self, curl_socket_t socket)
{
    std::erase_if(static_cast<Connections *>(self)->m_connections,
                  [socket](const Connection &connection) { return connection.socket == socket; });
    return ::close(socket);
}

Relay *Connections::find(const QByteArray &name) const
{
    const auto found = std::ranges::find(m_connections, name, &Connection::name);
    return found == m_connections.end() ? nullptr : found->relay.get();
}

Relay *Connections::add(const void *owner, const QByteArray &name)
{
    const auto found = std::ranges::find_if(m_connections, [owner](const Connection &connection) {
        return connection.owner == owner && !connection.relay && isConnected(connection.socket);
    });
    if (found == m_connections.end())
        return nullptr;
    auto relay = Relay::insert(found->socket);
    if (!relay)
        return nullptr;
    found->name = name;
    found->relay = std::move(*relay);
    return found->relay.get();
}

void Connections::relay()
{
    for (const Connection &connection : m_connections)
        if (connection.relay)
            connection.relay->relay();
}

bool Connections::addTo(std::vector<curl_waitfd> &sockets) const
{
    sockets.clear();
    bool isEnding = false;
    for (const Connection &connection : m_connections)
        if (connection.relay)
            isEnding = connection.relay->addTo(sockets) || isEnding;
    return isEnding;
}

} // namespace pixpress

// SPDX-FileCopyrightText: 2026 The Pixpress authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "service/relay.h"

#include <cerrno>
#include <fcntl.h>
#include <sys/ioctl.h>
#include <sys/socket.h>
#include <unistd.h>
#include <utility>

namespace pixpress {

std::expected<std::unique_ptr<Relay>, int> Relay::insert(curl_socket_t socket)
{
    std::array<int, 2> pair{};
    if (socketpair(AF_UNIX, SOCK_STREAM | SOCK_NONBLOCK | SOCK_CLOEXEC, 0, pair.data()) != 0)
        return std::unexpected(errno);
    const auto [libcurls, client] = pair;
    const int server = fcntl(socket, F_DUPFD_CLOEXEC, 0);
    const bool isReplaced = server >= 0 && dup3(libcurls, socket, O_CLOEXEC) >= 0;
    const int error = errno;
    close(libcurls);
    if (isReplaced)
        return std::unique_ptr<Relay>(new Relay(socket, server, client));
    close(client);
    if (server >= 0)
        close(server);
    return std::unexpected(error);
}

Relay::Relay(curl_socket_t socket, int server, int client)
    : m_socket(socket), m_server(server), m_client(client)
{
}

Relay::~Relay()
{
    if (m_client >= 0) {
        m_up.move(m_client, m_server); // the last words of TLS
        close(m_client);
    }
    close(m_server);
}

bool Relay::Lane::move(int from, int to)
{
    bool hasMoved = false;
    while (true) {
        while (!isEmpty()) {
            const ssize_t sent =
                send(to, buffer.data() + begin, end - begin, MSG_NOSIGNAL | MSG_DONTWAIT);
            if (sent < 0) {
                if (errno != EAGAIN && errno != EWOULDBLOCK) {
                    hasEnded = isBroken = true;
                    begin = end = 0;
                }
                return hasMoved;
            }
            begin += static_cast<size_t>(sent);
            hasMoved = true;
        }
        if (hasEnded)
            return hasMoved;
        const ssize_t received = recv(from, buffer.data(), buffer.size(), MSG_DONTWAIT);
        if (received < 0 && (errno == EAGAIN || errno == EWOULDBLOCK))
            return hasMoved;
        hasEnded = received <= 0;
        isBroken = received < 0;
        begin = 0;
        end = static_cast<size_t>(std::max<ssize_t>(received, 0));
        hasMoved = hasMoved || received > 0;
    }
}

void Relay::relay()
{
    if (m_client < 0)
        return;
    const bool hasSent = m_up.move(m_client, m_server);
    const bool hasReceived = m_down.move(m_server, m_client);
    if (hasSent || hasReceived)
        m_lastMove = Clock::now();

    if (!m_down.hasEnded || !m_down.isEmpty())
        return;
    if (!m_up.isBroken && !m_down.isBroken) {
        if (!std::exchange(m_isClosed, true))
            shutdown(m_client, SHUT_WR);
        return;
    }
    // libcurl has run since the last time: what it left unread then, it is not going to read.
    const int stillUnread = unread();
    if (stillUnread != 0 && stillUnread != std::exchange(m_lastUnread, stillUnread))
        return;
    // With a byte that nobody reads, closing is not an end, which could be that of an answer, but
    // a reset.
    send(m_socket, "", 1, MSG_NOSIGNAL | MSG_DONTWAIT);
    close(std::exchange(m_client, -1));
}

bool Relay::addTo(std::vector<curl_waitfd> &sockets) const
{
    if (m_client < 0)
        return false;
    const auto add = [&](int socket, const Lane &in, const Lane &out) {
        const int events = (in.isEmpty() && !in.hasEnded ? CURL_WAIT_POLLIN : 0) |
                           (out.isEmpty() ? 0 : CURL_WAIT_POLLOUT);
        if (events != 0) // else poll() would still report an error, again and again
            sockets.push_back({socket, static_cast<short>(events), 0});
    };
    add(m_server, m_down, m_up);
    add(m_client, m_up, m_down);
    return m_down.hasEnded && m_down.isEmpty() && (m_up.isBroken || m_down.isBroken);
}

int Relay::unread() const
{
    int size = 0;
    ioctl(m_socket, FIONREAD, &size);
    return size;
}

bool Relay::hasInput() const
{
    return m_down.hasEnded || !m_down.isEmpty() || unread() > 0;
}

} // namespace pixpress

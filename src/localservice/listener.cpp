// SPDX-FileCopyrightText: 2026 The Pixpress authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "localservice/listener.h"

#include <utility>

#include <arpa/inet.h>
#include <fcntl.h>
#include <sys/socket.h>
#include <unistd.h>

using namespace Qt::StringLiterals;

namespace pixpress {

namespace {

// Connections that nobody has accepted yet. The service's owner stands in the same line as a crowd
// that wants to keep it busy, and gets through it in turn, in seconds. Who finds the line full has
// to try again, ever more seldom, and whether there is room just then is chance: so it is long.
constexpr int backlog = 1024;

} // namespace

std::expected<Listener, QString> Listener::open()
{
    Listener listener(::socket(AF_INET, SOCK_STREAM, 0), 0);
    sockaddr_in address{};
    address.sin_family = AF_INET;
    address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    socklen_t size = sizeof address;
    auto *const generic = reinterpret_cast<sockaddr *>(&address);
    if (listener.m_descriptor < 0 || ::fcntl(listener.m_descriptor, F_SETFD, FD_CLOEXEC) != 0 ||
        ::bind(listener.m_descriptor, generic, size) != 0 ||
        ::listen(listener.m_descriptor, backlog) != 0 ||
        ::getsockname(listener.m_descriptor, generic, &size) != 0)
        return std::unexpected(u"The built-in service cannot listen on this machine."_s);
    listener.m_port = ntohs(address.sin_port);
    return listener;
}

Listener::Listener(Listener &&other) noexcept
    : m_descriptor(std::exchange(other.m_descriptor, -1)), m_port(other.m_port)
{
}

Listener::~Listener()
{
    if (m_descriptor >= 0)
        ::close(m_descriptor);
}

QUrl Listener::address() const
{
    return QUrl(u"http://127.0.0.1:%1"_s.arg(m_port));
}

int Listener::release()
{
    return std::exchange(m_descriptor, -1);
}

} // namespace pixpress

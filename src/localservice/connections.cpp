// SPDX-FileCopyrightText: 2026 The Pixpress authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "localservice/connections.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <chrono>
#include <thread>

namespace pixpress {

namespace {

/// How long a connection may be silent: between two requests and within one.
constexpr std::chrono::seconds patience{60};

/// How much of an unwanted body is read before its connection is closed, and for how long. Closing
/// while bytes arrive makes the peer's system drop the answer that it has not yet read.
constexpr ssize_t lingerBytes = 4 << 20;
constexpr std::chrono::milliseconds lingerTime{500};

thread_local bool closesAfterAnswer = false;

void setReadTimeout(socket_t socket, std::chrono::milliseconds timeout)
{
    const timeval value{static_cast<time_t>(timeout.count() / 1000),
                        static_cast<suseconds_t>(timeout.count() % 1000 * 1000)};
    ::setsockopt(socket, SOL_SOCKET, SO_RCVTIMEO, &value, sizeof value);
}

} // namespace

struct ConnectionServer::Connection
{
    socket_t socket;
    bool isIdle = true; ///< Between two requests. Guarded by the server's mutex.
};

/// The library's view of a connection, buffered both ways.
class ConnectionServer::Stream final : public httplib::Stream
{
public:
    explicit Stream(socket_t socket) : m_socket(socket) {}

    bool is_readable() const override { return true; }
    bool is_writable() const override { return !m_failed; }
    socket_t socket() const override { return m_socket; }

    // Nobody asks for the addresses: both ends are this machine.
    void get_remote_ip_and_port(std::string &, int &) const override {}
    void get_local_ip_and_port(std::string &, int &) const override {}

    ssize_t read(char *to, size_t size) override
    {
        if (m_begin == m_end && !fill())
            return m_failed ? -1 : 0;
        size = std::min(size, m_end - m_begin);
        std::copy_n(m_in.data() + m_begin, size, to);
        m_begin += size;
        return static_cast<ssize_t>(size);
    }

    ssize_t write(const char *from, size_t size) override
    {
        const bool fits = m_out.size() + size <= m_in.size();
        if (fits)
            m_out.append(from, size);
        else if (!flush() || !send(from, size))
            return -1;
        return static_cast<ssize_t>(size);
    }

    bool flush()
    {
        const bool sent = send(m_out.data(), m_out.size());
        m_out.clear();
        return sent;
    }

    /// Waits for bytes; false when the peer has ended, or has been silent for too long.
    bool fill()
    {
        if (m_begin < m_end)
            return true;
        if (!flush())
            return false;
        const ssize_t count = receive(m_in.data(), m_in.size());
        m_begin = 0;
        m_end = count > 0 ? static_cast<size_t>(count) : 0;
        m_failed = m_failed || count < 0;
        return count > 0;
    }

    /// Tells the peer that nothing follows, then drops what it still sends.
    void linger()
    {
        ::shutdown(m_socket, SHUT_WR);
        const auto end = std::chrono::steady_clock::now() + lingerTime;
        setReadTimeout(m_socket, lingerTime);
        ssize_t dropped = 0;
        while (dropped < lingerBytes && std::chrono::steady_clock::now() < end) {
            const ssize_t count = receive(m_in.data(), m_in.size());
            if (count <= 0)
                break;
            dropped += count;
        }
    }

private:
    ssize_t receive(char *to, size_t size)
    {
        ssize_t count = 0;
        do {
            count = ::recv(m_socket, to, size, 0);
        } while (count < 0 && errno == EINTR);
        return count;
    }

    bool send(const char *from, size_t size)
    {
        while (size > 0 && !m_failed) {
            const ssize_t count = ::send(m_socket, from, size, MSG_NOSIGNAL);
            if (count > 0) {
                from += count;
                size -= static_cast<size_t>(count);
            } else if (errno != EINTR) {
                m_failed = true;
            }
        }
        return !m_failed;
    }

    const socket_t m_socket;
    bool m_failed = false;
    std::array<char, 65'536> m_in;
    size_t m_begin = 0;
    size_t m_end = 0;
    std::string m_out;
};

/// Counts the connections that wait for a thread too, and makes room for them.
class ConnectionServer::Workers final : public httplib::ThreadPool
{
public:
    explicit Workers(ConnectionServer &server)
        : httplib::ThreadPool(server.m_threadCount), m_server(server)
    {
    }

    void enqueue(std::function<void()> task) override
    {
        httplib::ThreadPool::enqueue(std::move(task));
        m_server.makeRoom();
    }

private:
    ConnectionServer &m_server;
};

ConnectionServer::ConnectionServer(size_t threadCount) : m_threadCount(threadCount)
{
    set_read_timeout(patience);
    set_write_timeout(patience);
    // Only what answers announce; how long connections stay open is decided here.
    set_keep_alive_timeout(patience.count());
    set_keep_alive_max_count(1'000'000);
    // By default the library lets other processes share the port.
    set_socket_options([](socket_t) {});
    new_task_queue = [this] { return new Workers(*this); };
}

void ConnectionServer::run()
{
    listen_after_bind();
    const std::lock_guard lock(m_mutex);
    m_ended = true;
}

void ConnectionServer::stop()
{
    {
        const std::lock_guard lock(m_mutex);
        m_stopping = true;
        for (const Connection *connection : m_connections)
            ::shutdown(connection->socket, SHUT_RDWR);
    }
    // The library ignores a stop that comes before its loop has begun.
    while (!is_running()) {
        const std::lock_guard lock(m_mutex);
        if (m_ended)
            return;
        std::this_thread::yield();
    }
    httplib::Server::stop();
}

void ConnectionServer::closeAfterAnswer()
{
    closesAfterAnswer = true;
}

void ConnectionServer::makeRoom()
{
    const std::lock_guard lock(m_mutex);
    ++m_openCount;
    if (m_openCount <= m_threadCount)
        return;
    const auto idle = std::find_if(m_connections.begin(), m_connections.end(),
                                   [](const Connection *connection) { return connection->isIdle; });
    if (idle != m_connections.end())
        ::shutdown((*idle)->socket, SHUT_RDWR);
}

bool ConnectionServer::process_and_close_socket(socket_t socket)
{
    const int on = 1;
    ::setsockopt(socket, IPPROTO_TCP, TCP_NODELAY, &on, sizeof on);
    setReadTimeout(socket, patience);

    Connection connection{socket};
    bool isWanted = false;
    std::list<Connection *>::iterator self;
    {
        const std::lock_guard lock(m_mutex);
        self = m_connections.insert(m_connections.end(), &connection);
        isWanted = !m_stopping;
    }
    const bool succeeded = isWanted && serve(connection);
    {
        const std::lock_guard lock(m_mutex);
        m_connections.erase(self);
        --m_openCount;
    }
    ::shutdown(socket, SHUT_RDWR);
    ::close(socket);
    return succeeded;
}

bool ConnectionServer::serve(Connection &connection)
{
    const auto setIdle = [&](bool isIdle) {
        const std::lock_guard lock(m_mutex);
        connection.isIdle = isIdle;
        const auto self = std::find(m_connections.begin(), m_connections.end(), &connection);
        m_connections.splice(m_connections.end(), m_connections, self);
        return !m_stopping && (!isIdle || m_openCount <= m_threadCount);
    };
    Stream stream(connection.socket);
    while (stream.fill()) {
        if (!setIdle(false))
            return false;
        bool isClosed = false;
        closesAfterAnswer = false;
        const bool isAnswered = process_request(stream, false, isClosed, nullptr);
        if (!stream.flush() || !isAnswered)
            return false;
        if (closesAfterAnswer)
            stream.linger();
        if (closesAfterAnswer || isClosed || !setIdle(true))
            return true;
    }
    return true;
}

} // namespace pixpress

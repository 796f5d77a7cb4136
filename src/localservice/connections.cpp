// SPDX-FileCopyrightText: 2026 The Pixpress authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "localservice/connections.h"

#include <QThreadPool>

#include <algorithm>
#include <thread>

namespace pixpress {

namespace {

thread_local bool closesAfterAnswer = false;

/// A connection that is accepted only to be closed, as too many wait already.
thread_local bool isRefusing = false;

} // namespace

struct ConnectionServer::Connection
{
    socket_t socket;
    ConnectionStream::Clock::time_point accepted = {};
    /// Between two requests. Not before the first, which is on its way: a new connection is not
    /// ended to make room for the next. Guarded by the server's mutex.
    bool isIdle = false;
};

/// Counts the connections that wait for a thread too, and makes room for them. Threads begin when
/// they are needed, where the library's pool would begin all of them with the program.
class ConnectionServer::Workers final : public httplib::TaskQueue
{
public:
    explicit Workers(ConnectionServer &server) : m_server(server)
    {
        m_pool.setMaxThreadCount(static_cast<int>(server.m_limits.threads));
        m_pool.setExpiryTimeout(-1); // or they would wake up to end
    }

    void enqueue(std::function<void()> task) override
    {
        if (m_server.makeRoom())
            return m_pool.start(std::move(task));
        isRefusing = true;
        task();
        isRefusing = false;
    }

    void shutdown() override { m_pool.waitForDone(); }

private:
    ConnectionServer &m_server;
    QThreadPool m_pool;
};

ConnectionServer::ConnectionServer(const ConnectionLimits &limits) : m_limits(limits)
{
    set_write_timeout(limits.silence);
    // Only what answers announce; how long connections stay open is decided here.
    set_keep_alive_timeout(limits.silence / std::chrono::seconds(1));
    set_keep_alive_max_count(1'000'000);
    new_task_queue = [this] { return new Workers(*this); };
}

void ConnectionServer::run(int listener)
{
    svr_sock_ = listener; // as the library's own binding does
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
    m_ends.notify_all();
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

bool ConnectionServer::makeRoom()
{
    const auto now = ConnectionStream::Clock::now();
    std::unique_lock lock(m_mutex);
    // The next ones wait in the system's own queue meanwhile.
    m_ends.wait(lock,
                [this] { return m_stopping || m_openCount < m_limits.threads + m_limits.waiting; });
    if (m_stopping)
        return false;
    m_accepted.push_back(now);
    ++m_openCount;
    if (m_openCount <= m_limits.threads)
        return true;
    const auto idle = std::ranges::find_if(
        m_connections, [](const Connection *connection) { return connection->isIdle; });
    if (idle != m_connections.end())
        ::shutdown((*idle)->socket, SHUT_RDWR);
    return true;
}

bool ConnectionServer::process_and_close_socket(socket_t socket)
{
    if (isRefusing) {
        ::close(socket);
        return false;
    }
    const int on = 1;
    ::setsockopt(socket, IPPROTO_TCP, TCP_NODELAY, &on, sizeof on);

    Connection connection{socket};
    bool isWanted = false;
    std::list<Connection *>::iterator self;
    {
        const std::lock_guard lock(m_mutex);
        connection.accepted = m_accepted.front();
        m_accepted.pop_front();
        self = m_connections.insert(m_connections.end(), &connection);
        isWanted = !m_stopping;
    }
    const bool succeeded = isWanted && serve(connection);
    {
        const std::lock_guard lock(m_mutex);
        m_connections.erase(self);
        --m_openCount;
    }
    m_ends.notify_one();
    ::shutdown(socket, SHUT_RDWR);
    ::close(socket);
    return succeeded;
}

bool ConnectionServer::serve(Connection &connection)
{
    const auto setIdle = [&](bool isIdle) {
        const std::lock_guard lock(m_mutex);
        connection.isIdle = isIdle;
        const auto self = std::ranges::find(m_connections, &connection);
        m_connections.splice(m_connections.end(), m_connections, self);
        return !m_stopping && (!isIdle || m_openCount <= m_limits.threads);
    };
    ConnectionStream stream(connection.socket, connection.accepted, m_limits, m_openCount);
    while (stream.awaitRequest()) {
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

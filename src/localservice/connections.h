// SPDX-FileCopyrightText: 2026 The Pixpress authors
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "localservice/stream.h"

#include <httplib.h>

#include <atomic>
#include <condition_variable>
#include <deque>
#include <list>
#include <mutex>

namespace pixpress {

/// The HTTP server with a connection handling of its own, for what the library's lacks:
///
/// - stop() and a full house end connections that wait for a request at once, where the library
///   would keep their thread until their time is up, asking a hundred times a second;
/// - an answer leaves in one piece, head and body together;
/// - a connection whose request was answered before its body had arrived is closed such that the
///   answer gets through: what still arrives is read and dropped for a moment first;
/// - heads, waiting connections and the time of a whole request have bounds.
///
/// Routes are set on the base class. A connection that exceeds a limit is ended without an answer.
class ConnectionServer final : public httplib::Server
{
public:
    explicit ConnectionServer(const ConnectionLimits &limits);

    /// Accepts the connections of this listening socket, which it closes in the end, until stop().
    /// On the calling thread.
    void run(int listener);

    /// Ends run(), from another thread, and every connection: a handler that reads a body or writes
    /// an answer fails soon, one that computes is waited for by run(). Waits for none of them.
    void stop();

    /// To be called by a handler: the request's body was not, or not completely, read.
    static void closeAfterAnswer();

private:
    struct Connection;
    class Workers;

    bool process_and_close_socket(socket_t socket) override;
    bool serve(Connection &connection);
    bool makeRoom();

    const ConnectionLimits m_limits;
    std::mutex m_mutex;
    std::list<Connection *> m_connections; ///< Those idle for the longest time first.
    /// Those of the connections that wait for a thread, which are taken up in their turn.
    std::deque<ConnectionStream::Clock::time_point> m_accepted;
    std::atomic<size_t> m_openCount = 0; ///< With those that wait for a thread.
    std::condition_variable m_ends;      ///< Told when a connection has, or all are to.
    bool m_stopping = false;
    bool m_ended = false;
};

} // namespace pixpress

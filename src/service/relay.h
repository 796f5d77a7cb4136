// SPDX-FileCopyrightText: 2026 The Pixpress authors
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <curl/curl.h>

#include <array>
#include <chrono>
#include <expected>
#include <memory>
#include <vector>

namespace pixpress {

/// Passes the bytes of one connection on between libcurl and the server.
///
/// A server that refuses an upload answers and closes the connection. libcurl keeps sending, and
/// drops the answer unread when a send fails. It therefore gets one end of a socket pair, into
/// which it can always send, and the pair is broken only after libcurl has read what the server
/// said before. This also shows when bytes last moved, which libcurl does not report.
class Relay
{
public:
    using Clock = std::chrono::steady_clock;

    /// Replaces a connected socket of libcurl's by an end of a socket pair, under the same number.
    /// Returns an error number if the system has no more sockets.
    static std::expected<std::unique_ptr<Relay>, int> insert(curl_socket_t socket);
    Relay(const Relay &) = delete;
    Relay &operator=(const Relay &) = delete;
    ~Relay();

    /// Passes on what is there, without waiting. Call it once before each time that libcurl runs.
    void relay();
    /// Adds what to wait for before the next relay(). Returns true if libcurl must run without a
    /// wait, because the connection is about to be broken.
    bool addTo(std::vector<curl_waitfd> &sockets) const;

    /// Whether the server has sent something that libcurl has not read, or has closed.
    bool hasInput() const;
    Clock::time_point lastMove() const { return m_lastMove; }

private:
    struct Lane
    {
        /// Returns whether bytes have moved from or to the server.
        bool move(int from, int to);
        bool isEmpty() const { return begin == end; }

        std::array<char, 64 << 10> buffer;
        size_t begin = 0;
        size_t end = 0;
        bool hasEnded = false; ///< There is nothing more to receive.
        bool isBroken = false; ///< By an error rather than by an orderly end.
    };

    Relay(curl_socket_t socket, int server, int client);
    int unread() const;

    const curl_socket_t m_socket; ///< libcurl's.
    const int m_server;
    int m_client; ///< The other end of libcurl's; -1 after the pair has been broken.
    Lane m_up;
    Lane m_down;
    bool m_isClosed = false; ///< libcurl knows that the server has closed.
    int m_lastUnread = -1;
    Clock::time_point m_lastMove = Clock::now();
};

} // namespace pixpress

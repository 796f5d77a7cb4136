// SPDX-FileCopyrightText: 2026 The Pixpress authors
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <httplib.h>

#include <array>
#include <atomic>
#include <chrono>
#include <optional>
#include <string>

namespace pixpress {

/// What a peer may take of a connection before it is ended.
struct ConnectionLimits
{
    size_t threads = 32;                         ///< Connections that are served at a time.
    size_t waiting = 256;                        ///< Further ones that wait for a thread.
    size_t headBytes = 64 << 10;                 ///< Of a request: its first line and its fields.
    std::chrono::milliseconds firstByte{5'000};  ///< From a connection's beginning on.
    std::chrono::milliseconds silence{60'000};   ///< Between two requests and within one.
    std::chrono::milliseconds headTime{60'000};  ///< From a head's first byte to its last.
    std::chrono::milliseconds bodyTime{600'000}; ///< From a head's end to its body's.
    /// From a connection's beginning, or a later head's first byte, to the head's last, while
    /// others wait for a thread. Whoever has no key can keep a thread for no longer, and for no
    /// time at all after waiting for one as long as that.
    std::chrono::milliseconds patience{500};
};

/// The library's view of a connection, buffered both ways. Used on one thread.
class ConnectionStream final : public httplib::Stream
{
public:
    using Clock = std::chrono::steady_clock;

    /// `accepted` is when the connection began: it may have waited for a thread since. `openCount`
    /// are the connections of the server, with those that wait for one.
    ConnectionStream(socket_t socket, Clock::time_point accepted, const ConnectionLimits &limits,
                     const std::atomic<size_t> &openCount)
        : m_socket(socket), m_accepted(accepted), m_limits(limits), m_openCount(openCount)
    {
    }

    bool is_readable() const override { return true; }
    bool is_writable() const override { return !m_failed; }
    socket_t socket() const override { return m_socket; }

    // Nobody asks for the addresses: both ends are this machine.
    void get_remote_ip_and_port(std::string &, int &) const override {}
    void get_local_ip_and_port(std::string &, int &) const override {}

    ssize_t read(char *to, size_t size) override;
    ssize_t write(const char *from, size_t size) override;

    /// Waits for a request's first bytes; false when the peer has ended, or has been silent for too
    /// long. What is read from then on is measured as that request.
    bool awaitRequest();

    bool flush();

    /// Tells the peer that nothing follows, then drops what it still sends.
    void linger();

private:
    bool fill();
    void measureHead(const char *from, size_t size);
    ssize_t receive(Clock::duration silence);
    Clock::time_point nextCheck() const;
    bool send(const char *from, size_t size);

    const socket_t m_socket;
    const Clock::time_point m_accepted;
    const ConnectionLimits &m_limits;
    const std::atomic<size_t> &m_openCount;
    std::optional<Clock::time_point> m_headBegin; ///< Set until the head is complete.
    bool m_isNew = true;                          ///< Until the first request.
    bool m_failed = false;
    std::array<char, 65'536> m_in;
    size_t m_begin = 0;
    size_t m_end = 0;
    std::string m_out;

    bool m_isInHead = false;
    bool m_isLineEmpty = true; ///< The head's current line, so far.
    size_t m_headBytes = 0;
    Clock::time_point m_deadline = Clock::time_point::max();
};

} // namespace pixpress

// SPDX-FileCopyrightText: 2026 The Pixpress authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "localservice/stream.h"

#include <algorithm>
#include <cerrno>

namespace pixpress {

namespace {

/// How much of an unwanted body is read before its connection is closed, and for how long. Closing
/// while bytes arrive makes the peer's system drop the answer that it has not yet read.
constexpr ssize_t lingerBytes = 4 << 20;
constexpr std::chrono::milliseconds lingerTime{500};
constexpr std::chrono::milliseconds crowdCheck{100}; // how often it is asked whether others wait

void setReadTimeout(socket_t socket, std::chrono::microseconds timeout)
{
    constexpr std::chrono::microseconds second = std::chrono::seconds(1);
    const timeval value{static_cast<time_t>(timeout / second),
                        static_cast<suseconds_t>((timeout % second).count())};
    ::setsockopt(socket, SOL_SOCKET, SO_RCVTIMEO, &value, sizeof value);
}

} // namespace

ssize_t ConnectionStream::read(char *to, size_t size)
{
    if (m_begin == m_end && !fill())
        return m_failed ? -1 : 0;
    size = std::min(size, m_end - m_begin);
    std::copy_n(m_in.data() + m_begin, size, to);
    m_begin += size;
    if (m_isInHead)
        measureHead(to, size);
    return m_failed ? -1 : static_cast<ssize_t>(size);
}

ssize_t ConnectionStream::write(const char *from, size_t size)
{
    const bool fits = m_out.size() + size <= m_in.size();
    if (fits)
        m_out.append(from, size);
    else if (!flush() || !send(from, size))
        return -1;
    return static_cast<ssize_t>(size);
}

bool ConnectionStream::awaitRequest()
{
    m_deadline = m_isNew ? m_accepted + m_limits.firstByte : Clock::time_point::max();
    if (m_isNew)
        m_headBegin = m_accepted;
    if (m_begin == m_end && !fill())
        return false;
    if (!m_isNew)
        m_headBegin = Clock::now();
    m_isNew = false;
    m_isInHead = true;
    m_isLineEmpty = true;
    m_headBytes = 0;
    m_deadline = Clock::now() + m_limits.headTime;
    return true;
}

bool ConnectionStream::flush()
{
    const bool sent = send(m_out.data(), m_out.size());
    m_out.clear();
    return sent;
}

void ConnectionStream::linger()
{
    ::shutdown(m_socket, SHUT_WR);
    m_deadline = Clock::now() + lingerTime;
    ssize_t dropped = 0;
    while (dropped < lingerBytes) {
        const ssize_t count = receive(lingerTime);
        if (count <= 0)
            break;
        dropped += count;
    }
}

bool ConnectionStream::fill()
{
    if (!flush())
        return false;
    const ssize_t count = receive(m_limits.silence);
    m_begin = 0;
    m_end = count > 0 ? static_cast<size_t>(count) : 0;
    m_failed = m_failed || count < 0;
    return count > 0;
}

/// Finds the end of the head; the library takes heads and their lines of any length.
void ConnectionStream::measureHead(const char *from, size_t size)
{
    for (const char byte : std::string_view(from, size)) {
        ++m_headBytes;
        if (byte == '\n' && m_isLineEmpty) {
            m_isInHead = false;
            m_headBegin.reset();
            m_deadline = Clock::now() + m_limits.bodyTime;
            return;
        }
        m_isLineEmpty = byte == '\n' || (byte == '\r' && m_isLineEmpty);
    }
    // It is not at its end.
    m_failed = m_failed || m_headBytes >= m_limits.headBytes;
}

ssize_t ConnectionStream::receive(Clock::duration silence)
{
    const auto end = std::min(m_deadline, Clock::now() + silence);
    ssize_t count = 0;
    do {
        const auto left = std::chrono::duration_cast<std::chrono::microseconds>(
            std::min(end, nextCheck()) - Clock::now());
        // A first request that is there is taken still: then it was this side that came late.
        if (left.count() <= 0) // which to the system would mean without end
            return m_isNew ? ::recv(m_socket, m_in.data(), m_in.size(), MSG_DONTWAIT) : -1;
        setReadTimeout(m_socket, left);
        count = ::recv(m_socket, m_in.data(), m_in.size(), 0);
    } while (count < 0 && (errno == EINTR || errno == EAGAIN));
    return count;
}

/// Until when it may be waited without another look at who else waits.
ConnectionStream::Clock::time_point ConnectionStream::nextCheck() const
{
    if (!m_headBegin)
        return Clock::time_point::max();
    if (m_openCount > m_limits.threads)
        return *m_headBegin + m_limits.patience;
    return Clock::now() + crowdCheck;
}

bool ConnectionStream::send(const char *from, size_t size)
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

} // namespace pixpress

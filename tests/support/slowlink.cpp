// SPDX-FileCopyrightText: 2026 The Pixpress authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "support/slowlink.h"

#include <QTcpSocket>
#include <QTimer>

#include <deque>
#include <memory>

using namespace std::chrono_literals;

namespace pixpress::test {

namespace {

using Clock = std::chrono::steady_clock;

constexpr auto delay = 20ms;
constexpr auto timeOfByte = std::chrono::nanoseconds(400); // 20 Mbit/s
constexpr qsizetype window = 128 << 10;                    // of TCP, on the way

/// What is on the way in one direction.
class Way
{
public:
    void take(QTcpSocket &from)
    {
        if (from.state() != QAbstractSocket::ConnectedState && from.bytesAvailable() == 0)
            return;
        from.waitForReadyRead(0);
        const QByteArray piece = from.read(window - m_size);
        if (piece.isEmpty())
            return;
        m_isFree = std::max(m_isFree, Clock::now()) + piece.size() * timeOfByte;
        m_pieces.emplace_back(m_isFree + delay, piece);
        m_size += piece.size();
    }

    void give(QTcpSocket &to)
    {
        while (!m_pieces.empty() && m_pieces.front().first <= Clock::now()) {
            if (to.state() == QAbstractSocket::ConnectedState)
                to.write(m_pieces.front().second);
            m_size -= m_pieces.front().second.size();
            m_pieces.pop_front();
        }
    }

    bool isEmpty() const { return m_pieces.empty(); }

private:
    std::deque<std::pair<Clock::time_point, QByteArray>> m_pieces; ///< With when they arrive.
    qsizetype m_size = 0;
    Clock::time_point m_isFree; ///< When the last piece has left.
};

struct Ways
{
    Way up;
    Way down;
};

bool hasEnded(const QTcpSocket &socket)
{
    return socket.state() == QAbstractSocket::UnconnectedState && socket.bytesAvailable() == 0;
}

/// Takes what the server says before it gives it more: a socket that cannot be written to any more
/// forgets what can still be read.
void carry(QTcpSocket &client, QTcpSocket &server, Ways &ways)
{
    ways.down.take(server);
    ways.up.take(client);
    ways.up.give(server);
    ways.down.give(client);
    const bool serverHasEnded =
        hasEnded(server) && ways.down.isEmpty() && client.bytesToWrite() == 0;
    if (!serverHasEnded && !(hasEnded(client) && ways.up.isEmpty()))
        return;
    client.abort(); // with unread data in the kernel: the peer's next segment is reset
    server.abort();
    client.deleteLater();
}

} // namespace

SlowLink::SlowLink(const QUrl &server) : m_url(server)
{
    if (!m_listener.listen(QHostAddress::LocalHost))
        qFatal("The slow link cannot listen.");
    m_url.setPort(m_listener.serverPort());
    connect(&m_listener, &QTcpServer::newConnection, this, [this, server] {
        QTcpSocket *const client = m_listener.nextPendingConnection();
        auto *const far = new QTcpSocket(client);
        client->setReadBufferSize(window);
        far->connectToHost(server.host(), static_cast<quint16>(server.port()));
        auto *const timer = new QTimer(client);
        connect(timer, &QTimer::timeout, client,
                [client, far, ways = std::make_shared<Ways>()] { carry(*client, *far, *ways); });
        timer->start(1ms);
    });
}

} // namespace pixpress::test

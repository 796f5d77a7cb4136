// SPDX-FileCopyrightText: 2026 The Pixpress authors
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <QByteArray>
#include <QHash>
#include <QHostAddress>
#include <QList>
#include <QObject>
#include <QSslConfiguration>
#include <QUrl>

#include <functional>
#include <memory>
#include <optional>

class QTcpServer;
class QTcpSocket;

namespace pixpress::test {

struct Request
{
    QByteArray method;
    QByteArray target;
    QHash<QByteArray, QByteArray> headers; ///< Names in lower case.
    QByteArray body;
    int connection = 0; ///< Counted from 1 in the order of connecting.
};

struct Answer
{
    int status = 200;
    QByteArray body = {};
    QList<std::pair<QByteArray, QByteArray>> headers = {};
};

/// An HTTP server on 127.0.0.1, or where it is told, that answers by a script and keeps every
/// request it got. Runs on the thread and event loop of the test.
class ScriptedServer : public QObject
{
public:
    using Script = std::function<Answer(const Request &)>;
    /// For peers that do not speak HTTP properly: called with all bytes of a connection so far,
    /// each time some arrive; writes to or closes the socket as it likes.
    using RawScript = std::function<void(QTcpSocket &socket, const QByteArray &received)>;

    /// With `tls` it is an https server.
    explicit ScriptedServer(Script script = {},
                            const QHostAddress &address = QHostAddress::LocalHost,
                            const std::optional<QSslConfiguration> &tls = {});
    ~ScriptedServer() override;

    QUrl url(const QString &path = {}) const;

    /// Answers requests instead of the script from now on; pass nothing to go back.
    void setRaw(RawScript raw) { m_raw = std::move(raw); }
    void setScript(Script script) { m_script = std::move(script); }

    /// While held, requests are taken in but not answered; releasing answers them in order.
    void hold() { m_held = true; }
    void release();
    /// Answers the oldest held request only.
    void releaseOne();
    /// Ends the connection of the oldest held request without an answer.
    void dropOne();

    /// How many held requests there are.
    qsizetype waiting() const { return m_waiting.size(); }

    QList<Request> requests; ///< In the order in which they were complete.
    int connections = 0;

private:
    struct Connection
    {
        int number = 0;
        QByteArray received;
    };

    void receive(QTcpSocket *socket);
    std::optional<Request> takeRequest(Connection &connection);
    void answer(QTcpSocket *socket, const Request &request);

    const std::unique_ptr<QTcpServer> m_server;
    QHash<QTcpSocket *, Connection> m_connections;
    QList<std::pair<QTcpSocket *, Request>> m_waiting;
    Script m_script;
    RawScript m_raw;
    bool m_held = false;
};

/// A complete HTTP/1.1 answer as bytes.
QByteArray toBytes(const Answer &answer);

/// The answer of the service to a good upload whose output is at `location`.
Answer shrinkAnswer(const QUrl &location, std::optional<qint64> count = {});

} // namespace pixpress::test

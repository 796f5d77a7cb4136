// SPDX-FileCopyrightText: 2026 The Pixpress authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "support/scriptedserver.h"

#include <QSslServer>
#include <QTcpSocket>

namespace pixpress::test {

namespace {

std::unique_ptr<QTcpServer> makeServer(const std::optional<QSslConfiguration> &tls)
{
    if (!tls)
        return std::make_unique<QTcpServer>();
    auto server = std::make_unique<QSslServer>();
    server->setSslConfiguration(*tls);
    return server;
}

} // namespace

ScriptedServer::ScriptedServer(Script script, const QHostAddress &address,
                               const std::optional<QSslConfiguration> &tls)
    : m_server(makeServer(tls)), m_script(std::move(script))
{
    connect(m_server.get(), &QTcpServer::pendingConnectionAvailable, this, [this] {
        while (QTcpSocket *socket = m_server->nextPendingConnection()) {
            // A socket of TLS would take in a whole upload before it signals the first of it.
            socket->setReadBufferSize(256 << 10);
            m_connections.insert(socket, {.number = ++connections, .received = {}});
            connect(socket, &QTcpSocket::readyRead, this, [this, socket] { receive(socket); });
            connect(socket, &QTcpSocket::disconnected, this, [this, socket] {
                m_connections.remove(socket);
                m_waiting.removeIf([socket](const auto &entry) { return entry.first == socket; });
                socket->deleteLater();
            });
        }
    });
    if (!m_server->listen(address))
        qFatal("The scripted server cannot listen.");
}

ScriptedServer::~ScriptedServer()
{
    for (QTcpSocket *socket : m_connections.keys())
        socket->disconnect(this);
}

QUrl ScriptedServer::url(const QString &path) const
{
    QUrl url(path);
    const bool isSecure = qobject_cast<QSslServer *>(m_server.get());
    url.setScheme(isSecure ? QStringLiteral("https") : QStringLiteral("http"));
    url.setHost(m_server->serverAddress().toString());
    url.setPort(m_server->serverPort());
    return url;
}

void ScriptedServer::release()
{
    m_held = false;
    while (!m_waiting.isEmpty())
        releaseOne();
}

void ScriptedServer::releaseOne()
{
    const auto [socket, request] = m_waiting.takeFirst();
    answer(socket, request);
}

void ScriptedServer::dropOne()
{
    m_waiting.first().first->abort(); // which takes it off the list
}

void ScriptedServer::receive(QTcpSocket *socket)
{
    Connection &connection = m_connections[socket];
    connection.received += socket->readAll();
    if (m_raw) {
        m_raw(*socket, connection.received);
        return;
    }
    while (auto request = takeRequest(connection)) {
        requests.append(*request);
        if (m_held)
            m_waiting.append({socket, *request});
        else
            answer(socket, *request);
    }
}

std::optional<Request> ScriptedServer::takeRequest(Connection &connection)
{
    const qsizetype headLength = connection.received.indexOf("\r\n\r\n");
    if (headLength < 0)
        return std::nullopt;

    Request request;
    request.connection = connection.number;
    const QList<QByteArray> lines = connection.received.left(headLength).split('\n');
    const QList<QByteArray> first = lines.first().trimmed().split(' ');
    request.method = first.value(0);
    request.target = first.value(1);
    for (const QByteArray &line : lines.sliced(1)) {
        const qsizetype colon = line.indexOf(':');
        request.headers.insert(line.left(colon).toLower(), line.mid(colon + 1).trimmed());
    }

    const qsizetype bodyStart = headLength + 4;
    const qsizetype length = request.headers.value("content-length").toLongLong();
    if (connection.received.size() < bodyStart + length)
        return std::nullopt;
    request.body = connection.received.mid(bodyStart, length);
    connection.received.remove(0, bodyStart + length);
    return request;
}

void ScriptedServer::answer(QTcpSocket *socket, const Request &request)
{
    socket->write(toBytes(m_script(request)));
}

QByteArray toBytes(const Answer &answer)
{
    QByteArray bytes = "HTTP/1.1 " + QByteArray::number(answer.status) + " Status\r\n";
    for (const auto &[name, value] : answer.headers)
        bytes += name + ": " + value + "\r\n";
    bytes += "Content-Length: " + QByteArray::number(answer.body.size()) + "\r\n\r\n";
    return bytes + answer.body;
}

Answer shrinkAnswer(const QUrl &location, std::optional<qint64> count)
{
    Answer answer{
        .status = 201,
        .body = R"({"input":{"size":1000,"type":"image/png"},)"
                R"("output":{"size":371,"type":"image/png","width":40,"height":30,"ratio":0.371}})",
        .headers = {{"Location", location.toEncoded()}}};
    if (count)
        answer.headers.append({"Compression-Count", QByteArray::number(*count)});
    return answer;
}

} // namespace pixpress::test

// SPDX-FileCopyrightText: 2026 The Pixpress authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "pipeline/faultyservice.h"

#include "support/scriptedserver.h"

#include <QTcpSocket>

using namespace Qt::StringLiterals;

namespace pixpress::test {

namespace {

/// One of so many connections is ended at once.
constexpr quint32 refusedOf = 40;

qint64 contentLength(const QByteArray &head)
{
    const QByteArray name = "\r\ncontent-length:";
    const qsizetype at = head.toLower().indexOf(name);
    if (at < 0)
        return 0;
    const qsizetype start = at + name.size();
    return head.mid(start, head.indexOf('\r', start) - start).trimmed().toLongLong();
}

void sendAndClose(QTcpSocket &socket, const QByteArray &bytes)
{
    socket.write(bytes);
    socket.disconnectFromHost();
}

QByteArray inChunks(const QByteArray &body)
{
    QByteArray bytes = "HTTP/1.1 200 OK\r\nTransfer-Encoding: chunked\r\n\r\n";
    for (qsizetype at = 0; at < body.size(); at += 1000) {
        const QByteArray chunk = body.mid(at, 1000);
        bytes += QByteArray::number(chunk.size(), 16) + "\r\n" + chunk + "\r\n";
    }
    return bytes + "0\r\n\r\n";
}

Answer refusal(int status)
{
    return {.status = status, .body = R"({"error":"No","message":"Out of order."})"};
}

} // namespace

FaultyService::FaultyService(quint32 seed, int pictures)
    : m_seed(seed), m_uploads(static_cast<size_t>(pictures), 0)
{
    connect(this, &QTcpServer::newConnection, this, &FaultyService::accept);
    if (!listen(QHostAddress::LocalHost))
        qFatal("The service cannot listen.");
}

FaultyService::~FaultyService()
{
    for (QTcpSocket *socket : m_connections.keys())
        socket->disconnect(this);
}

QUrl FaultyService::url() const
{
    return QUrl(u"http://127.0.0.1:%1"_s.arg(serverPort()));
}

Fault FaultyService::faultOf(int picture) const
{
    return planned(m_seed, picture, uploads(picture));
}

void FaultyService::accept()
{
    while (QTcpSocket *socket = nextPendingConnection()) {
        connect(socket, &QTcpSocket::disconnected, socket, &QObject::deleteLater);
        if (scatter(m_seed, static_cast<quint32>(++m_accepted)) % refusedOf == 0) {
            ++connectionsRefused;
            socket->abort();
            continue;
        }
        m_connections.insert(socket, {});
        connect(socket, &QTcpSocket::readyRead, this, [this, socket] { receive(*socket); });
        connect(socket, &QTcpSocket::disconnected, this,
                [this, socket] { m_connections.remove(socket); });
    }
}

void FaultyService::receive(QTcpSocket &socket)
{
    m_connections[&socket].received += socket.readAll();
    while (m_connections.contains(&socket) && takeRequest(socket, m_connections[&socket]))
        ;
}

bool FaultyService::takeRequest(QTcpSocket &socket, Connection &connection)
{
    const qsizetype headLength = connection.received.indexOf("\r\n\r\n");
    if (headLength < 0)
        return false;
    const QByteArray head = connection.received.left(headLength + 2);
    const QByteArray target = head.split(' ').value(1);
    const qsizetype bodyStart = headLength + 4;
    const qsizetype arrived = connection.received.size() - bodyStart;
    const bool upload = target == "/shrink";

    if (upload && !connection.counted) {
        if (arrived < NumberedPicture::headSize)
            return false;
        const auto picture = NumberedPicture::fromHead(connection.received.mid(bodyStart));
        ++m_uploads.at(static_cast<size_t>(picture.number));
        connection.counted = true;
        if (faultOf(picture.number) == Fault::lostDuringUpload) {
            socket.abort();
            return false;
        }
    }

    const qsizetype length = contentLength(head);
    if (arrived < length)
        return false;
    const QByteArray body = connection.received.mid(bodyStart, length);
    connection.received.remove(0, bodyStart + length);
    connection.counted = false;
    if (!upload) {
        answerFetch(socket, target);
    } else if (const auto picture = NumberedPicture::fromWhole(body)) {
        answerUpload(socket, *picture);
    } else {
        ++damagedUploads;
        socket.abort();
    }
    return true;
}

void FaultyService::answerUpload(QTcpSocket &socket, const NumberedPicture &picture)
{
    const int upload = uploads(picture.number);
    Answer good = shrinkAnswer(QUrl(u"/output/%1/%2"_s.arg(picture.number).arg(upload)), upload);
    switch (faultOf(picture.number)) {
    case Fault::unauthorized: socket.write(toBytes(refusal(401))); return;
    case Fault::tooLarge: socket.write(toBytes({.status = 413})); return;
    case Fault::unsupported: socket.write(toBytes({.status = 415})); return;
    case Fault::limitReached: socket.write(toBytes(refusal(429))); return;
    case Fault::outOfOrder: socket.write(toBytes(refusal(500))); return;
    case Fault::lostAfterUpload: socket.abort(); return;
    case Fault::halfHead: sendAndClose(socket, toBytes(good).left(40)); return;
    case Fault::halfAnswer: sendAndClose(socket, toBytes(good).chopped(50)); return;
    case Fault::noJSON: good.body = "<html>"; break;
    case Fault::noSize: good.body = R"({"input":{"type":"image/png"}})"; break;
    case Fault::noLocation: good.headers.clear(); break;
    case Fault::otherHost: good.headers = {{"Location", "http://example.com/x"}}; break;
    case Fault::otherScheme: good.headers = {{"Location", "ftp://127.0.0.1/x"}}; break;
    case Fault::endlessHead:
        socket.write("HTTP/1.1 201 Created\r\n" +
                     QByteArray("X-Much: more and more\r\n").repeated(50'000));
        return;
    case Fault::notHTTP: sendAndClose(socket, "220 Ready for mail\r\n"); return;
    case Fault::closing:
        good.headers.emplace_back("Connection", "close");
        sendAndClose(socket, toBytes(good));
        return;
    default: break;
    }
    socket.write(toBytes(good));
}

void FaultyService::answerFetch(QTcpSocket &socket, const QByteArray &target)
{
    const QList<QByteArray> parts = target.split('/');
    const NumberedPicture picture{.number = parts.value(2).toInt(),
                                  .generation = parts.value(3).toInt()};
    Answer good{.body = picture.bytes()};
    switch (faultOf(picture.number)) {
    case Fault::outputGone: socket.write(toBytes({.status = 404})); return;
    case Fault::outputOutOfOrder: socket.write(toBytes(refusal(500))); return;
    case Fault::emptyOutput: good.body.clear(); break;
    case Fault::halfOutput: sendAndClose(socket, toBytes(good).chopped(100)); return;
    case Fault::halfChunks: sendAndClose(socket, inChunks(good.body).chopped(100)); return;
    case Fault::lostOutput: socket.abort(); return;
    case Fault::badChunks:
        sendAndClose(socket, inChunks({}).replace("\r\n0\r\n", "\r\nzz\r\n"));
        return;
    case Fault::redirectElsewhere:
        good = {.status = 302, .headers = {{"Location", "http://example.com/x"}}};
        break;
    case Fault::chunked: socket.write(inChunks(good.body)); return;
    case Fault::closing:
        good.headers.emplace_back("Connection", "close");
        sendAndClose(socket, toBytes(good));
        return;
    default: break;
    }
    socket.write(toBytes(good));
}

} // namespace pixpress::test

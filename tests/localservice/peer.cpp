// SPDX-FileCopyrightText: 2026 The Pixpress authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "peer.h"

#include <QJsonDocument>

#include <algorithm>

namespace pixpress::testing {

namespace {

constexpr int patience = 30'000;
const QByteArray hostField = "Host: (the peer's)\r\n";

} // namespace

QJsonObject Answer::json() const
{
    return QJsonDocument::fromJson(body).object();
}

QByteArray credentials(const QByteArray &key, const QByteArray &user)
{
    return "Basic " + (user + ':' + key).toBase64();
}

QByteArray head(const QByteArray &method, const QByteArray &path, const Fields &fields)
{
    QByteArray text = method + ' ' + path + " HTTP/1.1\r\n";
    if (std::ranges::none_of(fields, [](const auto &field) { return field.first == "Host"; }))
        text += hostField;
    for (const auto &[name, value] : fields)
        text += name + ": " + value + "\r\n";
    return text + "\r\n";
}

Peer::Peer(const QUrl &base) : m_host(base.authority().toLatin1())
{
    m_socket.connectToHost(base.host(), static_cast<quint16>(base.port()));
    m_socket.waitForConnected(patience);
    m_socket.setSocketOption(QAbstractSocket::LowDelayOption, 1);
}

void Peer::send(const QByteArray &bytes)
{
    m_socket.write(QByteArray(bytes).replace(hostField, "Host: " + m_host + "\r\n"));
    while (m_socket.bytesToWrite() > 0 && m_socket.waitForBytesWritten(patience)) {
    }
}

bool Peer::waitForMore()
{
    if (m_socket.bytesAvailable() == 0 && !m_socket.waitForReadyRead(patience))
        return false;
    m_received += m_socket.readAll();
    return true;
}

Answer Peer::receive()
{
    while (!m_received.contains("\r\n\r\n")) {
        if (!waitForMore())
            return {};
    }
    const qsizetype headEnd = m_received.indexOf("\r\n\r\n");
    const QList<QByteArray> lines = m_received.first(headEnd).split('\n');
    m_received.remove(0, headEnd + 4);

    Answer answer;
    answer.status = lines.value(0).split(' ').value(1).toInt();
    for (const QByteArray &line : lines.sliced(1)) {
        const qsizetype colon = line.indexOf(':');
        answer.headers.insert(line.first(colon).toLower(), line.sliced(colon + 1).trimmed());
    }
    const qsizetype length = answer.header("content-length").toLongLong();
    while (m_received.size() < length && waitForMore()) {
    }
    answer.body = m_received.first(qMin(length, m_received.size()));
    m_received.remove(0, answer.body.size());
    return answer;
}

Answer Peer::request(const QByteArray &method, const QByteArray &path, const QByteArray &body,
                     const QByteArray &key, const Fields &more)
{
    Fields fields = more;
    if (!key.isNull())
        fields.append({"Authorization", credentials(key)});
    if (method != "GET")
        fields.append({"Content-Length", QByteArray::number(body.size())});
    send(head(method, path, fields) + body);
    return receive();
}

bool Peer::isEndedByService()
{
    while (m_socket.state() == QAbstractSocket::ConnectedState) {
        if (!m_socket.waitForReadyRead(patience))
            return m_socket.state() != QAbstractSocket::ConnectedState;
        m_socket.readAll();
    }
    return true;
}

} // namespace pixpress::testing

// SPDX-FileCopyrightText: 2026 The Pixpress authors
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <QByteArray>
#include <QJsonObject>
#include <QMap>
#include <QTcpSocket>
#include <QUrl>

namespace pixpress::testing {

struct Answer
{
    int status = 0;                       ///< 0 when the connection ended before an answer.
    QMap<QByteArray, QByteArray> headers; ///< Names in lower case.
    QByteArray body;

    QJsonObject json() const;
    QByteArray header(const QByteArray &name) const { return headers.value(name); }
};

using Fields = QList<QPair<QByteArray, QByteArray>>;

/// The value of an "Authorization" field.
QByteArray credentials(const QByteArray &key, const QByteArray &user = "api");

/// One connection, over which requests are written byte by byte as a test likes, whole or not. Each
/// call blocks, for at most 30 seconds.
class Peer
{
public:
    explicit Peer(const QUrl &base);

    void send(const QByteArray &bytes);
    Answer receive();

    /// A whole request with credentials for `key` (none when null), and what it is answered.
    Answer request(const QByteArray &method, const QByteArray &path, const QByteArray &body = {},
                   const QByteArray &key = "key", const Fields &more = {});

    /// Whether the service ends the connection.
    bool isEndedByService();

private:
    bool waitForMore();

    const QByteArray m_host;
    QTcpSocket m_socket;
    QByteArray m_received;
};

/// The head of a request, with the empty line at its end. Unless the fields have one, its "Host" is
/// filled in by the peer that sends it.
QByteArray head(const QByteArray &method, const QByteArray &path, const Fields &fields);

} // namespace pixpress::testing

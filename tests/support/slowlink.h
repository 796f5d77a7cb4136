// SPDX-FileCopyrightText: 2026 The Pixpress authors
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <QObject>
#include <QTcpServer>
#include <QUrl>

namespace pixpress::test {

/// A link to a server on this machine with the bandwidth and delay of a line at home: 20 Mbit/s,
/// 20 ms. When the server ends a connection, what it has said arrives, and then the end.
class SlowLink : public QObject
{
public:
    explicit SlowLink(const QUrl &server);

    /// The server's address, over this link.
    QUrl url() const { return m_url; }

private:
    QTcpServer m_listener;
    QUrl m_url;
};

} // namespace pixpress::test

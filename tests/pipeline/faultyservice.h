// SPDX-FileCopyrightText: 2026 The Pixpress authors
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "pipeline/servicefaults.h"

#include <QHash>
#include <QTcpServer>
#include <QUrl>

#include <vector>

class QTcpSocket;

namespace pixpress::test {

/// The compression service for numbered pictures, over HTTP on this machine, with the faults that
/// are planned for each upload. It counts the uploads of each picture and keeps nothing else, so
/// that it can run for long.
class FaultyService : public QTcpServer
{
public:
    FaultyService(quint32 seed, int pictures);
    ~FaultyService() override;

    QUrl url() const;

    /// How often this picture was sent, from the moment its number has arrived.
    int uploads(int picture) const { return m_uploads.at(static_cast<size_t>(picture)); }

    int connectionsRefused = 0; ///< Ended before anything was read from them.
    int damagedUploads = 0;

private:
    struct Connection
    {
        QByteArray received;
        bool counted = false; ///< The upload that is arriving.
    };

    void accept();
    void receive(QTcpSocket &socket);
    /// False when there is nothing complete, or nothing more to be done.
    bool takeRequest(QTcpSocket &socket, Connection &connection);
    void answerUpload(QTcpSocket &socket, const NumberedPicture &picture);
    void answerFetch(QTcpSocket &socket, const QByteArray &target);
    Fault faultOf(int picture) const;

    const quint32 m_seed;
    std::vector<int> m_uploads;
    QHash<QTcpSocket *, Connection> m_connections;
    int m_accepted = 0;
};

} // namespace pixpress::test

// SPDX-FileCopyrightText: 2026 The Pixpress authors
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "localservice/compressor.h"
#include "localservice/connections.h"
#include "localservice/gate.h"
#include "localservice/localservice.h"
#include "localservice/requesthead.h"

namespace pixpress {

/// Answers the requests, on the threads of its server.
class RequestHandler
{
public:
    /// Of bodies, no more than two of the largest are taken at a time.
    RequestHandler(LocalServiceConfig config, int connectionCount);

    /// Sets the routes. The server is not to run longer than this object lives.
    void attachTo(httplib::Server &server);

    /// Before the server runs.
    void setPort(int port) { m_port = port; }
    QByteArray baseAddress() const { return "http://127.0.0.1:" + QByteArray::number(m_port); }

    qint64 compressionCount() const { return m_compressor.count(); }

    /// Ends the work that goes on, and all that is to come. From any thread.
    void stop();

private:
    bool handleHead(const httplib::Request &request, httplib::Response &response);
    void handleBody(const httplib::Request &request, httplib::Response &response,
                    const httplib::ContentReader &reader);
    std::optional<Refusal> refuseHead(const httplib::Request &request) const;
    qint64 maxBodyOf(const httplib::Request &request) const;
    bool answerFault(const httplib::Request &request, httplib::Response &response) const;
    void fetch(const httplib::Request &request, httplib::Response &response) const;
    void shrink(const QByteArray &body, httplib::Response &response);
    void rework(const QByteArray &id, const QByteArray &body, httplib::Response &response);
    void addCount(httplib::Response &response) const;

    const LocalServiceConfig m_config;
    Compressor m_compressor;
    Gate m_bodies; ///< Others wait in their senders' hands.
    int m_port = 0;
};

} // namespace pixpress

// SPDX-FileCopyrightText: 2026 The Pixpress authors
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "support/scriptedserver.h"

namespace pixpress::test {

/// The compression service, as far as the applications see it: takes one key, and makes the same
/// small output of everything.
class Service
{
public:
    Service();

    QString address() const { return m_server.url().toString(); }

    /// From now on requests are taken in but not answered.
    void hold() { m_server.hold(); }
    void release() { m_server.release(); }
    void releaseOne() { m_server.releaseOne(); } ///< Answers the oldest of them.
    qsizetype waiting() const { return m_server.waiting(); }

    QList<QByteArray> authorizations() const; ///< Of all requests.
    QList<QByteArray> uploads() const;        ///< What was to be compressed.
    /// The bodies of the requests for outputs: what is to be made of each. Empty for nothing.
    QList<QByteArray> fetches() const;

    static QByteArray authorization(const QByteArray &key);

    QByteArray goodKey = "good/key+1";
    QByteArray output = "what the service made of it";
    qint64 count = 42; ///< Compressions used, as reported with each answer.

private:
    Answer answer(const Request &request) const;

    ScriptedServer m_server;
};

} // namespace pixpress::test

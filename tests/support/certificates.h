// SPDX-FileCopyrightText: 2026 The Pixpress authors
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <QSslConfiguration>
#include <QTemporaryDir>

namespace pixpress::test {

/// An authority of the test's own and what it signs, made with OpenSSL's command. A failure to make
/// one ends the test program.
class Certificates
{
public:
    /// Makes the authority, whose certificate is "ca.pem".
    Certificates();

    /// Makes NAME.pem, with NAME.key, for a host: "IP:127.0.0.1" or "DNS:example.com".
    void make(const QString &name, const QByteArray &host, bool isExpired = false);
    /// Makes one that is signed by itself.
    void makeSelfSigned(const QString &name);

    QString path(const QString &file) const { return m_folder.filePath(file); }
    QString authority() const { return path(QStringLiteral("ca.pem")); }

    /// What a server with this certificate needs.
    QSslConfiguration server(const QString &name) const;

private:
    void openssl(const QStringList &arguments);

    QTemporaryDir m_folder;
};

} // namespace pixpress::test

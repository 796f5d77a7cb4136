// SPDX-FileCopyrightText: 2026 The Pixpress authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "support/certificates.h"

#include <QFile>
#include <QProcess>
#include <QSslCertificate>
#include <QSslKey>

using namespace Qt::StringLiterals;

namespace pixpress::test {

namespace {

const QStringList newKey{u"-newkey"_s, u"ec"_s, u"-pkeyopt"_s, u"ec_paramgen_curve:prime256v1"_s,
                         u"-nodes"_s};

} // namespace

Certificates::Certificates()
{
    makeSelfSigned(u"ca"_s);
}

void Certificates::makeSelfSigned(const QString &name)
{
    openssl(QStringList{u"req"_s, u"-x509"_s} + newKey +
            QStringList{u"-keyout"_s, name + u".key"_s, u"-out"_s, name + u".pem"_s, u"-days"_s,
                        u"2"_s, u"-subj"_s, u"/CN="_s + name, u"-addext"_s,
                        u"subjectAltName=IP:127.0.0.1"_s});
}

void Certificates::make(const QString &name, const QByteArray &host, bool isExpired)
{
    QFile extensions(path(name + u".ext"_s));
    // Newer OpenSSL refuses an end before the start, and older versions of "x509" take no dates, so
    // that "ca" has to sign.
    QFile configuration(path(u"ca.conf"_s));
    QFile index(path(u"index.txt"_s));
    if (!extensions.open(QIODevice::WriteOnly) || !configuration.open(QIODevice::WriteOnly) ||
        !index.open(QIODevice::WriteOnly))
        qFatal("The certificates cannot be written.");
    extensions.write("subjectAltName=" + host);
    extensions.close();
    configuration.write(
        "[ca]\ndefault_ca=here\n[here]\ndatabase=index.txt\nnew_certs_dir=.\n"
        "rand_serial=yes\ndefault_md=sha256\npolicy=any\n[any]\ncommonName=supplied\n");
    configuration.close();
    openssl(QStringList{u"req"_s} + newKey +
            QStringList{u"-keyout"_s, name + u".key"_s, u"-out"_s, name + u".csr"_s, u"-subj"_s,
                        u"/CN=server"_s});
    openssl({u"ca"_s, u"-batch"_s, u"-notext"_s, u"-config"_s, u"ca.conf"_s, u"-cert"_s,
             u"ca.pem"_s, u"-keyfile"_s, u"ca.key"_s, u"-in"_s, name + u".csr"_s, u"-out"_s,
             name + u".pem"_s, u"-startdate"_s, u"20200101000000Z"_s, u"-enddate"_s,
             isExpired ? u"20210101000000Z"_s : u"20990101000000Z"_s, u"-extfile"_s,
             name + u".ext"_s});
}

QSslConfiguration Certificates::server(const QString &name) const
{
    QFile key(path(name + u".key"_s));
    if (!key.open(QIODevice::ReadOnly))
        qFatal("The key is missing.");
    QSslConfiguration configuration = QSslConfiguration::defaultConfiguration();
    configuration.setLocalCertificateChain(QSslCertificate::fromPath(path(name + u".pem"_s)));
    configuration.setPrivateKey(QSslKey(&key, QSsl::Ec));
    return configuration;
}

void Certificates::openssl(const QStringList &arguments)
{
    QProcess process;
    process.setWorkingDirectory(m_folder.path());
    process.start(u"openssl"_s, arguments);
    if (!process.waitForFinished() || process.exitCode() != 0)
        qFatal("openssl: %s", process.readAllStandardError().constData());
}

} // namespace pixpress::test

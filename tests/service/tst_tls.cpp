// SPDX-FileCopyrightText: 2026 The Pixpress authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "service/http.h"
#include "service/tinifyservice.h"

#include "support/scriptedserver.h"
#include "support/transport.h"

#include <QProcess>
#include <QSslConfiguration>
#include <QSslKey>
#include <QSslServer>
#include <QSslSocket>
#include <QTemporaryDir>
#include <QTest>
#include <QTimer>

#include <limits>

using namespace pixpress;
using namespace pixpress::test;
using namespace std::chrono_literals;
using namespace Qt::StringLiterals;

/// An https server on 127.0.0.1 that answers every request alike.
class HttpsServer : public QSslServer
{
public:
    HttpsServer(const QString &certificate, const QString &key, Answer answerToAll = {})
        : answer(std::move(answerToAll))
    {
        QSslConfiguration configuration = QSslConfiguration::defaultConfiguration();
        QFile keyFile(key);
        if (!keyFile.open(QIODevice::ReadOnly))
            qFatal("The key is missing.");
        configuration.setLocalCertificateChain(QSslCertificate::fromPath(certificate));
        configuration.setPrivateKey(QSslKey(&keyFile, QSsl::Rsa));
        setSslConfiguration(configuration);
        connect(this, &QSslServer::pendingConnectionAvailable, this, [this] {
            QTcpSocket *socket = nextPendingConnection();
            connect(socket, &QTcpSocket::readyRead, this, [this, socket] {
                received += socket->readAll();
                if (received.endsWith("\r\n\r\n"))
                    QTimer::singleShot(pause, socket,
                                       [=, this] { socket->write(toBytes(answer)); });
            });
        });
        if (!listen(QHostAddress::LocalHost))
            qFatal("The https server cannot listen.");
    }

    QUrl url() const { return QUrl(u"https://127.0.0.1:%1/"_s.arg(serverPort())); }

    Answer answer;
    std::chrono::milliseconds pause{0}; ///< Before it shakes hands, and before it answers.
    int connectionsWithTls = std::numeric_limits<int>::max(); ///< Later ones are in plain.
    QByteArray received;

protected:
    void incomingConnection(qintptr socket) override
    {
        if (connectionsWithTls-- > 0)
            QTimer::singleShot(pause, this, [=, this] { QSslServer::incomingConnection(socket); });
        else
            QTcpServer::incomingConnection(socket);
    }
};

class TlsTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void certificate_decidesWhetherAnythingIsSent_data();
    void certificate_decidesWhetherAnythingIsSent();
    void redirectToThisMachineInPlain_dropsCredentials();
    void redirectToPlainOnTheSamePort_dropsCredentials();
    void redirectToTheOtherScheme_dropsCredentials_data();
    void redirectToTheOtherScheme_dropsCredentials();
    void redirectToABadCertificate_sendsNothing();
    void plainLocationOfASecureService_isRefused();
    void secureLocationOfAPlainService_isFetched();
    void unreadableTrust_hasItsSentence();
    void onlyHttp11_isOffered();
    void connectingAndWaiting_haveASilenceEach();

private:
    void openssl(const QStringList &arguments);
    void makeCertificate(const QString &name, const QString &host, const QString &days);
    QString path(const QString &name) const { return m_folder.filePath(name); }

    QTemporaryDir m_folder;
};

void TlsTest::openssl(const QStringList &arguments)
{
    QProcess process;
    process.setWorkingDirectory(m_folder.path());
    process.start(u"openssl"_s, arguments);
    QVERIFY2(process.waitForFinished(), "openssl does not run");
    QVERIFY2(process.exitCode() == 0, process.readAllStandardError().constData());
}

void TlsTest::makeCertificate(const QString &name, const QString &host, const QString &days)
{
    QFile extensions(path(name + u".ext"_s));
    QVERIFY(extensions.open(QIODevice::WriteOnly));
    extensions.write("subjectAltName=" + host.toLatin1());
    extensions.close();
    openssl({u"req"_s, u"-newkey"_s, u"rsa:2048"_s, u"-nodes"_s, u"-keyout"_s, name + u".key"_s,
             u"-out"_s, name + u".csr"_s, u"-subj"_s, u"/CN=server"_s});
    openssl({u"x509"_s, u"-req"_s, u"-in"_s, name + u".csr"_s, u"-CA"_s, u"ca.pem"_s, u"-CAkey"_s,
             u"ca.key"_s, u"-CAcreateserial"_s, u"-out"_s, name + u".pem"_s, u"-days"_s, days,
             u"-extfile"_s, name + u".ext"_s});
}

void TlsTest::initTestCase()
{
    const auto makeAuthority = [this](const QString &name) {
        openssl({u"req"_s, u"-x509"_s, u"-newkey"_s, u"rsa:2048"_s, u"-nodes"_s, u"-keyout"_s,
                 name + u".key"_s, u"-out"_s, name + u".pem"_s, u"-days"_s, u"2"_s, u"-subj"_s,
                 u"/CN="_s + name, u"-addext"_s, u"subjectAltName=IP:127.0.0.1"_s});
    };
    makeAuthority(u"ca"_s);
    makeAuthority(u"self-signed"_s);
    makeCertificate(u"good"_s, u"IP:127.0.0.1"_s, u"2"_s);
    makeCertificate(u"wrong-name"_s, u"DNS:example.com"_s, u"2"_s);
    makeCertificate(u"expired"_s, u"IP:127.0.0.1"_s, u"-1"_s);
}

void TlsTest::certificate_decidesWhetherAnythingIsSent_data()
{
    QTest::addColumn<QString>("certificate");
    QTest::addColumn<QString>("trust");
    QTest::addColumn<QString>("outcome");
    const QString refused = u"The server's certificate is not valid, so nothing was sent."_s;
    QTest::newRow("good") << u"good"_s << u"ca.pem"_s << u"200"_s;
    QTest::newRow("unknown authority") << u"good"_s << u"self-signed.pem"_s << refused;
    QTest::newRow("system's authorities") << u"good"_s << QString() << refused;
    QTest::newRow("self-signed") << u"self-signed"_s << u"ca.pem"_s << refused;
    QTest::newRow("wrong name") << u"wrong-name"_s << u"ca.pem"_s << refused;
    QTest::newRow("expired") << u"expired"_s << u"ca.pem"_s << refused;
}

void TlsTest::certificate_decidesWhetherAnythingIsSent()
{
    QFETCH(const QString, certificate);
    QFETCH(const QString, trust);
    QFETCH(const QString, outcome);
    const HttpsServer server(path(certificate + u".pem"_s), path(certificate + u".key"_s), {});
    HttpClient client({.caBundle = trust.isEmpty() ? trust : path(trust)});
    QCOMPARE(test::outcome(send(client, get(server.url(), "Basic c2VjcmV0"))), outcome);
    QCOMPARE(server.received.contains("Basic c2VjcmV0"), outcome == u"200"_s);
    QCOMPARE(server.received.isEmpty(), outcome != u"200"_s);
}

void TlsTest::redirectToThisMachineInPlain_dropsCredentials()
{
    ScriptedServer plain([](const Request &) { return Answer{}; });
    const HttpsServer server(path(u"good.pem"_s), path(u"good.key"_s),
                             {.status = 302, .headers = {{"Location", plain.url().toEncoded()}}});
    HttpClient client({.caBundle = path(u"ca.pem"_s)});
    QCOMPARE(outcome(send(client, get(server.url(), "Basic c2VjcmV0"))), u"200"_s);
    QCOMPARE(plain.requests.size(), 1);
    QVERIFY(!plain.requests[0].headers.contains("authorization"));
}

void TlsTest::redirectToPlainOnTheSamePort_dropsCredentials()
{
    HttpsServer server(path(u"good.pem"_s), path(u"good.key"_s));
    QUrl plain = server.url();
    plain.setScheme(u"http"_s);
    server.answer = {.status = 302, .headers = {{"Location", plain.toEncoded()}}};
    server.connectionsWithTls = 1;
    HttpClient client({.caBundle = path(u"ca.pem"_s)});
    QCOMPARE(outcome(send(client, get(server.url(), "Basic c2VjcmV0"))),
             u"The server redirected the request too often."_s);
    QCOMPARE(server.received.count("GET / HTTP/1.1\r\n"), 11);
    QCOMPARE(server.received.count("Basic c2VjcmV0"), 1);
}

void TlsTest::redirectToTheOtherScheme_dropsCredentials_data()
{
    QTest::addColumn<int>("status");
    QTest::addColumn<bool>("posts");
    for (const int status : {301, 302, 303, 307, 308}) {
        QTest::addRow("GET %d", status) << status << false;
        QTest::addRow("POST %d", status) << status << true;
    }
}

void TlsTest::redirectToTheOtherScheme_dropsCredentials()
{
    QFETCH(const int, status);
    QFETCH(const bool, posts);
    Answer answerOfPlain;
    ScriptedServer plain([&](const Request &) { return answerOfPlain; });
    HttpsServer secure(path(u"good.pem"_s), path(u"good.key"_s));
    const auto redirect = [&](const QUrl &to) {
        return Answer{.status = status, .headers = {{"Location", to.toEncoded()}}};
    };
    const bool follows = !posts || status < 307;
    const QString expected = QString::number(follows ? 200 : status);
    const auto sendTo = [&](const QUrl &url) {
        HttpClient client({.caBundle = path(u"ca.pem"_s)});
        HttpRequest request = get(url, "Basic c2VjcmV0");
        if (posts)
            request.body = QByteArray();
        return outcome(send(client, request));
    };

    answerOfPlain = redirect(secure.url());
    QCOMPARE(sendTo(plain.url()), expected);
    QVERIFY(!secure.received.contains("Authorization"));
    QCOMPARE(secure.received.contains("GET / "), follows);

    answerOfPlain = {};
    secure.answer = redirect(plain.url());
    plain.requests.clear();
    QCOMPARE(sendTo(secure.url()), expected);
    QCOMPARE(plain.requests.size(), follows ? 1 : 0);
    for (const Request &request : std::as_const(plain.requests))
        QVERIFY(!request.headers.contains("authorization"));
}

void TlsTest::redirectToABadCertificate_sendsNothing()
{
    for (const QString &name : {u"self-signed"_s, u"wrong-name"_s, u"expired"_s}) {
        const HttpsServer bad(path(name + u".pem"_s), path(name + u".key"_s));
        const HttpsServer good(path(u"good.pem"_s), path(u"good.key"_s),
                               {.status = 302, .headers = {{"Location", bad.url().toEncoded()}}});
        HttpClient client({.caBundle = path(u"ca.pem"_s)});
        QCOMPARE(outcome(send(client, get(good.url(), "Basic c2VjcmV0"))),
                 u"The server's certificate is not valid, so nothing was sent."_s);
        QCOMPARE(bad.received, "");
    }
}

void TlsTest::plainLocationOfASecureService_isRefused()
{
    const ScriptedServer plain([](const Request &) { return Answer{}; });
    const HttpsServer secure(path(u"good.pem"_s), path(u"good.key"_s));
    TinifyService service({.baseURL = secure.url(), .limits = {.caBundle = path(u"ca.pem"_s)}});
    const auto refused = QCoro::waitFor(service.fetchOutput(plain.url(), {}, u"secret"_s));
    QCOMPARE(errorDescription(refused.error()),
             u"The server named an address that is not secure, so nothing was sent there."_s);
    QCOMPARE(plain.connections, 0);
    QVERIFY(QCoro::waitFor(service.fetchOutput(secure.url(), {}, u"secret"_s)));
}

void TlsTest::secureLocationOfAPlainService_isFetched()
{
    const HttpsServer secure(path(u"good.pem"_s), path(u"good.key"_s), {.body = "output"});
    TinifyService service(
        {.baseURL = QUrl(u"http://127.0.0.1"_s), .limits = {.caBundle = path(u"ca.pem"_s)}});
    const auto fetched = QCoro::waitFor(service.fetchOutput(secure.url(), {}, u"secret"_s));
    QVERIFY(fetched);
    QCOMPARE(fetched->first, "output");
    QVERIFY(secure.received.contains("\r\nAuthorization: Basic "));
}

void TlsTest::unreadableTrust_hasItsSentence()
{
    const HttpsServer server(path(u"good.pem"_s), path(u"good.key"_s), {});
    HttpClient client({.caBundle = path(u"missing.pem"_s)});
    QCOMPARE(outcome(send(client, get(server.url()))),
             u"The trusted certificates of this computer could not be read."_s);
}

void TlsTest::onlyHttp11_isOffered()
{
    ScriptedServer server;
    QByteArray hello;
    server.setRaw([&](QTcpSocket &socket, const QByteArray &received) {
        hello = received;
        socket.abort();
    });
    QUrl url = server.url();
    url.setScheme(u"https"_s);
    HttpClient client({});
    QVERIFY(!send(client, get(url)));
    // The client's first message, which is in plain: the extension "application-layer protocol
    // negotiation", with the length of a list that has one entry.
    QVERIFY(hello.contains(QByteArray::fromHex("0010000b000908") + "http/1.1"));
}

void TlsTest::connectingAndWaiting_haveASilenceEach()
{
    HttpsServer server(path(u"good.pem"_s), path(u"good.key"_s));
    server.pause = 1000ms; // two of them are longer than the silence
    HttpClient client({.caBundle = path(u"ca.pem"_s), .longestSilence = 1500ms});
    QCOMPARE(outcome(send(client, get(server.url()))), u"200"_s);
}

QTEST_GUILESS_MAIN(TlsTest)
#include "tst_tls.moc"

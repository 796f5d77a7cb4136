// SPDX-FileCopyrightText: 2026 The Pixpress authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "service/http.h"
#include "service/tinifyservice.h"

#include "support/certificates.h"
#include "support/scriptedserver.h"
#include "support/transport.h"

#include <QSslServer>
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
    explicit HttpsServer(const QSslConfiguration &tls, Answer answerToAll = {},
                         const QHostAddress &address = QHostAddress::LocalHost)
        : answer(std::move(answerToAll))
    {
        setSslConfiguration(tls);
        connect(this, &QSslServer::pendingConnectionAvailable, this, [this] {
            QTcpSocket *socket = nextPendingConnection();
            connect(socket, &QTcpSocket::readyRead, this, [this, socket] {
                received += socket->readAll();
                if (received.endsWith("\r\n\r\n"))
                    QTimer::singleShot(pause, socket,
                                       [=, this] { socket->write(toBytes(answer)); });
            });
        });
        if (!listen(address))
            qFatal("The https server cannot listen.");
    }

    QUrl url() const
    {
        return QUrl(u"https://%1:%2/"_s.arg(serverAddress().toString()).arg(serverPort()));
    }

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
    void locationOnAnotherHost_isFetchedUnderItsOwnCertificate();
    void redirectToAnotherHost_dropsCredentials();
    void unreadableTrust_hasItsSentence();
    void onlyHttp11_isOffered();
    void connectingAndWaiting_haveASilenceEach();

private:
    Certificates m_certificates;
};

void TlsTest::initTestCase()
{
    m_certificates.makeSelfSigned(u"self-signed"_s);
    m_certificates.make(u"good"_s, "IP:127.0.0.1");
    m_certificates.make(u"other"_s, "IP:127.0.0.2");
    m_certificates.make(u"wrong-name"_s, "DNS:example.com");
    m_certificates.make(u"expired"_s, "IP:127.0.0.1", true);
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
    const HttpsServer server(m_certificates.server(certificate));
    HttpClient client({.caBundle = trust.isEmpty() ? trust : m_certificates.path(trust)});
    QCOMPARE(test::outcome(send(client, get(server.url(), "Basic c2VjcmV0"))), outcome);
    QCOMPARE(server.received.contains("Basic c2VjcmV0"), outcome == u"200"_s);
    QCOMPARE(server.received.isEmpty(), outcome != u"200"_s);
}

void TlsTest::redirectToThisMachineInPlain_dropsCredentials()
{
    ScriptedServer plain([](const Request &) { return Answer{}; });
    const HttpsServer server(m_certificates.server(u"good"_s),
                             {.status = 302, .headers = {{"Location", plain.url().toEncoded()}}});
    HttpClient client({.caBundle = m_certificates.authority()});
    QCOMPARE(outcome(send(client, get(server.url(), "Basic c2VjcmV0"))), u"200"_s);
    QCOMPARE(plain.requests.size(), 1);
    QVERIFY(!plain.requests[0].headers.contains("authorization"));
}

void TlsTest::redirectToPlainOnTheSamePort_dropsCredentials()
{
    HttpsServer server(m_certificates.server(u"good"_s));
    QUrl plain = server.url();
    plain.setScheme(u"http"_s);
    server.answer = {.status = 302, .headers = {{"Location", plain.toEncoded()}}};
    server.connectionsWithTls = 1;
    HttpClient client({.caBundle = m_certificates.authority()});
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
    HttpsServer secure(m_certificates.server(u"good"_s));
    const auto redirect = [&](const QUrl &to) {
        return Answer{.status = status, .headers = {{"Location", to.toEncoded()}}};
    };
    const bool follows = !posts || status < 307;
    const QString expected = QString::number(follows ? 200 : status);
    const auto sendTo = [&](const QUrl &url) {
        HttpClient client({.caBundle = m_certificates.authority()});
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
        const HttpsServer bad(m_certificates.server(name));
        const HttpsServer good(m_certificates.server(u"good"_s),
                               {.status = 302, .headers = {{"Location", bad.url().toEncoded()}}});
        HttpClient client({.caBundle = m_certificates.authority()});
        QCOMPARE(outcome(send(client, get(good.url(), "Basic c2VjcmV0"))),
                 u"The server's certificate is not valid, so nothing was sent."_s);
        QCOMPARE(bad.received, "");
    }
}

void TlsTest::plainLocationOfASecureService_isRefused()
{
    const ScriptedServer plain([](const Request &) { return Answer{}; });
    const HttpsServer secure(m_certificates.server(u"good"_s));
    TinifyService service(
        {.baseURL = secure.url(), .limits = {.caBundle = m_certificates.authority()}});
    const auto refused = QCoro::waitFor(service.fetchOutput(plain.url(), {}, u"secret"_s));
    QCOMPARE(errorDescription(refused.error()),
             u"The server named an address that is not secure, so nothing was sent there."_s);
    QCOMPARE(plain.connections, 0);
    QVERIFY(QCoro::waitFor(service.fetchOutput(secure.url(), {}, u"secret"_s)));
}

void TlsTest::secureLocationOfAPlainService_isFetched()
{
    const HttpsServer secure(m_certificates.server(u"good"_s), {.body = "output"});
    TinifyService service({.baseURL = QUrl(u"http://127.0.0.1"_s),
                           .limits = {.caBundle = m_certificates.authority()}});
    const auto fetched = QCoro::waitFor(service.fetchOutput(secure.url(), {}, u"secret"_s));
    QVERIFY(fetched);
    QCOMPARE(fetched->first, "output");
    QVERIFY(secure.received.contains("\r\nAuthorization: Basic "));
}

void TlsTest::locationOnAnotherHost_isFetchedUnderItsOwnCertificate()
{
    const QHostAddress host(u"127.0.0.2"_s);
    const HttpsServer other(m_certificates.server(u"other"_s), {.body = "output"}, host);
    const HttpsServer liar(m_certificates.server(u"good"_s), {.body = "output"}, host);
    const HttpsServer secure(m_certificates.server(u"good"_s), shrinkAnswer(other.url()));
    TinifyService service(
        {.baseURL = secure.url(), .limits = {.caBundle = m_certificates.authority()}});
    const auto shrunk = QCoro::waitFor(service.shrink("picture\r\n\r\n", u"secret"_s));
    QVERIFY(shrunk);
    const auto fetched = QCoro::waitFor(service.fetchOutput(shrunk->outputURL, {}, u"secret"_s));
    QVERIFY(fetched);
    QCOMPARE(fetched->first, "output");
    const auto refused = QCoro::waitFor(service.fetchOutput(liar.url(), {}, u"secret"_s));
    QCOMPARE(errorDescription(refused.error()),
             u"The server's certificate is not valid, so nothing was sent."_s);
    QCOMPARE(liar.received, "");
}

void TlsTest::redirectToAnotherHost_dropsCredentials()
{
    const HttpsServer other(m_certificates.server(u"other"_s), {}, QHostAddress(u"127.0.0.2"_s));
    const HttpsServer server(m_certificates.server(u"good"_s),
                             {.status = 302, .headers = {{"Location", other.url().toEncoded()}}});
    HttpClient client({.caBundle = m_certificates.authority()});
    QCOMPARE(outcome(send(client, get(server.url(), "Basic c2VjcmV0"))), u"200"_s);
    QVERIFY(other.received.contains("Host: 127.0.0.2"));
    QVERIFY(!other.received.contains("Authorization"));
}

void TlsTest::unreadableTrust_hasItsSentence()
{
    const HttpsServer server(m_certificates.server(u"good"_s));
    HttpClient client({.caBundle = m_certificates.path(u"missing.pem"_s)});
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
    HttpsServer server(m_certificates.server(u"good"_s));
    server.pause = 1000ms; // two of them are longer than the silence
    HttpClient client({.caBundle = m_certificates.authority(), .longestSilence = 1500ms});
    QCOMPARE(outcome(send(client, get(server.url()))), u"200"_s);
}

QTEST_GUILESS_MAIN(TlsTest)
#include "tst_tls.moc"

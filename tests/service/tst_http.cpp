// SPDX-FileCopyrightText: 2026 The Pixpress authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "service/http.h"

#include "support/certificates.h"
#include "support/scriptedserver.h"
#include "support/slowlink.h"
#include "support/transport.h"

#include <QElapsedTimer>
#include <QHostAddress>
#include <QScopeGuard>
#include <QTcpServer>
#include <QTcpSocket>
#include <QTest>
#include <QTimer>

#include <array>
#include <optional>

using namespace pixpress;
using namespace pixpress::test;
using namespace std::chrono_literals;
using namespace Qt::StringLiterals;

namespace {

const QString timedOut = u"The request timed out."_s;
const QString lost = u"The network connection was lost."_s;
const QString notSecure =
    u"The server named an address that is not secure, so nothing was sent there."_s;

Answer echo(const Request &request)
{
    return {.status = 200, .body = request.method + ' ' + request.body};
}

/// What a server of the tests has, and a client of theirs trusts: nothing where it is to be http.
std::optional<QSslConfiguration> g_tls;
QString g_authority;

struct Server : ScriptedServer
{
    explicit Server(Script script = {}, const QHostAddress &address = QHostAddress::LocalHost)
        : ScriptedServer(std::move(script), address, g_tls)
    {
    }
};

struct Client : HttpClient
{
    explicit Client(HttpLimits limits) : HttpClient(trusting(std::move(limits))) {}

    static HttpLimits trusting(HttpLimits limits)
    {
        limits.caBundle = g_authority;
        return limits;
    }
};

} // namespace

class HttpTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase_data();
    void initTestCase() { m_certificates.make(u"server"_s, "IP:127.0.0.1,IP:::1"); }
    void init();

    void get_sendsNoBodyAndNoContentType();
    void post_sendsTheBodyWithoutContentType_data();
    void post_sendsTheBodyWithoutContentType();
    void answer_keepsStatusHeadersAndBody();
    void requests_shareAKeptAliveConnection();
    void requests_leaveNothingToTheNext();
    void requests_runAtTheSameTime();

    void answerBody_arrivesWhole_data();
    void answerBody_arrivesWhole();
    void answerBeforeTheUploadEnds_isReported_data();
    void answerBeforeTheUploadEnds_isReported();
    void answerOverTheLimit_isRefused_data();
    void answerOverTheLimit_isRefused();

    void silence_timesOut_data();
    void silence_timesOut();
    void silence_endsWhenNothingElseWakesTheClient();
    void trickle_timesOutInTheEnd();
    void slowUpload_timesOutInTheEnd();
    void stalledConnect_timesOut();
    void brokenPeer_hasItsSentence_data();
    void brokenPeer_hasItsSentence();
    void noServer_hasItsSentence();
    void postOnADyingConnection_isNotRepeated();

    void addressThatIsNotAllowed_isRefused_data();
    void addressThatIsNotAllowed_isRefused();
    void redirect_data();
    void redirect();
    void redirectToAnInsecureAddress_isRefused_data();
    void redirectToAnInsecureAddress_isRefused();
    void redirectWithinTheOrigin_keepsCredentials();
    void redirectToAnotherPort_dropsCredentials();
    void endlessRedirect_ends();
    void credentialsInAnAddress_areNotUsed();

    void thisMachine_isNotReachedThroughAProxy();
    void others_areReachedThroughTheProxy();

    void destroyedClient_cancels();

private:
    Certificates m_certificates;
};

void HttpTest::initTestCase_data()
{
    QTest::addColumn<bool>("secure");
    QTest::newRow("http") << false;
    QTest::newRow("https") << true;
}

void HttpTest::init()
{
    QFETCH_GLOBAL(const bool, secure);
    g_tls = secure ? std::optional(m_certificates.server(u"server"_s)) : std::nullopt;
    g_authority = secure ? m_certificates.authority() : QString();
}

void HttpTest::get_sendsNoBodyAndNoContentType()
{
    Server server(echo);
    Client client({});
    const HttpResult result = send(client, get(server.url(u"/a?b=c"_s), "Basic eA=="));
    QCOMPARE(outcome(result), u"200"_s);
    QCOMPARE(server.requests.size(), 1);
    QCOMPARE(server.requests[0].method, "GET");
    QCOMPARE(server.requests[0].target, "/a?b=c");
    QCOMPARE(server.requests[0].headers.value("authorization"), "Basic eA==");
    QVERIFY(!server.requests[0].headers.contains("content-type"));
    QVERIFY(!server.requests[0].headers.contains("content-length"));
    QVERIFY(!server.requests[0].headers.contains("user-agent"));
}

void HttpTest::post_sendsTheBodyWithoutContentType_data()
{
    QTest::addColumn<QHostAddress>("address");
    QTest::addColumn<QByteArray>("body");
    const QHostAddress ipv4(QHostAddress::LocalHost);
    QTest::newRow("empty") << ipv4 << QByteArray();
    QTest::newRow("small") << ipv4 << QByteArray("small\0body", 10);
    for (const int size : {61'439, 61'440, 61'441, 65'535, 65'536, 65'537}) // sent in other ways
        QTest::addRow("%d bytes", size) << ipv4 << QByteArray(size, 'z');
    QTest::newRow("500 kB") << ipv4 << QByteArray(500'000, 'x');
    QTest::newRow("20 MB") << ipv4 << QByteArray(20'000'000, 'y');
    QTest::newRow("IPv6") << QHostAddress(QHostAddress::LocalHostIPv6) << QByteArray(500'000, 'x');
}

void HttpTest::post_sendsTheBodyWithoutContentType()
{
    QFETCH(const QHostAddress, address);
    QFETCH(const QByteArray, body);
    Server server([](const Request &) { return Answer{.status = 201}; }, address);
    Client client({});
    QCOMPARE(outcome(send(client, post(server.url(u"/shrink"_s), body))), u"201"_s);
    QCOMPARE(server.requests.size(), 1);
    QCOMPARE(server.requests[0].method, "POST");
    QCOMPARE(server.requests[0].headers.value("content-length"), QByteArray::number(body.size()));
    QVERIFY(!server.requests[0].headers.contains("content-type"));
    QVERIFY(!server.requests[0].headers.contains("expect"));
    QVERIFY(server.requests[0].body == body);
}

void HttpTest::answer_keepsStatusHeadersAndBody()
{
    Server server([](const Request &) {
        return Answer{.status = 418, .body = "short", .headers = {{"X-Thing", "a b"}}};
    });
    Client client({});
    const HttpResult result = send(client, get(server.url()));
    QCOMPARE(outcome(result), u"418"_s);
    QCOMPARE(result->body, "short");
    QCOMPARE(result->header("x-thing"), "a b");
    QVERIFY(!result->header("location"));
}

void HttpTest::requests_shareAKeptAliveConnection()
{
    Server server(echo);
    Client client({});
    for (int i = 0; i < 5; ++i)
        QCOMPARE(outcome(send(client, post(server.url(), "x"))), u"200"_s);
    QCOMPARE(server.requests.size(), 5);
    QCOMPARE(server.connections, 1);
}

void HttpTest::requests_leaveNothingToTheNext()
{
    Server server(echo);
    Client client({});
    const QList<QByteArray> bodies{"small", QByteArray(200'000, 'x'), "", "last"};
    for (const QByteArray &body : bodies) {
        const HttpRequest full{.url = server.url(u"/full"_s),
                               .authorization = "Basic eA==",
                               .contentType = "text/plain",
                               .body = body};
        QVERIFY(send(client, full)->body == "POST " + body);
        QCOMPARE(server.requests.last().headers.value("content-type"), "text/plain");
        QCOMPARE(send(client, get(server.url(u"/bare"_s)))->body, "GET ");
        const Request &bare = server.requests.last();
        QCOMPARE(bare.target, "/bare");
        for (const auto *header : {"authorization", "content-type", "content-length"})
            QVERIFY2(!bare.headers.contains(header), header);
    }
    QCOMPARE(server.connections, 1);
}

void HttpTest::requests_runAtTheSameTime()
{
    Server server(echo);
    server.hold();
    Client client({});
    auto first = sendTask(client, post(server.url(), "1"));
    auto second = sendTask(client, post(server.url(), "2"));
    auto third = sendTask(client, post(server.url(), "3"));
    QTRY_COMPARE(server.requests.size(), 3);
    server.release();
    QCOMPARE(QCoro::waitFor(third)->body, "POST 3");
    QCOMPARE(QCoro::waitFor(first)->body, "POST 1");
    QCOMPARE(QCoro::waitFor(second)->body, "POST 2");
}

void HttpTest::answerBody_arrivesWhole_data()
{
    QTest::addColumn<QByteArray>("answer");
    QTest::addColumn<QByteArray>("body");
    const QByteArray large(3'000'000, 'z');
    QTest::newRow("with length") << toBytes({.body = large}) << large;
    QTest::newRow("until close") << "HTTP/1.1 200 OK\r\n\r\n" + large << large;
    QTest::newRow("chunked") << QByteArray("HTTP/1.1 200 OK\r\nTransfer-Encoding: chunked\r\n\r\n"
                                           "3\r\nabc\r\n5;x=y\r\ndefgh\r\n0\r\n\r\n")
                             << QByteArray("abcdefgh");
    QTest::newRow("chunked with a trailer")
        << QByteArray("HTTP/1.1 200 OK\r\nTransfer-Encoding: chunked\r\nTrailer: X\r\n\r\n"
                      "3\r\nabc\r\n0\r\nX: y\r\n\r\n")
        << QByteArray("abc");
    QTest::newRow("after 1xx") << "HTTP/1.1 103 Early Hints\r\nLink: x\r\n\r\n" +
                                      toBytes({.body = "abc"})
                               << QByteArray("abc");
    QTest::newRow("compressed stays as it is")
        << toBytes({.body = "\x1f\x8b", .headers = {{"Content-Encoding", "gzip"}}})
        << QByteArray("\x1f\x8b");
    QTest::newRow("empty") << toBytes({}) << QByteArray();
}

void HttpTest::answerBody_arrivesWhole()
{
    QFETCH(const QByteArray, answer);
    QFETCH(const QByteArray, body);
    Server server;
    server.setRaw([&](QTcpSocket &socket, const QByteArray &) {
        socket.write(answer);
        socket.disconnectFromHost();
    });
    Client client({});
    const HttpResult result = send(client, get(server.url()));
    QCOMPARE(outcome(result), u"200"_s);
    QVERIFY(result->body == body);
}

void HttpTest::answerBeforeTheUploadEnds_isReported_data()
{
    QTest::addColumn<qsizetype>("bodySize");
    QTest::addColumn<qsizetype>("answerAfter"); // bytes of the request
    QTest::addColumn<bool>("slow");             // the link
    const qsizetype large = 30'000'000;
    QTest::newRow("at the head of a large body") << large << qsizetype(1) << false;
    QTest::newRow("amid a large body") << large << qsizetype(1'000'000) << false;
    QTest::newRow("amid a small body") << qsizetype(900'000) << qsizetype(1000) << false;
    QTest::newRow("at the head, slow link") << large << qsizetype(1) << true;
    QTest::newRow("amid a large body, slow link") << large << qsizetype(300'000) << true;
}

void HttpTest::answerBeforeTheUploadEnds_isReported()
{
    QFETCH(const qsizetype, bodySize);
    QFETCH(const qsizetype, answerAfter);
    QFETCH(const bool, slow);
    Server server(echo);
    const SlowLink link(server.url());
    const QUrl url = slow ? link.url() : server.url();
    const ScriptedServer::RawScript refuse = [&](QTcpSocket &socket, const QByteArray &received) {
        if (received.size() < answerAfter)
            return;
        socket.setSocketOption(QAbstractSocket::LowDelayOption, 1);
        socket.write(toBytes({.status = 413, .body = "too large"}));
        socket.flush();
        socket.abort(); // with unread data in the kernel: the peer's next segment is reset
    };
    Client client({});
    const QByteArray body(bodySize, 'x');
    for (int i = 0; i < (slow ? 10 : 25); ++i) {
        server.setRaw({});
        QCOMPARE(outcome(send(client, get(url))), u"200"_s); // which is then kept alive
        server.setRaw(refuse);
        const HttpResult result = send(client, post(url, body));
        QCOMPARE(outcome(result), u"413"_s);
        QCOMPARE(result->body, "too large");
    }
}

void HttpTest::answerOverTheLimit_isRefused_data()
{
    QTest::addColumn<QByteArray>("head");
    QTest::newRow("announced") << QByteArray("Content-Length: 99999999999\r\n\r\n");
    QTest::newRow("endless") << QByteArray("\r\n");
}

void HttpTest::answerOverTheLimit_isRefused()
{
    QFETCH(const QByteArray, head);
    Server server;
    server.setRaw([&](QTcpSocket &socket, const QByteArray &) {
        socket.write("HTTP/1.1 200 OK\r\n" + head);
        // Queued, for a socket of TLS signals this while it is being written to.
        connect(
            &socket, &QTcpSocket::bytesWritten, &socket,
            [&socket] { socket.write(QByteArray(10'000, 'x')); }, Qt::QueuedConnection);
    });
    Client client({.largestAnswer = 100'000});
    QCOMPARE(outcome(send(client, get(server.url()))), u"The server's answer is too large."_s);
}

void HttpTest::silence_timesOut_data()
{
    QTest::addColumn<QByteArray>("sent"); // of an answer, before the peer falls silent
    QTest::addColumn<bool>("reads");
    QTest::newRow("before the answer") << QByteArray() << true;
    QTest::newRow("in the head") << QByteArray("HTTP/1.1 200 OK\r\nContent-") << true;
    QTest::newRow("in the body") << QByteArray("HTTP/1.1 200 OK\r\nContent-Length: 9\r\n\r\nabc")
                                 << true;
    QTest::newRow("in the upload") << QByteArray() << false;
}

void HttpTest::silence_timesOut()
{
    QFETCH(const QByteArray, sent);
    QFETCH(const bool, reads);
    Server server;
    server.setRaw([&](QTcpSocket &socket, const QByteArray &) {
        if (!reads)
            socket.setReadBufferSize(1);
        socket.write(sent);
        server.setRaw([](QTcpSocket &, const QByteArray &) {});
    });
    Client client({.longestSilence = 300ms});
    const HttpResult result = send(client, post(server.url(), QByteArray(40'000'000, 'x')));
    QCOMPARE(outcome(result), timedOut);
    QCOMPARE(result.error().kind, TransportError::Case::timedOut);
}

void HttpTest::silence_endsWhenNothingElseWakesTheClient()
{
    Server server(echo);
    server.hold();
    Client client({.longestSilence = 1500ms}); // libcurl's own timers are over by then
    QElapsedTimer timer;
    timer.start();
    QCOMPARE(outcome(send(client, get(server.url()))), timedOut);
    QVERIFY2(timer.elapsed() < 15'000, qPrintable(QString::number(timer.elapsed())));
}

void HttpTest::trickle_timesOutInTheEnd()
{
    Server server;
    server.setRaw([&](QTcpSocket &socket, const QByteArray &) {
        socket.write("HTTP/1.1 200 OK\r\n\r\n");
        auto *timer = new QTimer(&socket);
        connect(timer, &QTimer::timeout, &socket, [&socket] { socket.write("x"); });
        timer->start(20ms);
    });
    Client client({.longestSilence = 10s, .longestTransfer = 400ms});
    QCOMPARE(outcome(send(client, get(server.url()))), timedOut);
}

void HttpTest::slowUpload_timesOutInTheEnd()
{
    Server server(echo);
    const SlowLink link(server.url());
    Client client({.longestSilence = 10s, .longestTransfer = 1s});
    QCOMPARE(outcome(send(client, post(link.url(), QByteArray(40'000'000, 'x')))), timedOut);
    QVERIFY(server.requests.isEmpty());
    QCOMPARE(server.connections, 1);
}

void HttpTest::stalledConnect_timesOut()
{
    // Nobody accepts, and the queue has one place: whoever connects then gets no answer.
    QTcpServer server;
    server.setListenBacklogSize(0);
    QVERIFY(server.listen(QHostAddress::LocalHost));
    server.pauseAccepting();
    std::array<QTcpSocket, 3> others;
    for (QTcpSocket &other : others)
        other.connectToHost(QHostAddress::LocalHost, server.serverPort());
    QTRY_VERIFY(others[0].state() == QAbstractSocket::ConnectedState);
    QUrl url(u"http://127.0.0.1"_s);
    url.setScheme(g_tls ? u"https"_s : u"http"_s);
    url.setPort(server.serverPort());
    Client client({.longestSilence = 500ms});
    QCOMPARE(outcome(send(client, get(url))), timedOut);
}

void HttpTest::brokenPeer_hasItsSentence_data()
{
    QTest::addColumn<QByteArray>("answer"); // after which the connection is closed
    QTest::addColumn<QString>("sentence");
    const QString noHTTP = u"The server did not answer with HTTP."_s;
    QTest::newRow("closes") << QByteArray() << lost;
    QTest::newRow("status line without an end") << QByteArray("HTTP/1.1 200 OK") << lost;
    QTest::newRow("half a head") << QByteArray("HTTP/1.1 200 OK\r\nContent-Le") << lost;
    QTest::newRow("head without an end") << QByteArray("HTTP/1.1 200 OK\r\nX: y\r\n") << lost;
    QTest::newRow("half a head after an interim one")
        << QByteArray("HTTP/1.1 103 Early Hints\r\nLink: x\r\n\r\nHTTP/1.1 200 OK\r\nX: y\r\n")
        << lost;
    QTest::newRow("half a body") << QByteArray("HTTP/1.1 200 OK\r\nContent-Length: 9\r\n\r\nabc")
                                 << lost;
    QTest::newRow("half a chunk")
        << QByteArray("HTTP/1.1 200 OK\r\nTransfer-Encoding: chunked\r\n\r\n9\r\nabc") << lost;
    QTest::newRow("garbage") << QByteArray("SSH-2.0-OpenSSH_9.2\r\n\r\n") << noHTTP;
    QTest::newRow("zeros") << QByteArray(1000, '\0') << noHTTP;
}

void HttpTest::brokenPeer_hasItsSentence()
{
    QFETCH(const QByteArray, answer);
    QFETCH(const QString, sentence);
    Server server;
    int posts = 0;
    server.setRaw([&](QTcpSocket &socket, const QByteArray &received) {
        posts += static_cast<int>(received.count("POST"));
        socket.write(answer);
        socket.disconnectFromHost();
    });
    Client client({});
    QCOMPARE(outcome(send(client, post(server.url(), "x"))), sentence);
    QCOMPARE(posts, 1);
}

void HttpTest::noServer_hasItsSentence()
{
    QUrl url;
    {
        const Server server;
        url = server.url();
    }
    Client client({});
    QCOMPARE(outcome(send(client, get(url))), u"Could not connect to the server."_s);
}

void HttpTest::postOnADyingConnection_isNotRepeated()
{
    Server server(echo);
    Client client({});
    QCOMPARE(outcome(send(client, post(server.url(), "good"))), u"200"_s);

    int posts = 0;
    server.setRaw([&](QTcpSocket &socket, const QByteArray &received) {
        posts += static_cast<int>(received.count("POST"));
        socket.abort();
    });
    QCOMPARE(outcome(send(client, post(server.url(), QByteArray(100, 'x')))), lost);
    QCOMPARE(posts, 1);
}

void HttpTest::addressThatIsNotAllowed_isRefused_data()
{
    QTest::addColumn<QUrl>("url");
    const auto row = [](const char *url) { QTest::newRow(url) << QUrl(QString::fromLatin1(url)); };
    row("http://example.com/");
    row("http://127.0.0.1.example.com/");
    row("http://0.0.0.0/");
    row("http://192.168.0.1/");
    row("ftp://127.0.0.1/");
    row("file:///etc/passwd");
    row("/output/x");
    row("https:///x");
    row("");
}

void HttpTest::addressThatIsNotAllowed_isRefused()
{
    QFETCH(const QUrl, url);
    Client client({});
    const HttpResult result = send(client, get(url));
    QCOMPARE(outcome(result), notSecure);
    QCOMPARE(result.error().kind, TransportError::Case::refusedAddress);
}

void HttpTest::redirect_data()
{
    QTest::addColumn<int>("status");
    QTest::addColumn<bool>("posts");
    QTest::addColumn<QString>("outcome");
    QTest::addColumn<QByteArray>("seen"); // methods that reached the target
    for (const int status : {301, 302, 303, 307, 308}) {
        QTest::addRow("GET %d", status) << status << false << u"200"_s << QByteArray("GET");
        const bool repeats = status >= 307;
        QTest::addRow("POST %d", status)
            << status << true << (repeats ? QString::number(status) : u"200"_s)
            << (repeats ? QByteArray() : QByteArray("GET"));
    }
    QTest::newRow("GET 304") << 304 << false << u"304"_s << QByteArray();
    QTest::newRow("GET 300") << 300 << false << u"300"_s << QByteArray();
}

void HttpTest::redirect()
{
    QFETCH(const int, status);
    QFETCH(const bool, posts);
    QFETCH(const QString, outcome);
    QFETCH(const QByteArray, seen);
    Server target(echo);
    Server server([&](const Request &) {
        return Answer{.status = status,
                      .headers = {{"Location", target.url(u"/there"_s).toEncoded()}}};
    });
    Client client({});
    HttpRequest request = posts ? post(server.url(), "body") : get(server.url());
    request.contentType = posts ? "text/plain" : "";
    const HttpResult result = send(client, request);
    QCOMPARE(test::outcome(result), outcome);
    QCOMPARE(server.requests.size(), 1);
    QByteArrayList methods;
    for (const Request &request : std::as_const(target.requests)) {
        methods.append(request.method);
        QCOMPARE(request.target, "/there");
        QVERIFY(request.body.isEmpty());
        QVERIFY(!request.headers.contains("content-type"));
    }
    QCOMPARE(methods.join(' '), seen);
}

void HttpTest::redirectToAnInsecureAddress_isRefused_data()
{
    QTest::addColumn<QByteArray>("location");
    for (const char *location : {"http://example.com/", "ftp://127.0.0.1/", "file:///etc/passwd",
                                 "//example.com/x", "http://127.0.0.1@example.com/", "https:///x"})
        QTest::newRow(location) << QByteArray(location);
    QTest::newRow("two addresses") << QByteArray("/one\r\nLocation: /two");
}

void HttpTest::redirectToAnInsecureAddress_isRefused()
{
    QFETCH(const QByteArray, location);
    if (g_tls && location.startsWith("//"))
        QSKIP("This is https too, and allowed.");
    Server server([&](const Request &) {
        return Answer{.status = 302, .headers = {{"Location", location}}};
    });
    Client client({});
    QCOMPARE(outcome(send(client, get(server.url()))), notSecure);
}

void HttpTest::redirectWithinTheOrigin_keepsCredentials()
{
    Server server([](const Request &request) {
        return request.target == "/there"
                   ? Answer{}
                   : Answer{.status = 302, .headers = {{"Location", "/there"}}};
    });
    Client client({});
    QCOMPARE(outcome(send(client, get(server.url(u"/here"_s), "Basic c2VjcmV0"))), u"200"_s);
    QCOMPARE(server.requests.size(), 2);
    QCOMPARE(server.requests[1].headers.value("authorization"), "Basic c2VjcmV0");
}

void HttpTest::redirectToAnotherPort_dropsCredentials()
{
    Server target(echo);
    Server server([&](const Request &) {
        QUrl url = target.url();
        url.setUserInfo(u"api:other"_s);
        return Answer{.status = 302, .headers = {{"Location", url.toEncoded()}}};
    });
    Client client({});
    QCOMPARE(outcome(send(client, get(server.url(), "Basic c2VjcmV0"))), u"200"_s);
    QCOMPARE(target.requests.size(), 1);
    QVERIFY(!target.requests[0].headers.contains("authorization"));
}

void HttpTest::endlessRedirect_ends()
{
    Server server(
        [](const Request &) { return Answer{.status = 302, .headers = {{"Location", "/again"}}}; });
    Client client({});
    QCOMPARE(outcome(send(client, get(server.url()))),
             u"The server redirected the request too often."_s);
    QCOMPARE(server.requests.size(), 11);
}

void HttpTest::credentialsInAnAddress_areNotUsed()
{
    Server server(echo);
    Client client({});
    QUrl url = server.url();
    url.setUserInfo(u"somebody:else"_s);
    QCOMPARE(outcome(send(client, get(url))), u"200"_s);
    QVERIFY(!server.requests[0].headers.contains("authorization"));
}

void HttpTest::thisMachine_isNotReachedThroughAProxy()
{
    Server server(echo);
    ScriptedServer proxy([](const Request &) { return Answer{.status = 502}; });
    qputenv("http_proxy", proxy.url().toEncoded());
    const auto restore = qScopeGuard([] { qunsetenv("http_proxy"); });
    Client client({});
    QCOMPARE(outcome(send(client, get(server.url()))), u"200"_s);
    QCOMPARE(proxy.connections, 0);
}

void HttpTest::others_areReachedThroughTheProxy()
{
    ScriptedServer proxy;
    QByteArray asked;
    proxy.setRaw([&](QTcpSocket &socket, const QByteArray &received) {
        asked = received;
        socket.write("HTTP/1.1 403 Forbidden\r\n\r\n");
        socket.disconnectFromHost();
    });
    qputenv("https_proxy", proxy.url().toEncoded());
    const auto restore = qScopeGuard([] { qunsetenv("https_proxy"); });
    Client client({});
    QVERIFY(!send(client, get(QUrl(u"https://pictures.invalid/"_s), "Basic c2VjcmV0")));
    QVERIFY2(asked.startsWith("CONNECT pictures.invalid:443 HTTP/1.1\r\n"), asked);
    QVERIFY(!asked.contains("c2VjcmV0"));
}

void HttpTest::destroyedClient_cancels()
{
    Server server(echo);
    server.hold();
    auto client = std::make_unique<Client>(HttpLimits{});
    auto first = sendTask(*client, get(server.url()));
    auto second = sendTask(*client, get(server.url()));
    QTRY_COMPARE(server.requests.size(), 2);
    auto third = sendTask(*client, get(server.url())); // perhaps not even on its way
    client.reset();
    for (auto *task : {&first, &second, &third}) {
        QVERIFY(task->isReady());
        QCOMPARE(outcome(QCoro::waitFor(*task)), u"The request was cancelled."_s);
    }
}

QTEST_GUILESS_MAIN(HttpTest)
#include "tst_http.moc"

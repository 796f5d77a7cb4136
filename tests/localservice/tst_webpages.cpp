// SPDX-FileCopyrightText: 2026 The Pixpress authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "codec/vipslibrary.h"
#include "localservice/localservice.h"

#include "peer.h"
#include "pictures.h"

#include <QTest>

#include <memory>

using namespace pixpress;
using namespace pixpress::testing;

/// What a page in a browser on this machine can make it send.
class TestWebPages : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void hosts_data();
    void hosts();
    void severalHosts_areRefused();
    void missingHost_isRefused();
    void origins_areRefused_data();
    void origins_areRefused();
    void refusal_comesBeforeTheBody();
    void preflight_isRefused();

private:
    std::unique_ptr<LocalService> m_service;
};

namespace {

Fields withCredentials(const Fields &fields)
{
    return Fields{{"Authorization", credentials("key")}} + fields;
}

} // namespace

void TestWebPages::init()
{
    startVips();
    LocalServiceConfig config;
    config.key = [] { return QByteArray("key"); };
    config.counting = true;
    m_service = std::make_unique<LocalService>(config);
    QVERIFY(m_service->start());
}

void TestWebPages::hosts_data()
{
    QTest::addColumn<QByteArray>("host"); // PORT stands for the service's own.
    QTest::addColumn<bool>("isTaken");
    QTest::newRow("address") << QByteArray("127.0.0.1:PORT") << true;
    QTest::newRow("name") << QByteArray("localhost:PORT") << true;
    QTest::newRow("capitals") << QByteArray("LocalHost:PORT") << true;
    QTest::newRow("IPv6") << QByteArray("[::1]:PORT") << true;
    QTest::newRow("without port") << QByteArray("127.0.0.1") << false;
    QTest::newRow("port of HTTP") << QByteArray("127.0.0.1:80") << false;
    QTest::newRow("longer port") << QByteArray("127.0.0.1:PORT0") << false;
    QTest::newRow("other name") << QByteArray("example.com:PORT") << false;
    QTest::newRow("begins alike") << QByteArray("localhost.example.com:PORT") << false;
    QTest::newRow("ends alike") << QByteArray("example.localhost:PORT") << false;
    QTest::newRow("other loopback address") << QByteArray("127.0.0.2:PORT") << false;
    QTest::newRow("any address") << QByteArray("0.0.0.0:PORT") << false;
    QTest::newRow("user") << QByteArray("user@127.0.0.1:PORT") << false;
    QTest::newRow("empty") << QByteArray("") << false;
}

void TestWebPages::hosts()
{
    QFETCH(QByteArray, host);
    QFETCH(bool, isTaken);
    host.replace("PORT", QByteArray::number(m_service->baseURL().port()));
    Peer peer(m_service->baseURL());
    const Answer answer = peer.request("GET", "/output/none", {}, "key", {{"Host", host}});
    QCOMPARE(answer.status, isTaken ? 404 : 403);
    QCOMPARE(answer.headers.contains("compression-count"), isTaken);
}

void TestWebPages::severalHosts_areRefused()
{
    const QByteArray own = m_service->baseURL().authority().toLatin1();
    Peer peer(m_service->baseURL());
    const Fields both{{"Host", own}, {"Host", "example.com"}};
    QCOMPARE(peer.request("GET", "/output/none", {}, "key", both).status, 403);
}

void TestWebPages::missingHost_isRefused()
{
    Peer peer(m_service->baseURL());
    peer.send("GET /output/none HTTP/1.1\r\nAuthorization: " + credentials("key") + "\r\n\r\n");
    QCOMPARE(peer.receive().status, 403);
}

void TestWebPages::origins_areRefused_data()
{
    QTest::addColumn<QByteArray>("origin");
    QTest::newRow("page") << QByteArray("https://example.com");
    QTest::newRow("file") << QByteArray("null");
    QTest::newRow("this machine") << QByteArray("http://127.0.0.1");
}

void TestWebPages::origins_areRefused()
{
    QFETCH(QByteArray, origin);
    const QByteArray picture = saved(photo(50, 50), ImageFormat::webp);
    Peer upload(m_service->baseURL());
    const Answer answer = upload.request("POST", "/shrink", picture, "key", {{"Origin", origin}});
    QCOMPARE(answer.status, 403);
    QCOMPARE(answer.json().value(QLatin1String("error")).toString(), QLatin1String("Forbidden"));
    for (const QByteArray &name : answer.headers.keys())
        QVERIFY2(!name.startsWith("access-control"), name);
    Peer fetch(m_service->baseURL());
    QCOMPARE(fetch.request("GET", "/output/none", {}, "key", {{"Origin", origin}}).status, 403);
    QCOMPARE(m_service->compressionCount(), 0);
}

void TestWebPages::refusal_comesBeforeTheBody()
{
    for (const Fields &more : {Fields{}, Fields{{"Expect", "100-continue"}}}) {
        Peer peer(m_service->baseURL());
        peer.send(head(
            "POST", "/shrink",
            withCredentials({{"Origin", "https://example.com"}, {"Content-Length", "1000000"}}) +
                more));
        QCOMPARE(peer.receive().status, 403);
        QVERIFY(peer.isEndedByService());
    }
}

void TestWebPages::preflight_isRefused()
{
    Peer peer(m_service->baseURL());
    const Answer answer = peer.request("OPTIONS", "/shrink", {}, QByteArray(),
                                       {{"Origin", "https://example.com"},
                                        {"Access-Control-Request-Method", "POST"},
                                        {"Access-Control-Request-Headers", "authorization"}});
    QCOMPARE(answer.status, 403);
    QVERIFY(!answer.headers.contains("access-control-allow-origin"));
}

QTEST_GUILESS_MAIN(TestWebPages)
#include "tst_webpages.moc"

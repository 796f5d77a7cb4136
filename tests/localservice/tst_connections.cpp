// SPDX-FileCopyrightText: 2026 The Pixpress authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "codec/vipslibrary.h"
#include "localservice/localservice.h"

#include "peer.h"
#include "pictures.h"

#include <QElapsedTimer>
#include <QTest>

#include <memory>
#include <semaphore>

using namespace pixpress;
using namespace pixpress::testing;

class TestConnections : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase() { startVips(); }

    void connection_isKept();
    void answers_comeWithoutDelay();
    void wrongKey_isRefusedBeforeTheBodyIsRead_data();
    void wrongKey_isRefusedBeforeTheBodyIsRead();
    void expectation_isMetWithTheRightKey();
    void tooLongBody_isRefusedBeforeItHasArrived();
    void tooManyChunks_areRefusedWhileTheyArrive();
    void fetchWithABody_endsTheConnection_data();
    void fetchWithABody_endsTheConnection();
    void idleConnections_makeRoomForNewOnes();
    void garbage_harmsNobody_data();
    void garbage_harmsNobody();
    void stop_isPrompt_data();
    void stop_isPrompt();
    void stopAtOnce_isFine();
};

namespace {

constexpr qint64 maxBody = 10'000'000;

LocalServiceConfig config()
{
    LocalServiceConfig result;
    result.key = [] { return QByteArray("key"); };
    result.maxBody = maxBody;
    return result;
}

std::unique_ptr<LocalService> started(LocalServiceConfig with = config())
{
    auto service = std::make_unique<LocalService>(std::move(with));
    if (!service->start())
        qFatal("The service does not start.");
    return service;
}

QByteArray uploadHead(qint64 length, const QByteArray &key = "key", const Fields &more = {})
{
    return head("POST", "/shrink",
                Fields{{"Authorization", credentials(key)},
                       {"Content-Length", QByteArray::number(length)}} +
                    more);
}

} // namespace

void TestConnections::connection_isKept()
{
    const auto service = started();
    Peer peer(service->baseURL());
    for (int i = 0; i < 300; ++i)
        QCOMPARE(peer.request("POST", "/shrink").status, 400);
}

void TestConnections::answers_comeWithoutDelay()
{
    const auto service = started();
    Peer peer(service->baseURL());
    QCOMPARE(peer.request("GET", "/output/none").status, 404);
    QElapsedTimer timer;
    timer.start();
    for (int i = 0; i < 100; ++i)
        peer.request("GET", "/output/none");
    // A delayed acknowledgement alone would take 40 ms, each time.
    QVERIFY2(timer.elapsed() < 1000, qPrintable(QString::number(timer.elapsed())));
}

void TestConnections::wrongKey_isRefusedBeforeTheBodyIsRead_data()
{
    QTest::addColumn<bool>("expectsContinue");
    QTest::newRow("plain") << false;
    QTest::newRow("after an expectation") << true;
}

void TestConnections::wrongKey_isRefusedBeforeTheBodyIsRead()
{
    QFETCH(bool, expectsContinue);
    const auto service = started();
    Peer peer(service->baseURL());
    peer.send(uploadHead(1'000'000, "other",
                         expectsContinue ? Fields{{"Expect", "100-continue"}} : Fields{}));
    const Answer answer = peer.receive();
    QCOMPARE(answer.status, 401);
    QCOMPARE(answer.json().value(QLatin1String("error")).toString(), QLatin1String("Unauthorized"));
    QCOMPARE(answer.header("connection"), "close");
    QVERIFY(peer.isEndedByService());
}

void TestConnections::expectation_isMetWithTheRightKey()
{
    const auto service = started();
    Peer peer(service->baseURL());
    const QByteArray picture = saved(photo(50, 50), ImageFormat::webp);
    peer.send(uploadHead(picture.size(), "key", {{"Expect", "100-continue"}}));
    QCOMPARE(peer.receive().status, 100);
    peer.send(picture);
    QCOMPARE(peer.receive().status, 201);
}

void TestConnections::tooLongBody_isRefusedBeforeItHasArrived()
{
    const auto service = started();
    Peer silent(service->baseURL());
    silent.send(uploadHead(maxBody + 1));
    QCOMPARE(silent.receive().status, 413);
    QVERIFY(silent.isEndedByService());

    // The answer must also get through to somebody who is busy sending.
    Peer busy(service->baseURL());
    busy.send(uploadHead(maxBody + 1) + QByteArray(2'000'000, 'x'));
    QCOMPARE(busy.receive().status, 413);

    Peer fitting(service->baseURL());
    QCOMPARE(fitting.request("POST", "/shrink", QByteArray(maxBody, 'x')).status, 415);
}

void TestConnections::tooManyChunks_areRefusedWhileTheyArrive()
{
    const auto service = started();
    Peer peer(service->baseURL());
    peer.send(head("POST", "/shrink",
                   {{"Authorization", credentials("key")}, {"Transfer-Encoding", "chunked"}}));
    const QByteArray chunk = "f4240\r\n" + QByteArray(1'000'000, 'x') + "\r\n";
    for (int i = 0; i < 11; ++i)
        peer.send(chunk);
    QCOMPARE(peer.receive().status, 413);
    QVERIFY(peer.isEndedByService());
}

void TestConnections::fetchWithABody_endsTheConnection_data()
{
    QTest::addColumn<Fields>("fields");
    QTest::addColumn<QByteArray>("body");
    const QByteArray smuggled = "GET /output/x HTTP/1.1\r\n\r\n";
    QTest::newRow("of a stated length")
        << Fields{{"Content-Length", QByteArray::number(smuggled.size())}} << smuggled;
    QTest::newRow("in chunks") << Fields{{"Transfer-Encoding", "chunked"}}
                               << QByteArray("3\r\nabc\r\n0\r\n\r\n");
    QTest::newRow("that does not come") << Fields{{"Content-Length", "100"}} << QByteArray();
}

void TestConnections::fetchWithABody_endsTheConnection()
{
    QFETCH(Fields, fields);
    QFETCH(QByteArray, body);
    const auto service = started();
    Peer peer(service->baseURL());
    const QByteArray picture = saved(photo(50, 50), ImageFormat::webp);
    const QByteArray output =
        QUrl(QString::fromLatin1(peer.request("POST", "/shrink", picture).header("location")))
            .path()
            .toLatin1();
    peer.send(head("GET", output, Fields{{"Authorization", credentials("key")}} + fields) + body);
    const Answer answer = peer.receive();
    QCOMPARE(answer.status, 200);
    QCOMPARE(answer.header("connection"), "close");
    QVERIFY(!answer.body.isEmpty());
    QVERIFY(peer.isEndedByService()); // what was not read is no request
}

void TestConnections::idleConnections_makeRoomForNewOnes()
{
    const auto service = started();
    std::vector<std::unique_ptr<Peer>> idle;
    for (int i = 0; i < 100; ++i) {
        idle.push_back(std::make_unique<Peer>(service->baseURL()));
        QCOMPARE(idle.back()->request("POST", "/shrink").status, 400);
    }
    QVERIFY(idle.front()->isEndedByService());
    QCOMPARE(idle.back()->request("POST", "/shrink").status, 400);
}

void TestConnections::garbage_harmsNobody_data()
{
    QTest::addColumn<QByteArray>("sent");
    QTest::newRow("nothing") << QByteArray();
    QTest::newRow("no HTTP") << QByteArray("hello\r\n\r\n");
    QTest::newRow("zeros") << QByteArray(1000, '\0');
    QTest::newRow("endless line") << QByteArray(100'000, 'a');
    QTest::newRow("no length") << head("POST", "/shrink", {{"Authorization", credentials("key")}});
    QTest::newRow("length is no number") << head(
        "POST", "/shrink", {{"Authorization", credentials("key")}, {"Content-Length", "many"}});
    QTest::newRow("negative length") << uploadHead(-1);
    QTest::newRow("several parts") << head("POST", "/shrink",
                                           {{"Authorization", credentials("key")},
                                            {"Content-Type", "multipart/form-data; boundary=x"},
                                            {"Content-Length", "5"}}) +
                                          "--x--";
    QTest::newRow("half a body") << uploadHead(1000) + QByteArray(500, 'x');
    QTest::newRow("bad chunk") << head("POST", "/shrink",
                                       {{"Authorization", credentials("key")},
                                        {"Transfer-Encoding", "chunked"}}) +
                                      "zzz\r\n";
}

void TestConnections::garbage_harmsNobody()
{
    QFETCH(QByteArray, sent);
    const auto service = started();
    {
        Peer peer(service->baseURL());
        peer.send(sent);
    }
    Peer next(service->baseURL());
    QCOMPARE(next.request("POST", "/shrink").status, 400);
}

void TestConnections::stop_isPrompt_data()
{
    QTest::addColumn<QByteArray>("sent");
    QTest::addColumn<int>("works"); // How many of the requests are being worked on.

    const QByteArray png = saved(noise(1000, 800), ImageFormat::png);
    const QByteArray jpeg = saved(noise(1000, 800), ImageFormat::jpeg);
    const QByteArray webp = saved(noise(1000, 800), ImageFormat::webp);
    QTest::newRow("nothing asked") << QByteArray() << 0;
    QTest::newRow("half a head") << uploadHead(100).first(20) << 0;
    QTest::newRow("half a body") << uploadHead(100) + QByteArray(50, 'x') << 0;
    QTest::newRow("PNG") << uploadHead(png.size()) + png << 1;
    QTest::newRow("JPEG") << uploadHead(jpeg.size()) + jpeg << 1;
    QTest::newRow("WebP") << uploadHead(webp.size()) + webp << 1;
}

void TestConnections::stop_isPrompt()
{
    QFETCH(QByteArray, sent);
    QFETCH(int, works);
    std::counting_semaphore<> working(0);
    LocalServiceConfig with = config();
    with.fault = [&](const QByteArray &, const QByteArray &) -> std::optional<LocalServiceFault> {
        working.release();
        return std::nullopt;
    };
    auto service = started(std::move(with));
    // More than there are cores: some of them wait for their turn.
    std::vector<std::unique_ptr<Peer>> peers;
    for (int i = 0; i < 4; ++i) {
        peers.push_back(std::make_unique<Peer>(service->baseURL()));
        peers.back()->send(sent);
    }
    for (size_t i = 0; i < peers.size() * static_cast<size_t>(works); ++i)
        QVERIFY(working.try_acquire_for(std::chrono::seconds(30)));

    QElapsedTimer timer;
    timer.start();
    service.reset();
    QVERIFY2(timer.elapsed() < 5000, qPrintable(QString::number(timer.elapsed())));
    for (auto &peer : peers)
        QVERIFY(peer->isEndedByService());
}

void TestConnections::stopAtOnce_isFine()
{
    for (int i = 0; i < 50; ++i)
        started();
    const LocalService neverStarted(config());
}

QTEST_GUILESS_MAIN(TestConnections)
#include "tst_connections.moc"

// SPDX-FileCopyrightText: 2026 The Pixpress authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "localservice/meter.h"

#include "codec/vipslibrary.h"
#include "localservice/localservice.h"

#include "peer.h"
#include "pictures.h"

#include <QTest>

#include <future>
#include <latch>

using namespace pixpress;
using namespace pixpress::testing;

class TestMeter : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase() { startVips(); }

    void withoutALimit_everythingIsCounted();
    void reservations_takePlaces();
    void usedUp_isOnlyWhatWasCounted();
    void parallelRequests_doNotOvershootTheLimit_data();
    void parallelRequests_doNotOvershootTheLimit();
    void usedUpLimit_refusesBeforeTheBody();
    void failedRequest_givesItsPlaceBack_data();
    void failedRequest_givesItsPlaceBack();
};

namespace {

LocalServiceConfig configWithLimit(qint64 limit)
{
    LocalServiceConfig config;
    config.key = [] { return QByteArray("key"); };
    config.counting = true;
    config.monthlyLimit = limit;
    return config;
}

QByteArray pathOf(const Answer &upload)
{
    return QUrl(QString::fromLatin1(upload.header("location"))).path().toLatin1();
}

} // namespace

void TestMeter::withoutALimit_everythingIsCounted()
{
    Meter meter(5, std::nullopt);
    for (int i = 0; i < 100; ++i)
        meter.reserve()->count();
    QCOMPARE(meter.count(), 105);
    QVERIFY(!meter.isUsedUp());
}

void TestMeter::reservations_takePlaces()
{
    Meter meter(8, 10);
    std::optional<Meter::Reservation> first = meter.reserve();
    const std::optional<Meter::Reservation> second = meter.reserve();
    QVERIFY(first && second);
    QVERIFY(!meter.reserve());
    QCOMPARE(meter.count(), 8);
    first.reset();
    QVERIFY(meter.reserve());
    meter.reserve()->count();
    QCOMPARE(meter.count(), 9);
    QVERIFY(!meter.reserve());
}

void TestMeter::usedUp_isOnlyWhatWasCounted()
{
    Meter meter(0, 1);
    std::optional<Meter::Reservation> reservation = meter.reserve();
    QVERIFY(!meter.isUsedUp());
    reservation->count();
    QVERIFY(meter.isUsedUp());
    reservation.reset();
    QCOMPARE(meter.count(), 1);
    QVERIFY(!meter.reserve());
}

void TestMeter::parallelRequests_doNotOvershootTheLimit_data()
{
    QTest::addColumn<QByteArray>("options"); // Null for uploads.
    QTest::newRow("uploads") << QByteArray();
    QTest::newRow("options") << QByteArray(R"({"resize":{"method":"scale","width":50}})");
}

void TestMeter::parallelRequests_doNotOvershootTheLimit()
{
    QFETCH(QByteArray, options);
    constexpr int limit = 4;
    constexpr int requestCount = 8;
    const QByteArray picture = saved(photo(200, 150), ImageFormat::png);

    std::atomic_bool isHeld = false;
    std::latch arrived(requestCount);
    LocalServiceConfig config = configWithLimit(limit);
    config.fault = [&](const QByteArray &, const QByteArray &) -> std::optional<LocalServiceFault> {
        if (isHeld) // All are past the look at the limit that comes before the body.
            arrived.arrive_and_wait();
        return std::nullopt;
    };
    LocalService service(config);
    QVERIFY(service.start());
    const QByteArray path =
        options.isNull() ? "/shrink"
                         : pathOf(Peer(service.baseURL()).request("POST", "/shrink", picture));
    const auto before = service.compressionCount();

    isHeld = true;
    std::vector<std::future<int>> statuses;
    for (int i = 0; i < requestCount; ++i) {
        statuses.push_back(std::async(std::launch::async, [&] {
            return Peer(service.baseURL())
                .request("POST", path, options.isNull() ? picture : options)
                .status;
        }));
    }
    int compressed = 0;
    int refused = 0;
    for (auto &status : statuses) {
        const int value = status.get();
        compressed += value == (options.isNull() ? 201 : 200) ? 1 : 0;
        refused += value == 429 ? 1 : 0;
    }
    QCOMPARE(compressed, limit - before);
    QCOMPARE(refused, requestCount - compressed);
    QCOMPARE(service.compressionCount(), limit);
}

void TestMeter::usedUpLimit_refusesBeforeTheBody()
{
    LocalService service(configWithLimit(0));
    QVERIFY(service.start());
    Peer peer(service.baseURL());
    peer.send(head("POST", "/shrink",
                   {{"Authorization", credentials("key")}, {"Content-Length", "1000000"}}));
    const Answer answer = peer.receive();
    QCOMPARE(answer.status, 429);
    QCOMPARE(answer.header("compression-count"), "0");
    QVERIFY(peer.isEndedByService());
}

void TestMeter::failedRequest_givesItsPlaceBack_data()
{
    QTest::addColumn<QByteArray>("picture");
    QTest::newRow("no picture") << QByteArray("no picture");
    const QByteArray whole = saved(noise(200, 150), ImageFormat::png);
    QTest::newRow("damage far inside") << whole.first(whole.size() * 9 / 10);
}

void TestMeter::failedRequest_givesItsPlaceBack()
{
    QFETCH(QByteArray, picture);
    LocalService service(configWithLimit(1));
    QVERIFY(service.start());
    Peer peer(service.baseURL());
    for (int i = 0; i < 3; ++i) {
        const Answer answer = peer.request("POST", "/shrink", picture);
        QCOMPARE(answer.status, 415);
        QCOMPARE(answer.header("compression-count"), "0");
    }
    const QByteArray good = saved(photo(50, 50), ImageFormat::webp);
    QCOMPARE(peer.request("POST", "/shrink", good).status, 201);
    QCOMPARE(peer.request("POST", "/shrink", good).status, 429);
}

QTEST_GUILESS_MAIN(TestMeter)
#include "tst_meter.moc"

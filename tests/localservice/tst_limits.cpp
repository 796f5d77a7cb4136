// SPDX-FileCopyrightText: 2026 The Pixpress authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "localservice/connections.h"
#include "localservice/listener.h"

#include "peer.h"

#include <QTcpSocket>
#include <QTest>

#include <memory>
#include <semaphore>
#include <thread>

using namespace pixpress;
using namespace pixpress::testing;
using namespace std::chrono_literals;

/// What one peer may take of the server.
class TestLimits : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void longHeads_areEnded_data();
    void longHeads_areEnded();
    void headUpToTheLimit_isTaken();
    void slowHead_isEnded();
    void slowBody_isEnded();
    void silence_isEnded_data();
    void silence_isEnded();
    void peerThatDoesNotRead_isEnded();
    void tooManyConnections_wait();
    void unfinishedHead_isEndedWhenOthersWait_data();
    void unfinishedHead_isEndedWhenOthersWait();
    void requestThatHasArrived_isServedHoweverLate();
    void headsUnfinishedInLine_areEndedTogether();
    void waitingConnections_areServedInTheirTurn();
};

namespace {

constexpr std::chrono::milliseconds shortTime{150};

/// Answers the length of what it is sent, and 10 MB at /much.
class Server
{
public:
    explicit Server(const ConnectionLimits &limits = {}) : m_server(limits)
    {
        m_server.Get("/much", [](const auto &, auto &response) {
            response.set_content(std::string(10'000'000, 'x'), "text/plain");
        });
        m_server.Get("/wait", [this](const auto &, auto &) {
            m_entered.release();
            m_released.acquire();
        });
        m_server.Get("/", [](const auto &, auto &) {});
        m_server.Post("/", [](const auto &request, auto &response) {
            response.set_content(std::to_string(request.body.size()), "text/plain");
        });
        auto listener = Listener::open();
        m_base = listener->address();
        m_thread = std::thread([this, socket = listener->release()] { m_server.run(socket); });
    }
    ~Server()
    {
        m_released.release(100);
        m_server.stop();
        m_thread.join();
    }

    QUrl base() const { return m_base; }
    bool waitUntilEntered() { return m_entered.try_acquire_for(30s); }
    void release() { m_released.release(); }

private:
    ConnectionServer m_server;
    std::counting_semaphore<> m_entered{0};
    std::counting_semaphore<> m_released{0};
    QUrl m_base;
    std::thread m_thread;
};

/// Sends `byte` again and again, and returns whether the connection was ended meanwhile.
bool isEndedWhileDripping(const Server &server, const QByteArray &start, const QByteArray &byte)
{
    QTcpSocket socket;
    socket.connectToHost(server.base().host(), static_cast<quint16>(server.base().port()));
    if (!socket.waitForConnected())
        return false;
    socket.write(start);
    for (int i = 0; i < 1000; ++i) {
        socket.write(byte);
        socket.flush();
        if (socket.waitForDisconnected(static_cast<int>(shortTime.count()) / 10) ||
            socket.state() != QAbstractSocket::ConnectedState)
            return true;
    }
    return false;
}

} // namespace

void TestLimits::longHeads_areEnded_data()
{
    QTest::addColumn<QByteArray>("sent");
    QTest::newRow("first line") << "GET /" + QByteArray(20'000, 'a');
    QTest::newRow("one field") << "GET / HTTP/1.1\r\nA: " + QByteArray(20'000, 'a');
    QTest::newRow("many fields") << "GET / HTTP/1.1\r\n" + QByteArray("A: b\r\n").repeated(4000);
    QTest::newRow("its end comes too late")
        << "GET / HTTP/1.1\r\n" + QByteArray("A: b\r\n").repeated(4000) + "\r\n";
}

void TestLimits::longHeads_areEnded()
{
    QFETCH(QByteArray, sent);
    const Server server({.headBytes = 10'000});
    Peer peer(server.base());
    peer.send(sent);
    QVERIFY(peer.receive().status != 200);
    QVERIFY(peer.isEndedByService());
    QCOMPARE(Peer(server.base()).request("GET", "/").status, 200);
}

void TestLimits::headUpToTheLimit_isTaken()
{
    const QByteArray whole = "GET / HTTP/1.1\r\n" + QByteArray("A: b\r\n").repeated(30) + "\r\n";
    const Server server({.headBytes = static_cast<size_t>(whole.size())});
    Peer peer(server.base());
    for (int i = 0; i < 3; ++i) { // Each is measured by itself.
        peer.send(whole);
        QCOMPARE(peer.receive().status, 200);
    }
    // What follows the head does not count.
    QCOMPARE(peer.request("POST", "/", QByteArray(100'000, 'x')).body, "100000");
    peer.send(QByteArray(whole).insert(whole.size() - 4, 'b'));
    QVERIFY(peer.isEndedByService());
}

void TestLimits::slowHead_isEnded()
{
    const Server server({.headTime = shortTime});
    QVERIFY(isEndedWhileDripping(server, "GET / HTTP/1.1\r\nA: ", "a"));
}

void TestLimits::slowBody_isEnded()
{
    const Server server({.bodyTime = shortTime});
    QVERIFY(isEndedWhileDripping(server, head("POST", "/", {{"Content-Length", "1000000"}}), "x"));
}

void TestLimits::silence_isEnded_data()
{
    QTest::addColumn<QByteArray>("sent");
    QTest::newRow("before the first request") << QByteArray();
    QTest::newRow("in a head") << QByteArray("GET / HT");
    QTest::newRow("in a body") << head("POST", "/", {{"Content-Length", "10"}}) + "xxx";
    QTest::newRow("after an answer") << head("GET", "/", {});
}

void TestLimits::silence_isEnded()
{
    QFETCH(QByteArray, sent);
    const Server server({.firstByte = sent.isEmpty() ? shortTime : std::chrono::milliseconds(60s),
                         .silence = sent.isEmpty() ? std::chrono::milliseconds(60s) : shortTime});
    Peer peer(server.base());
    peer.send(sent);
    QVERIFY(peer.isEndedByService());
}

void TestLimits::peerThatDoesNotRead_isEnded()
{
    // A single thread: were it held for ever by the one, the other would not be answered.
    const Server server({.threads = 1, .silence = shortTime});
    QTcpSocket deaf;
    deaf.setReadBufferSize(1);
    deaf.connectToHost(server.base().host(), static_cast<quint16>(server.base().port()));
    QVERIFY(deaf.waitForConnected());
    deaf.write(head("GET", "/much", {}));
    QVERIFY(deaf.waitForBytesWritten());
    QCOMPARE(Peer(server.base()).request("GET", "/").status, 200);
}

void TestLimits::tooManyConnections_wait()
{
    Server server({.threads = 1, .waiting = 2});
    Peer busy(server.base());
    busy.send(head("GET", "/wait", {}));
    QVERIFY(server.waitUntilEntered());
    std::vector<std::unique_ptr<Peer>> others;
    for (int i = 0; i < 5; ++i) {
        others.push_back(std::make_unique<Peer>(server.base()));
        others.back()->send(head("GET", "/", {{"Connection", "close"}}));
    }
    server.release();
    QCOMPARE(busy.receive().status, 200);
    for (const auto &other : others)
        QCOMPARE(other->receive().status, 200);
}

void TestLimits::unfinishedHead_isEndedWhenOthersWait_data()
{
    QTest::addColumn<QByteArray>("sent");
    QTest::newRow("nothing") << QByteArray();
    QTest::newRow("half a line") << QByteArray("GET /");
    QTest::newRow("half a head") << QByteArray("GET / HTTP/1.1\r\nA: b\r\n");
    QTest::newRow("half of a second head") << head("GET", "/", {}) + "GET /";
}

void TestLimits::unfinishedHead_isEndedWhenOthersWait()
{
    QFETCH(QByteArray, sent);
    const Server server({.threads = 1, .firstByte = 600s, .headTime = 600s, .patience = shortTime});
    Peer slow(server.base());
    slow.send(sent);
    if (sent.startsWith("GET / HTTP/1.1\r\nHost"))
        QCOMPARE(slow.receive().status, 200);
    QCOMPARE(Peer(server.base()).request("GET", "/").status, 200);
    QVERIFY(slow.isEndedByService());
}

void TestLimits::requestThatHasArrived_isServedHoweverLate()
{
    Server server({.threads = 1, .patience = 0ms});
    Peer busy(server.base());
    busy.send(head("GET", "/wait", {}));
    QVERIFY(server.waitUntilEntered());
    Peer first(server.base());
    first.send(head("GET", "/", {}));
    Peer second(server.base());
    second.send(head("GET", "/", {}));
    server.release();
    QCOMPARE(busy.receive().status, 200);
    QCOMPARE(first.receive().status, 200);
    QCOMPARE(second.receive().status, 200);
}

void TestLimits::headsUnfinishedInLine_areEndedTogether()
{
    // One after another they would keep the last longer than it waits.
    Server server({.threads = 1, .firstByte = 600s, .headTime = 600s, .patience = 2s});
    Peer busy(server.base());
    busy.send(head("GET", "/wait", {}));
    QVERIFY(server.waitUntilEntered());
    std::vector<std::unique_ptr<Peer>> slow;
    for (int i = 0; i < 40; ++i) {
        slow.push_back(std::make_unique<Peer>(server.base()));
        slow.back()->send(i % 2 == 0 ? "" : "GET / HT");
    }
    Peer last(server.base());
    last.send(head("GET", "/", {}));
    server.release();
    QCOMPARE(busy.receive().status, 200);
    QCOMPARE(last.receive().status, 200);
}

void TestLimits::waitingConnections_areServedInTheirTurn()
{
    Server server({.threads = 2});
    std::vector<std::unique_ptr<Peer>> peers;
    for (int i = 0; i < 6; ++i) {
        peers.push_back(std::make_unique<Peer>(server.base()));
        peers.back()->send(head("GET", "/wait", {}));
    }
    for (size_t i = 0; i < peers.size(); ++i) {
        QVERIFY(server.waitUntilEntered());
        server.release();
    }
    for (auto &peer : peers)
        QCOMPARE(peer->receive().status, 200);
}

QTEST_GUILESS_MAIN(TestLimits)
#include "tst_limits.moc"

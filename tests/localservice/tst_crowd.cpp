// SPDX-FileCopyrightText: 2026 The Pixpress authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "codec/vipslibrary.h"
#include "localservice/localservice.h"

#include "peer.h"
#include "pictures.h"

#include <QTest>

#include <arpa/inet.h>
#include <atomic>
#include <poll.h>
#include <thread>
#include <unistd.h>
#include <vector>

using namespace pixpress;
using namespace pixpress::testing;

namespace {

/// Hundreds of connections without the key, each of which sends one piece again and again, slowly
/// or as fast as it is taken, and comes back when it is ended.
class Crowd
{
public:
    Crowd(const QUrl &base, const QByteArray &first, const QByteArray &more)
        : m_port(static_cast<uint16_t>(base.port())), m_first(first), m_more(more)
    {
        for (int i = 0; i < size; ++i)
            m_sockets.push_back(connect());
        m_thread = std::thread([this] { run(); });
    }
    ~Crowd()
    {
        m_ends = true;
        m_thread.join();
        for (const pollfd &socket : m_sockets)
            ::close(socket.fd);
    }

    int ended() const { return m_ended; }

private:
    static constexpr int size = 300;

    pollfd connect() const
    {
        const int socket = ::socket(AF_INET, SOCK_STREAM | SOCK_NONBLOCK | SOCK_CLOEXEC, 0);
        sockaddr_in address{};
        address.sin_family = AF_INET;
        address.sin_port = htons(m_port);
        address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
        ::connect(socket, reinterpret_cast<const sockaddr *>(&address), sizeof address);
        return {socket, POLLIN | POLLOUT, 0};
    }

    void run()
    {
        std::vector<bool> begun(size);
        while (!m_ends) {
            ::poll(m_sockets.data(), size, 10);
            for (size_t i = 0; i < size; ++i) {
                pollfd &socket = m_sockets[i];
                std::array<char, 4096> buffer{};
                const bool isOver = (socket.revents & (POLLERR | POLLHUP)) != 0 ||
                                    ((socket.revents & POLLIN) != 0 &&
                                     ::recv(socket.fd, buffer.data(), buffer.size(), 0) <= 0);
                if (isOver) {
                    ++m_ended;
                    ::close(socket.fd);
                    socket = connect();
                    begun[i] = false;
                } else if ((socket.revents & POLLOUT) != 0) {
                    const QByteArray &piece = begun[i] ? m_more : m_first;
                    begun[i] = true;
                    if (!piece.isEmpty())
                        ::send(socket.fd, piece.constData(), static_cast<size_t>(piece.size()),
                               MSG_NOSIGNAL);
                    if (m_more.isEmpty())
                        socket.events = POLLIN;
                }
            }
        }
    }

    const uint16_t m_port;
    const QByteArray m_first;
    const QByteArray m_more;
    std::vector<pollfd> m_sockets;
    std::atomic<bool> m_ends = false;
    std::atomic<int> m_ended = 0;
    std::thread m_thread;
};

} // namespace

class TestCrowd : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase() { startVips(); }
    void owner_isServed_data();
    void owner_isServed();
};

void TestCrowd::owner_isServed_data()
{
    QTest::addColumn<QByteArray>("first");
    QTest::addColumn<QByteArray>("more");
    const QByteArray upload = head("POST", "/shrink", {{"Content-Length", "100000000"}});
    QTest::newRow("silent") << QByteArray() << QByteArray();
    QTest::newRow("half a head") << QByteArray("POST /shrink HTTP/1.1\r\nHo") << QByteArray();
    QTest::newRow("endless head") << QByteArray("POST /shrink HTTP/1.1\r\n")
                                  << QByteArray("A: b\r\n");
    QTest::newRow("endless line") << QByteArray("POST /") << QByteArray(4096, 'x');
    QTest::newRow("endless upload without a key") << upload << QByteArray(4096, 'x');
    QTest::newRow("endless upload with a wrong key")
        << head("POST", "/shrink",
                {{"Authorization", credentials("yek")}, {"Transfer-Encoding", "chunked"}})
        << QByteArray("5\r\nxxxxx\r\n");
    QTest::newRow("requests without a key")
        << head("GET", "/output/1", {}) << head("GET", "/output/1", {});
}

void TestCrowd::owner_isServed()
{
    QFETCH(const QByteArray, first);
    QFETCH(const QByteArray, more);
    LocalServiceConfig config;
    config.key = [] { return QByteArray("key"); };
    LocalService service(config);
    QVERIFY(service.start());
    const QByteArray picture = saved(noise(50, 50), ImageFormat::png);

    Peer before(service.baseURL());
    QCOMPARE(before.request("POST", "/shrink", picture).status, 201);
    const Crowd crowd(service.baseURL(), first, more);
    QTRY_VERIFY_WITH_TIMEOUT(crowd.ended() > 0, 60'000); // there are more than it can serve
    // Each on a connection of its own: none is kept while others wait.
    const auto request = [&](const QByteArray &method, const QByteArray &path) {
        return Peer(service.baseURL()).request(method, path, method == "GET" ? "" : picture);
    };
    for (int i = 0; i < 3; ++i) {
        const Answer uploaded = request("POST", "/shrink");
        QCOMPARE(uploaded.status, 201);
        const QUrl location = QUrl::fromEncoded(uploaded.header("location"));
        const Answer fetched = request("GET", location.path().toLatin1());
        QCOMPARE(fetched.status, 200);
        QVERIFY(!fetched.body.isEmpty());
    }
}

QTEST_GUILESS_MAIN(TestCrowd)
#include "tst_crowd.moc"

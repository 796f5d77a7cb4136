// SPDX-FileCopyrightText: 2026 The Pixpress authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "service/http.h"

#include "support/transport.h"

#include <QHostAddress>
#include <QTcpServer>
#include <QTest>

#include <array>
#include <atomic>
#include <fcntl.h>
#include <poll.h>
#include <semaphore>
#include <sys/socket.h>
#include <sys/syscall.h>
#include <thread>
#include <unistd.h>

using namespace pixpress;
using namespace pixpress::test;
using namespace Qt::StringLiterals;

namespace {

// A server that has read a part of an upload, and refuses the rest when it is told to.
std::atomic<bool> g_isReady = false;
std::binary_semaphore g_go{0};
std::binary_semaphore g_gone{0};

void refuse(int listener)
{
    const int socket = ::accept(listener, nullptr, nullptr);
    std::array<char, 100'000> buffer{};
    for (ssize_t got = 0, all = 0; got >= 0 && all < 1'000'000; all += got)
        got = ::recv(socket, buffer.data(), buffer.size(), 0);
    g_isReady = true;
    g_go.acquire();
    constexpr std::string_view answer =
        "HTTP/1.1 413 Too Large\r\nContent-Length: 2\r\nConnection: close\r\n\r\nno";
    ::send(socket, answer.data(), answer.size(), MSG_NOSIGNAL);
    // With unread data in the kernel: the peer is reset.
    const linger abort{.l_onoff = 1, .l_linger = 0};
    ::setsockopt(socket, SOL_SOCKET, SO_LINGER, &abort, sizeof abort);
    ::close(socket);
    g_gone.release();
}

} // namespace

/// Stands before the C library's: the answer arrives, and the connection ends, right after libcurl
/// has asked what is to be done, when it takes it for granted that it can send.
extern "C" int poll(pollfd *sockets, nfds_t count, int timeout)
{
    const long found = ::syscall(SYS_poll, sockets, count, timeout);
    bool canSend = false;
    for (nfds_t i = 0; i < count; ++i)
        canSend = canSend || (sockets[i].revents & (POLLIN | POLLOUT)) == POLLOUT;
    if (canSend && timeout == 0 && g_isReady.exchange(false)) {
        g_go.release();
        g_gone.acquire();
    }
    return static_cast<int>(found);
}

class EarlyAnswerTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void answerThatArrivesBetweenLookingAndSending_isReported_data();
    void answerThatArrivesBetweenLookingAndSending_isReported();
};

void EarlyAnswerTest::answerThatArrivesBetweenLookingAndSending_isReported_data()
{
    QTest::addColumn<QHostAddress>("address");
    QTest::newRow("IPv4") << QHostAddress(QHostAddress::LocalHost);
    QTest::newRow("IPv6") << QHostAddress(QHostAddress::LocalHostIPv6);
}

void EarlyAnswerTest::answerThatArrivesBetweenLookingAndSending_isReported()
{
    QFETCH(const QHostAddress, address);
    for (int i = 0; i < 3; ++i) {
        QTcpServer listener;
        QVERIFY2(listener.listen(address), qPrintable(listener.errorString()));
        listener.pauseAccepting(); // the thread does, and waits for it
        const int socket = static_cast<int>(listener.socketDescriptor());
        QVERIFY(fcntl(socket, F_SETFL, 0) == 0);
        std::thread server(refuse, socket);

        HttpClient client({});
        QUrl url(u"http:/shrink"_s);
        url.setHost(address.toString());
        url.setPort(listener.serverPort());
        const HttpResult result = send(client, post(url, QByteArray(30'000'000, 'x')));
        g_isReady = false;
        g_go.release(); // should the moment not have come
        server.join();
        while (g_go.try_acquire() || g_gone.try_acquire()) {
        }
        QCOMPARE(outcome(result), u"413"_s);
        QCOMPARE(result->body, "no");
    }
}

QTEST_GUILESS_MAIN(EarlyAnswerTest)
#include "tst_earlyanswer.moc"

// SPDX-FileCopyrightText: 2026 The Pixpress authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "service/http.h"

#include "support/certificates.h"
#include "support/transport.h"

#include <QHostAddress>
#include <QSslSocket>
#include <QTcpServer>
#include <QTest>

#include <atomic>
#include <fcntl.h>
#include <semaphore>
#include <sys/socket.h>
#include <sys/syscall.h>
#include <thread>
#include <unistd.h>

using namespace pixpress;
using namespace pixpress::test;
using namespace Qt::StringLiterals;

namespace {

// A server that has read a part of an upload, and refuses the rest on command.
std::atomic<bool> g_isReady = false;
std::binary_semaphore g_go{0};
std::binary_semaphore g_gone{0};

void refuse(int listener, const std::optional<QSslConfiguration> &tls)
{
    QSslSocket socket;
    socket.setSocketDescriptor(::accept4(listener, nullptr, nullptr, SOCK_CLOEXEC));
    socket.setReadBufferSize(100'000);
    if (tls) {
        socket.setSslConfiguration(*tls);
        socket.startServerEncryption();
        socket.waitForEncrypted();
    }
    qsizetype received = 0;
    while (received < 1'000'000 && (socket.bytesAvailable() > 0 || socket.waitForReadyRead()))
        received += socket.readAll().size();
    g_isReady = true;
    g_go.acquire();
    socket.write("HTTP/1.1 413 Too Large\r\nContent-Length: 2\r\nConnection: close\r\n\r\nno");
    socket.flush();
    // With unread data in the kernel: the peer is reset.
    const linger abort{.l_onoff = 1, .l_linger = 0};
    ::setsockopt(static_cast<int>(socket.socketDescriptor()), SOL_SOCKET, SO_LINGER, &abort,
                 sizeof abort);
    socket.abort();
    g_gone.release();
}

bool isTcp(int socket)
{
    int domain = 0;
    socklen_t length = sizeof domain;
    return ::getsockopt(socket, SOL_SOCKET, SO_DOMAIN, &domain, &length) == 0 && domain != AF_UNIX;
}

} // namespace

/// Comes before the C library's: the answer arrives, and the connection ends, right before a piece
/// of the upload is sent.
extern "C" ssize_t send(int socket, const void *data, size_t size, int flags)
{
    if (size > 10'000 && isTcp(socket) && g_isReady.exchange(false)) {
        g_go.release();
        g_gone.acquire();
    }
    return ::syscall(SYS_sendto, socket, data, size, flags, nullptr, 0);
}

class EarlyAnswerTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void answerThatArrivesRightBeforeSending_isReported_data();
    void answerThatArrivesRightBeforeSending_isReported();
};

void EarlyAnswerTest::answerThatArrivesRightBeforeSending_isReported_data()
{
    QTest::addColumn<QHostAddress>("address");
    QTest::addColumn<bool>("secure");
    QTest::newRow("IPv4") << QHostAddress(QHostAddress::LocalHost) << false;
    QTest::newRow("IPv6") << QHostAddress(QHostAddress::LocalHostIPv6) << false;
    QTest::newRow("TLS") << QHostAddress(QHostAddress::LocalHost) << true;
}

void EarlyAnswerTest::answerThatArrivesRightBeforeSending_isReported()
{
    QFETCH(const QHostAddress, address);
    QFETCH(const bool, secure);
    Certificates certificates;
    certificates.make(u"server"_s, "IP:127.0.0.1");
    const auto tls = secure ? std::optional(certificates.server(u"server"_s)) : std::nullopt;
    for (int i = 0; i < 3; ++i) {
        QTcpServer listener;
        QVERIFY2(listener.listen(address), qPrintable(listener.errorString()));
        listener.pauseAccepting(); // the thread does, and waits for it
        const int socket = static_cast<int>(listener.socketDescriptor());
        QVERIFY(fcntl(socket, F_SETFL, 0) == 0);
        std::thread server(refuse, socket, tls);

        HttpClient client({.caBundle = certificates.authority()});
        QUrl url(secure ? u"https:/shrink"_s : u"http:/shrink"_s);
        url.setHost(address.toString());
        url.setPort(listener.serverPort());
        const HttpResult result = test::send(client, post(url, QByteArray(30'000'000, 'x')));
        const bool hasCome = !g_isReady.exchange(false);
        g_go.release(); // should the moment not have come
        server.join();
        while (g_go.try_acquire() || g_gone.try_acquire()) {
        }
        QCOMPARE(outcome(result), u"413"_s);
        QCOMPARE(result->body, "no");
        QVERIFY(hasCome);
    }
}

QTEST_GUILESS_MAIN(EarlyAnswerTest)
#include "tst_earlyanswer.moc"

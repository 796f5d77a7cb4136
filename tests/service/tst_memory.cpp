// SPDX-FileCopyrightText: 2026 The Pixpress authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "service/http.h"

#include "support/child.h"
#include "support/scriptedserver.h"
#include "support/transport.h"

#include <QFile>
#include <QTcpSocket>
#include <QTest>

using namespace pixpress;
using namespace pixpress::test;
using namespace Qt::StringLiterals;

namespace {

/// Lets this process have so much more address space than it has now.
bool limitMemory(rlim_t more)
{
    QFile statm(u"/proc/self/statm"_s);
    if (!statm.open(QIODevice::ReadOnly))
        return false;
    const rlim_t pages = statm.readAll().split(' ').value(0).toULongLong();
    const rlim_t bytes = pages * static_cast<rlim_t>(sysconf(_SC_PAGESIZE)) + more;
    const rlimit limit{bytes, bytes};
    return setrlimit(RLIMIT_AS, &limit) == 0;
}

} // namespace

class MemoryTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void answerBeyondTheMemory_hasItsSentence_data();
    void answerBeyondTheMemory_hasItsSentence();
};

void MemoryTest::answerBeyondTheMemory_hasItsSentence_data()
{
    QTest::addColumn<QByteArray>("head");
    QTest::newRow("announced") << QByteArray("Content-Length: 500000000\r\n\r\n");
    QTest::newRow("endless") << QByteArray("\r\n");
}

void MemoryTest::answerBeyondTheMemory_hasItsSentence()
{
#if defined(__SANITIZE_ADDRESS__) || defined(__SANITIZE_THREAD__)
    QSKIP("Sanitizers end a program that asks for too much memory.");
#endif
    QFETCH(const QByteArray, head);
    const auto result = inChild([&] {
        ScriptedServer server([](const Request &) { return Answer{.body = "next"}; });
        HttpClient client({});
        // The threads and buffers that the second request uses too are there before the limit.
        if (const QString first = outcome(send(client, get(server.url()))); first != u"200"_s)
            return first;
        server.setRaw([&](QTcpSocket &socket, const QByteArray &) {
            socket.write("HTTP/1.1 200 OK\r\n" + head);
            connect(&socket, &QTcpSocket::bytesWritten, &socket,
                    [&socket] { socket.write(QByteArray(100'000, 'x')); });
        });
        if (!limitMemory(200 << 20))
            return u"no limit"_s;
        const QString second = outcome(send(client, get(server.url())));
        server.setRaw({});
        return second + u' ' + outcome(send(client, get(server.url())));
    });
    QCOMPARE(result.signal, 0);
    QCOMPARE(result.answer, u"There is not enough memory for this request. 200"_s);
}

QTEST_GUILESS_MAIN(MemoryTest)
#include "tst_memory.moc"

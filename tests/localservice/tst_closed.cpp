// SPDX-FileCopyrightText: 2026 The Pixpress authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "codec/vipslibrary.h"
#include "localservice/localservice.h"

#include "peer.h"
#include "support/faults/faults.h"

#include <QFile>
#include <QNetworkInterface>
#include <QTemporaryDir>
#include <QTest>

using namespace pixpress;
using namespace pixpress::testing;
using namespace Qt::StringLiterals;
namespace faults = pixpress::test::faults;

namespace {

QStringList g_opened;

void note(const char *path)
{
    g_opened.append(QFile::decodeName(path));
}

} // namespace

/// What the service does not open: to other machines, and of the disk.
class TestClosed : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void cleanup() { faults::observeOpening(nullptr); }
    void onlyLoopback_isListenedOn();
    void otherAddresses_areRefused();
    void paths_reachNoFile_data();
    void paths_reachNoFile();

private:
    std::unique_ptr<LocalService> m_service;
};

void TestClosed::init()
{
    startVips();
    LocalServiceConfig config;
    config.key = [] { return QByteArray("key"); };
    m_service = std::make_unique<LocalService>(config);
    QVERIFY(m_service->start());
}

void TestClosed::onlyLoopback_isListenedOn()
{
    const QByteArray port =
        ':' + QByteArray::number(m_service->baseURL().port(), 16).rightJustified(4, '0').toUpper();
    QByteArrayList listening;
    for (const QString &table : {u"/proc/net/tcp"_s, u"/proc/net/tcp6"_s}) {
        QFile file(table);
        if (!file.open(QIODevice::ReadOnly))
            continue;
        for (const QByteArray &line : file.readAll().split('\n')) {
            const QByteArrayList columns = line.simplified().split(' ');
            if (columns.value(1).endsWith(port) && columns.value(3) == "0A")
                listening.append(columns.value(1));
        }
    }
    QCOMPARE(listening, QByteArrayList{"0100007F" + port});
}

void TestClosed::otherAddresses_areRefused()
{
    int others = 0;
    for (const QHostAddress &address : QNetworkInterface::allAddresses()) {
        if (address == QHostAddress(QHostAddress::LocalHost))
            continue;
        ++others;
        QTcpSocket socket;
        socket.connectToHost(address, static_cast<quint16>(m_service->baseURL().port()));
        QVERIFY2(!socket.waitForConnected(30'000), qPrintable(address.toString()));
    }
    if (others == 0)
        QSKIP("This machine has no other address.");
}

void TestClosed::paths_reachNoFile_data()
{
    QTest::addColumn<QByteArray>("path"); // FOLDER/secret is a file
    for (const char *path : {"FOLDER/secret",
                             "/FOLDER/secret",
                             "/output/FOLDER/secret",
                             "/output//FOLDER/secret",
                             "/output/../FOLDER/secret",
                             "/output/../../../../../../../..FOLDER/secret",
                             "/output/%2e%2e%2f%2e%2e%2f%2e%2e%2f%2e%2eFOLDER/secret",
                             "/output/..%2f..%2f..%2f..%2f..%2f..FOLDER/secret",
                             "/output/..%5c..%5cFOLDER/secret",
                             "/output/%252e%252e%252fFOLDER/secret",
                             "/../../../../..FOLDER/secret",
                             "/output/",
                             "/output/.",
                             "/output/..",
                             "/output/%00",
                             "/output/x%00FOLDER/secret",
                             "FOLDER/secret%00.png",
                             "/output/file://FOLDER/secret",
                             "file://FOLDER/secret",
                             "/output/x?file=FOLDER/secret",
                             "/shrink/../FOLDER/secret",
                             "/shrink/FOLDER/secret",
                             "/output/%c0%ae%c0%ae/FOLDER/secret",
                             "/",
                             "//",
                             "/output/x#FOLDER/secret"})
        QTest::newRow(path) << QByteArray(path);
}

void TestClosed::paths_reachNoFile()
{
    QFETCH(QByteArray, path);
    const QTemporaryDir folder;
    QFile secret(folder.filePath(u"secret"_s));
    QVERIFY(secret.open(QIODevice::WriteOnly) && secret.write("what nobody may see") > 0);
    secret.close();
    path.replace("FOLDER", folder.path().toLatin1());

    g_opened.clear();
    faults::observeOpening(note);
    for (const auto *method : {"GET", "POST", "PUT", "DELETE", "OPTIONS"}) {
        Peer peer(m_service->baseURL());
        const QByteArray body = qstrcmp(method, "POST") == 0 ? "{}" : "";
        const Answer answer = peer.request(method, path, body);
        const QByteArray seen = method + QByteArray(": ") + QByteArray::number(answer.status);
        QVERIFY2(answer.status == 404 || answer.status == 405 || answer.status == 400, seen);
        QVERIFY(!answer.body.contains("what nobody may see"));
        QVERIFY(!answer.body.contains(folder.path().toLatin1()));
    }
    faults::observeOpening(nullptr);
    QCOMPARE(g_opened, QStringList());
}

QTEST_GUILESS_MAIN(TestClosed)
#include "tst_closed.moc"

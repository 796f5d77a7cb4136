// SPDX-FileCopyrightText: 2026 The Pixpress authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "service/http.h"

#include "support/certificates.h"
#include "support/scriptedserver.h"
#include "support/transport.h"

#include <QDBusConnection>
#include <QProcess>
#include <QTcpServer>
#include <QTcpSocket>
#include <QTest>

using namespace pixpress;
using namespace pixpress::test;
using namespace Qt::StringLiterals;

namespace {

const QByteArray key = "Basic c2VjcmV0";
const QByteArray proxyCredentials = "Basic " + QByteArray("alice:sesame").toBase64();

} // namespace

/// A proxy server that tunnels every CONNECT to one server, whatever host it names, or refuses it.
class Proxy : public QTcpServer
{
public:
    explicit Proxy(const QUrl &target)
    {
        connect(this, &QTcpServer::newConnection, this, [this, target] {
            QTcpSocket *const client = nextPendingConnection();
            connect(client, &QTcpSocket::readyRead, client,
                    [=, this, tunnel = static_cast<QTcpSocket *>(nullptr)]() mutable {
                        if (tunnel) {
                            const QByteArray piece = client->readAll();
                            tunnelled += piece;
                            tunnel->write(piece);
                            return;
                        }
                        asked += client->readAll();
                        if (!asked.endsWith("\r\n\r\n"))
                            return;
                        client->write("HTTP/1.1 " + QByteArray::number(status) + " Said\r\n\r\n");
                        if (status != 200) {
                            client->disconnectFromHost();
                            return;
                        }
                        tunnel = new QTcpSocket(client);
                        tunnel->connectToHost(target.host(), static_cast<quint16>(target.port()));
                        connect(tunnel, &QTcpSocket::readyRead, client,
                                [=] { client->write(tunnel->readAll()); });
                    });
        });
        if (!listen(QHostAddress::LocalHost))
            qFatal("The proxy cannot listen.");
    }

    QString name() const { return u"127.0.0.1:%1"_s.arg(serverPort()); }

    int status = 200;
    QByteArray asked;
    QByteArray tunnelled;
};

/// Stands in for the desktop's portal.
class Portal : public QObject
{
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "org.freedesktop.portal.ProxyResolver")

public Q_SLOTS:
    QStringList Lookup(const QString &address)
    {
        lookups.append(address);
        return proposed;
    }

public:
    QStringList proposed;
    QStringList lookups;
};

/// Which proxy server is used, what it sees, and what a person reads when it fails.
class ProxiesTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void cleanupTestCase();
    void init();

    void proxy_isFound_data();
    void proxy_isFound();
    void credentials_areNotMixed_data();
    void credentials_areNotMixed();
    void refusal_namesProxyAndStatus_data();
    void refusal_namesProxyAndStatus();
    void missingProxy_isNamed_data();
    void missingProxy_isNamed();
    void thisMachine_isReachedDirectly();

private:
    HttpResult sendTo(const QString &host, const QByteArray &body = "picture");

    Certificates m_certificates;
    QProcess m_bus;
    Portal m_portal;
    std::unique_ptr<ScriptedServer> m_server;
    std::unique_ptr<Proxy> m_proxy;
};

void ProxiesTest::initTestCase()
{
    m_certificates.make(u"server"_s, "DNS:pictures.invalid,IP:127.0.0.1");
    m_bus.start(u"dbus-daemon"_s, {u"--session"_s, u"--nofork"_s, u"--print-address"_s});
    QVERIFY2(m_bus.waitForReadyRead(), "dbus-daemon does not run");
    const QByteArray address = m_bus.readLine().trimmed();
    qputenv("DBUS_SESSION_BUS_ADDRESS", address);
    // The portal's own connection, as the desktop has one.
    QDBusConnection bus = QDBusConnection::connectToBus(QString::fromUtf8(address), u"portal"_s);
    QVERIFY(bus.registerObject(u"/org/freedesktop/portal/desktop"_s, &m_portal,
                               QDBusConnection::ExportAllSlots));
    QVERIFY(bus.registerService(u"org.freedesktop.portal.Desktop"_s));
}

void ProxiesTest::cleanupTestCase()
{
    QDBusConnection::disconnectFromBus(u"portal"_s);
    m_bus.terminate();
    m_bus.waitForFinished();
}

void ProxiesTest::init()
{
    for (const char *name :
         {"https_proxy", "HTTPS_PROXY", "all_proxy", "ALL_PROXY", "no_proxy", "NO_PROXY"})
        qunsetenv(name);
    m_portal.proposed = {u"direct://"_s};
    m_portal.lookups.clear();
    m_server = std::make_unique<ScriptedServer>(
        [](const Request &) { return Answer{.body = "output"}; }, QHostAddress::LocalHost,
        m_certificates.server(u"server"_s));
    m_proxy = std::make_unique<Proxy>(m_server->url());
}

HttpResult ProxiesTest::sendTo(const QString &host, const QByteArray &body)
{
    HttpClient client({.caBundle = m_certificates.authority()});
    QUrl url = m_server->url(u"/shrink"_s);
    url.setHost(host);
    return send(client, post(url, body, key));
}

void ProxiesTest::proxy_isFound_data()
{
    QTest::addColumn<QString>("portal");
    QTest::addColumn<QByteArray>("variable");
    QTest::addColumn<bool>("isFound");
    const QString direct = u"direct://"_s;
    QTest::newRow("none") << direct << QByteArray() << false;
    QTest::newRow("desktop") << u"http://%1"_s << QByteArray() << true;
    QTest::newRow("desktop, before the environment")
        << u"http://%1"_s << QByteArray("wrong") << true;
    for (const char *name : {"https_proxy", "HTTPS_PROXY", "all_proxy", "ALL_PROXY"})
        QTest::newRow(name) << direct << QByteArray(name) << true;
    QTest::newRow("desktop without an answer") << QString() << QByteArray("https_proxy") << true;
}

void ProxiesTest::proxy_isFound()
{
    QFETCH(const QString, portal);
    QFETCH(const QByteArray, variable);
    QFETCH(const bool, isFound);
    m_portal.proposed = portal.isEmpty() ? QStringList() : QStringList{portal};
    if (portal.contains(u"%1"_s))
        m_portal.proposed = {portal.arg(m_proxy->name()), u"direct://"_s};
    if (variable == "wrong")
        qputenv("https_proxy", "http://127.0.0.1:1");
    else if (!variable.isEmpty())
        qputenv(variable, m_proxy->name().toUtf8());
    const HttpResult result = sendTo(u"pictures.invalid"_s, QByteArray(3'000'000, 'x'));
    QCOMPARE(outcome(result),
             isFound ? u"200"_s : u"The server could not be found. Is the computer online?"_s);
    QCOMPARE(m_portal.lookups,
             QStringList{u"https://pictures.invalid:%1"_s.arg(m_server->url().port())});
    QCOMPARE(m_proxy->asked.startsWith("CONNECT pictures.invalid:"), isFound);
    if (isFound)
        QCOMPARE(m_server->requests.value(0).body.size(), 3'000'000);
}

void ProxiesTest::credentials_areNotMixed_data()
{
    QTest::addColumn<bool>("fromDesktop");
    QTest::newRow("desktop") << true;
    QTest::newRow("environment") << false;
}

void ProxiesTest::credentials_areNotMixed()
{
    QFETCH(const bool, fromDesktop);
    const QString proxy = u"http://alice:sesame@"_s + m_proxy->name();
    if (fromDesktop)
        m_portal.proposed = {proxy};
    else
        qputenv("https_proxy", proxy.toUtf8());
    QCOMPARE(outcome(sendTo(u"pictures.invalid"_s)), u"200"_s);
    QVERIFY(m_proxy->asked.contains("Proxy-Authorization: " + proxyCredentials));
    for (const QByteArray &seen : {m_proxy->asked, m_proxy->tunnelled})
        QVERIFY(!seen.contains("c2VjcmV0"));
    QCOMPARE(m_server->requests.size(), 1);
    const Request &request = m_server->requests[0];
    QCOMPARE(request.headers.value("authorization"), key);
    QVERIFY(!request.headers.contains("proxy-authorization"));
    for (const QByteArray &value : request.headers)
        QVERIFY(value != proxyCredentials);
}

void ProxiesTest::refusal_namesProxyAndStatus_data()
{
    QTest::addColumn<int>("status");
    for (const int status : {302, 403, 407, 502})
        QTest::addRow("%d", status) << status;
}

void ProxiesTest::refusal_namesProxyAndStatus()
{
    QFETCH(const int, status);
    m_proxy->status = status;
    m_portal.proposed = {u"http://alice:sesame@"_s + m_proxy->name()};
    QCOMPARE(outcome(sendTo(u"pictures.invalid"_s)),
             u"The proxy server %1 refused the connection (status %2)."_s.arg(m_proxy->name())
                 .arg(status));
    QVERIFY(!m_proxy->asked.contains("c2VjcmV0"));
}

void ProxiesTest::missingProxy_isNamed_data()
{
    QTest::addColumn<QString>("proxy");
    QTest::addColumn<QString>("sentence");
    QTest::newRow("host") << u"http://proxy.invalid:3128"_s
                          << u"The proxy server proxy.invalid:3128 could not be found."_s;
    QTest::newRow("port") << u"http://127.0.0.1:1"_s
                          << u"Could not connect through the proxy server 127.0.0.1:1."_s;
    QTest::newRow("SOCKS") << u"socks://127.0.0.1:1"_s
                           << u"Could not connect through the proxy server 127.0.0.1:1."_s;
}

void ProxiesTest::missingProxy_isNamed()
{
    QFETCH(const QString, proxy);
    QFETCH(const QString, sentence);
    m_portal.proposed = {proxy};
    QCOMPARE(outcome(sendTo(u"pictures.invalid"_s)), sentence);
}

void ProxiesTest::thisMachine_isReachedDirectly()
{
    m_portal.proposed = {u"http://"_s + m_proxy->name()};
    qputenv("https_proxy", m_proxy->name().toUtf8());
    QCOMPARE(outcome(sendTo(u"127.0.0.1"_s)), u"200"_s);
    QCOMPARE(m_proxy->asked, "");
    QVERIFY(m_portal.lookups.isEmpty());
}

QTEST_GUILESS_MAIN(ProxiesTest)
#include "tst_proxies.moc"

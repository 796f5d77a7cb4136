// SPDX-FileCopyrightText: 2026 The Pixpress authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "service/http.h"

#include "support/scriptedserver.h"
#include "support/transport.h"

#include <QTest>

using namespace pixpress;
using namespace pixpress::test;
using namespace Qt::StringLiterals;

class RedirectsTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void credentials_stayWithTheirOrigin_data();
    void credentials_stayWithTheirOrigin();
    void credentials_doNotComeBack();
};

void RedirectsTest::credentials_stayWithTheirOrigin_data()
{
    QTest::addColumn<int>("status");
    QTest::addColumn<bool>("posts");
    QTest::addColumn<QString>("where");
    for (const int status : {301, 302, 303, 307, 308}) {
        for (const bool posts : {false, true}) {
            for (const char *where :
                 {"same origin", "same, in full", "other port", "other name", "other address",
                  "same, with credentials", "other name, with credentials"}) {
                QTest::addRow("%s %d, %s", posts ? "POST" : "GET", status, where)
                    << status << posts << QString::fromLatin1(where);
            }
        }
    }
}

void RedirectsTest::credentials_stayWithTheirOrigin()
{
    QFETCH(const int, status);
    QFETCH(const bool, posts);
    QFETCH(const QString, where);
    const auto end = [](const Request &) { return Answer{}; };
    ScriptedServer otherPort(end);
    ScriptedServer otherAddress(end, QHostAddress::LocalHostIPv6);
    ScriptedServer server;
    QUrl to = where == u"other port"_s      ? otherPort.url(u"/there"_s)
              : where == u"other address"_s ? otherAddress.url(u"/there"_s)
                                            : server.url(u"/there"_s);
    if (where.startsWith(u"other name"_s))
        to.setHost(u"localhost"_s);
    if (where.endsWith(u"credentials"_s))
        to.setUserInfo(u"api:other"_s);
    if (where == u"same origin"_s)
        to = QUrl(u"/there"_s);
    server.setScript([&](const Request &request) {
        return request.target == "/there"
                   ? Answer{}
                   : Answer{.status = status, .headers = {{"Location", to.toEncoded()}}};
    });

    HttpClient client({});
    HttpRequest request = get(server.url(u"/here"_s), "Basic c2VjcmV0");
    if (posts)
        request.body = "picture";
    const bool follows = !posts || status < 307;
    QCOMPARE(outcome(send(client, request)), QString::number(follows ? 200 : status));

    int followed = 0;
    for (const ScriptedServer *each : {&server, &otherPort, &otherAddress}) {
        for (const Request &seen : each->requests) {
            const bool isFirst = seen.target == "/here";
            followed += isFirst ? 0 : 1;
            const bool may = isFirst || where.startsWith(u"same"_s);
            QCOMPARE(seen.headers.value("authorization"), may ? "Basic c2VjcmV0" : "");
            QCOMPARE(seen.body, isFirst && posts ? "picture" : "");
        }
    }
    QCOMPARE(followed, follows ? 1 : 0);
    QCOMPARE(server.requests.first().target, "/here");
}

void RedirectsTest::credentials_doNotComeBack()
{
    ScriptedServer other;
    ScriptedServer server([&](const Request &request) {
        return request.target == "/back"
                   ? Answer{}
                   : Answer{.status = 302, .headers = {{"Location", other.url().toEncoded()}}};
    });
    other.setScript([&](const Request &) {
        return Answer{.status = 302, .headers = {{"Location", server.url(u"/back"_s).toEncoded()}}};
    });
    HttpClient client({});
    QCOMPARE(outcome(send(client, get(server.url(), "Basic c2VjcmV0"))), u"200"_s);
    QCOMPARE(server.requests.size(), 2);
    QVERIFY(!server.requests[1].headers.contains("authorization"));
}

QTEST_GUILESS_MAIN(RedirectsTest)
#include "tst_redirects.moc"

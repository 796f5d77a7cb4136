// SPDX-FileCopyrightText: 2026 The Pixpress authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "localservice/credentials.h"

#include <QTest>

using namespace pixpress;

class TestCredentials : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void rightKey_isAuthorised_data();
    void rightKey_isAuthorised();
    void noneOfManyOtherKeys_isAuthorised();
    void emptyKey_authorisesNobody();
};

namespace {

QByteArray shown(const QByteArray &userAndKey)
{
    return "Basic " + userAndKey.toBase64();
}

} // namespace

void TestCredentials::rightKey_isAuthorised_data()
{
    QTest::addColumn<QByteArray>("header");
    QTest::newRow("usual") << shown("api:key");
    QTest::newRow("scheme in small letters") << "basic " + QByteArray("api:key").toBase64();
    QTest::newRow("spaces around") << "Basic  " + QByteArray("api:key").toBase64() + ' ';
}

void TestCredentials::rightKey_isAuthorised()
{
    QFETCH(QByteArray, header);
    QVERIFY(isAuthorised(header, "key"));
}

void TestCredentials::noneOfManyOtherKeys_isAuthorised()
{
    // So many that some are alike in whatever byte a comparison might stop at.
    for (int i = 0; i < 5000; ++i)
        QVERIFY(!isAuthorised(shown("api:" + QByteArray::number(i)), "key"));
}

void TestCredentials::emptyKey_authorisesNobody()
{
    for (const QByteArray &header : {QByteArray(), QByteArray("Basic"), shown(""), shown("api:")})
        QVERIFY(!isAuthorised(header, ""));
}

QTEST_APPLESS_MAIN(TestCredentials)
#include "tst_credentials.moc"

// SPDX-FileCopyrightText: 2026 The Pixpress authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "program.h"
#include "service.h"

#include <QTest>

using namespace pixpress::test;
using namespace Qt::StringLiterals;

/// From the first start, when there is no key, to the first compressed picture.
class FirstStartTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void cleanup();

    void rejectedKey_thenGoodKey_thenAPicture();
    void settingsAskedForBefore_openOnceTheKeyIsThere();
    void emptyKey_isNotAskedAbout();

private:
    bool greets() const { return showsLogo(m_program->picture()); }
    void replaceKey(const QString &key) const;

    std::unique_ptr<Desktop> m_desktop;
    std::unique_ptr<Service> m_service;
    std::unique_ptr<Program> m_program;
};

void FirstStartTest::init()
{
    m_desktop = std::make_unique<Desktop>();
    QVERIFY(m_desktop->start());
    m_service = std::make_unique<Service>();
    m_program = std::make_unique<Program>(*m_desktop, QStringLiteral(PIXPRESS_AT),
                                          Invocation{.arguments = {m_service->address()}});
    QVERIFY(m_program->isInFront());
    QTRY_VERIFY_WITH_TIMEOUT(greets(), patience);
}

void FirstStartTest::cleanup()
{
    m_program.reset();
    m_service.reset();
    m_desktop.reset();
}

void FirstStartTest::replaceKey(const QString &key) const
{
    m_desktop->press({u"ctrl+a"_s});
    m_desktop->type(key);
    m_desktop->press({u"Return"_s});
}

void FirstStartTest::rejectedKey_thenGoodKey_thenAPicture()
{
    // The key field has the keyboard from the beginning.
    replaceKey(u"wrong"_s);
    QTRY_COMPARE_WITH_TIMEOUT(m_service->authorizations(), QList({Service::authorization("wrong")}),
                              patience);
    QTRY_VERIFY_WITH_TIMEOUT(redPoints(m_program->picture()) > 20, patience);
    QVERIFY(greets());
    QVERIFY(!m_desktop->settings(u"Pixpress"_s).contains(u"pixpress_api_key"_s));

    replaceKey(u" good/key+1 "_s);
    QTRY_COMPARE_WITH_TIMEOUT(m_service->authorizations().size(), 2, patience);
    QTRY_VERIFY_WITH_TIMEOUT(!greets(), patience);
    QCOMPARE(m_desktop->settings(u"Pixpress"_s).value(u"pixpress_api_key"_s), u"good/key+1"_s);
    QCOMPARE(QFile::permissions(m_desktop->settingsPath(u"Pixpress"_s)) &
                 (QFile::ReadGroup | QFile::WriteGroup | QFile::ExeGroup | QFile::ReadOther |
                  QFile::WriteOther | QFile::ExeOther | QFile::ExeOwner),
             QFile::Permissions());

    const QString picture = m_desktop->file(u"first #1.png"_s, "bytes of a picture");
    QVERIFY(drag(*m_desktop, {picture}, *m_program).contains(u"done copy"_s));
    QTRY_COMPARE_WITH_TIMEOUT(m_desktop->size(u"first #1-pixpress.png"_s), m_service->output.size(),
                              patience);
    QCOMPARE(m_service->uploads(), QList<QByteArray>({"bytes of a picture"}));
    QCOMPARE(m_program->errors(), "");
}

void FirstStartTest::settingsAskedForBefore_openOnceTheKeyIsThere()
{
    m_desktop->press({u"ctrl+comma"_s});
    replaceKey(u"good/key+1"_s);
    QTRY_VERIFY_WITH_TIMEOUT(!greets(), patience);
    // The window below the sheet is brighter without it.
    const auto corner = [this] { return qGray(m_program->picture().pixel(2, 2)); };
    QTRY_VERIFY_WITH_TIMEOUT(corner() < 190, patience);
    m_desktop->press({u"Escape"_s});
    QTRY_VERIFY_WITH_TIMEOUT(corner() > 220, patience);
}

void FirstStartTest::emptyKey_isNotAskedAbout()
{
    replaceKey(u"   "_s);
    replaceKey(u"good/key+1"_s);
    QTRY_VERIFY_WITH_TIMEOUT(!greets(), patience);
    QCOMPARE(m_service->authorizations().size(), 1);
}

QTEST_GUILESS_MAIN(FirstStartTest)
#include "tst_firststart.moc"

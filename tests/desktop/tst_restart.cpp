// SPDX-FileCopyrightText: 2026 The Pixpress authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "program.h"
#include "service.h"

#include <QTest>

using namespace pixpress::test;
using namespace Qt::StringLiterals;

/// What outlives the process, and what does not.
class RestartTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void cleanup();

    void keyAndCount_areKept();
    void options_andList_areForgotten();
    void offline_keepsNothing();

private:
    void restart(const QStringList &files = {});
    void quit();

    std::unique_ptr<Desktop> m_desktop;
    std::unique_ptr<Service> m_service;
    std::unique_ptr<Program> m_program;
};

void RestartTest::init()
{
    m_desktop = std::make_unique<Desktop>();
    QVERIFY(m_desktop->start());
    m_service = std::make_unique<Service>();
}

void RestartTest::cleanup()
{
    m_program.reset();
    m_service.reset();
    m_desktop.reset();
}

void RestartTest::restart(const QStringList &files)
{
    m_program = std::make_unique<Program>(
        *m_desktop, QStringLiteral(PIXPRESS_AT),
        Invocation{.arguments = QStringList{m_service->address()} + files});
    QVERIFY(m_program->isInFront());
}

void RestartTest::quit()
{
    m_desktop->press({u"ctrl+q"_s});
    QCOMPARE(m_program->exitStatus(), 0);
}

void RestartTest::keyAndCount_areKept()
{
    restart();
    m_desktop->type(QString::fromLatin1(m_service->goodKey));
    m_desktop->press({u"Return"_s});
    QTRY_VERIFY_WITH_TIMEOUT(
        !m_desktop->settings(u"Pixpress"_s).value(u"pixpress_api_key"_s).isUndefined(), patience);
    m_service->count = 500; // the whole month's
    const QString first = m_desktop->file(u"first.png"_s, "first");
    QVERIFY(drag(*m_desktop, {first}, *m_program).contains(u"done copy"_s));
    QTRY_COMPARE_WITH_TIMEOUT(m_desktop->size(u"first-pixpress.png"_s), m_service->output.size(),
                              patience);
    quit();
    const QJsonObject kept = m_desktop->settings(u"Pixpress"_s);
    QCOMPARE(kept.value(u"pixpress_api_key"_s), u"good/key+1"_s);
    QCOMPARE(kept.value(u"pixpress_quota_count"_s), 500);

    // It remembers the key, or it would greet; and the count, or it would upload.
    restart({m_desktop->file(u"second.png"_s, "second")});
    QVERIFY(!showsLogo(m_program->picture()));
    QTRY_VERIFY_WITH_TIMEOUT(redPoints(m_program->picture()) > 20, patience);
    quit();
    QCOMPARE(m_desktop->settings(u"Pixpress"_s), kept);
    QCOMPARE(m_service->uploads(), QList<QByteArray>({"first"}));
}

void RestartTest::options_andList_areForgotten()
{
    m_desktop->store(u"Pixpress"_s,
                     {{u"pixpress_api_key"_s, QString::fromLatin1(m_service->goodKey)}});
    m_service->count = 0; // so that the bar below shows the same each time
    restart();
    const QImage fresh = m_program->picture();
    m_desktop->press({u"Tab"_s, u"Tab"_s, u"Tab"_s, u"Tab"_s, u"space"_s, u"Tab"_s, u"Tab"_s});
    m_desktop->type(u"64"_s);
    const QString first = m_desktop->file(u"first.png"_s, "first");
    QVERIFY(drag(*m_desktop, {first}, *m_program).contains(u"done copy"_s));
    QTRY_COMPARE_WITH_TIMEOUT(m_desktop->size(u"first-pixpress.png"_s), m_service->output.size(),
                              patience);
    QVERIFY(m_service->fetches().last().contains("64"));
    QVERIFY(m_program->picture() != fresh);
    quit();

    restart();
    QTRY_COMPARE_WITH_TIMEOUT(m_program->picture(), fresh, patience);
    const QString second = m_desktop->file(u"second.png"_s, "second");
    QVERIFY(drag(*m_desktop, {second}, *m_program).contains(u"done copy"_s));
    QTRY_COMPARE_WITH_TIMEOUT(m_desktop->size(u"second-pixpress.png"_s), m_service->output.size(),
                              patience);
    QCOMPARE(m_service->fetches().last(), "");
    QCOMPARE(m_service->uploads(), QList<QByteArray>({"first", "second"}));
}

void RestartTest::offline_keepsNothing()
{
    for (const int count : {1, 2}) {
        const QString name = u"%1.png"_s.arg(count);
        m_program = std::make_unique<Program>(
            *m_desktop, QStringLiteral(PIXPRESS_OFFLINE),
            Invocation{.arguments = {m_desktop->sample(u"island map.png"_s, name)}});
        QVERIFY(m_program->isInFront());
        QTRY_VERIFY_WITH_TIMEOUT(m_desktop->size(u"%1-pixpress.png"_s.arg(count)) > 0, patience);
        quit();
    }
    QVERIFY(!QFile::exists(m_desktop->settingsPath(u"Pixpress Offline"_s)));
    QVERIFY(!QFile::exists(m_desktop->settingsPath(u"Pixpress"_s)));
}

QTEST_GUILESS_MAIN(RestartTest)
#include "tst_restart.moc"

// SPDX-FileCopyrightText: 2026 The Pixpress authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "stage.h"
#include "ui/keyvalidation.h"

#include <QSignalSpy>
#include <QTest>

using namespace pixpress;
using namespace Qt::StringLiterals;

class KeyValidationTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init()
    {
        m_stage.release();
        m_stage.start({});
    }

    void trimming_takesBlanksAndTabsAtTheEnds_data()
    {
        QTest::addColumn<QString>("key");
        QTest::addColumn<QString>("trimmed");

        QTest::newRow("plain") << u"key"_s << u"key"_s;
        QTest::newRow("blanks and tabs") << u"\t key \t "_s << u"key"_s;
        QTest::newRow("inner blank") << u" a key"_s << u"a key"_s;
        QTest::newRow("blanks only") << u" \t "_s << QString();
        QTest::newRow("empty") << QString() << QString();
        QTest::newRow("line break stays") << u"key\n"_s << u"key\n"_s;
        QTest::newRow("unbreakable blank stays") << u"key\u00A0"_s << u"key\u00A0"_s;
    }

    void trimming_takesBlanksAndTabsAtTheEnds()
    {
        QFETCH(QString, key);
        QFETCH(QString, trimmed);
        QCOMPARE(KeyValidation::trimmed(key), trimmed);
    }

    void goodKey_isSavedAndTold()
    {
        const auto view = validation();
        QSignalSpy finished(view.get(), &KeyValidation::finished);
        view->start(u"good"_s);
        QVERIFY(view->isValidating());
        QTRY_COMPARE(finished.size(), 1);
        QCOMPARE(finished[0][0].toBool(), true);
        QVERIFY(!view->isValidating());
        QCOMPARE(m_stage.storedKey(), u"good"_s);
    }

    void badKey_isToldAndNotSaved()
    {
        m_stage.acceptOnly(u"good"_s);
        const auto view = validation();
        QSignalSpy finished(view.get(), &KeyValidation::finished);
        QSignalSpy failed(view.get(), &KeyValidation::failed);
        view->start(u"bad"_s);
        QTRY_COMPARE(finished.size(), 1);
        QCOMPARE(finished[0][0].toBool(), false);
        QVERIFY(failed.isEmpty());
        QCOMPARE(m_stage.storedKey(), QString());
    }

    void brokenConnection_failsWithADescription()
    {
        m_stage.breakConnections();
        const auto view = validation();
        QSignalSpy finished(view.get(), &KeyValidation::finished);
        QSignalSpy failed(view.get(), &KeyValidation::failed);
        view->start(u"any"_s);
        QTRY_COMPARE(failed.size(), 1);
        QVERIFY(!failed[0][0].toString().isEmpty());
        QVERIFY(finished.isEmpty());
        QVERIFY(!view->isValidating());
        QCOMPARE(m_stage.storedKey(), QString());
    }

    void secondCheck_isLeftOutWhileOneRuns()
    {
        m_stage.hold();
        const auto view = validation();
        QSignalSpy finished(view.get(), &KeyValidation::finished);
        view->start(u"first"_s);
        view->start(u"second"_s);
        QTRY_COMPARE(m_stage.waiting(), 1);
        m_stage.release();
        QTRY_COMPARE(finished.size(), 1);
        QCOMPARE(m_stage.keys(), QStringList{u"first"_s});
        view->start(u"third"_s); // and then one more may
        QTRY_COMPARE(finished.size(), 2);
    }

    void viewGoneWhileItRuns_stillSavesAGoodKey()
    {
        m_stage.hold();
        auto view = validation();
        view->start(u"good"_s);
        QTRY_COMPARE(m_stage.waiting(), 1);
        view.reset();
        m_stage.release();
        QTRY_COMPARE(m_stage.storedKey(), u"good"_s);
        QVERIFY(m_stage.app()->appState()->isAPIKeyConfigured());
    }

    void viewGoneWhileItRuns_savesNoBadKey()
    {
        m_stage.acceptOnly(u"good"_s);
        m_stage.hold();
        auto view = validation();
        const auto other = validation();
        QSignalSpy finished(other.get(), &KeyValidation::finished);
        view->start(u"bad"_s);
        other->start(u"worse"_s);
        QTRY_COMPARE(m_stage.waiting(), 2);
        view.reset();
        m_stage.release();
        QTRY_COMPARE(finished.size(), 1);
        QCOMPARE(m_stage.storedKey(), QString());
    }

    void applicationGoneWhileItRuns_endsTheCheckWithoutSaving()
    {
        m_stage.hold();
        const auto view = validation();
        QSignalSpy finished(view.get(), &KeyValidation::finished);
        view->start(u"good"_s);
        QTRY_COMPARE(m_stage.waiting(), 1);
        m_stage.start({}); // ends the application that was asked
        QCoreApplication::processEvents();
        QCOMPARE(m_stage.storedKey(), QString());
        QVERIFY(!m_stage.app()->appState()->isAPIKeyConfigured());
        QVERIFY(finished.isEmpty() || !finished[0][0].toBool());
    }

    void keySavedWhileACheckRuns_stays()
    {
        m_stage.hold();
        const auto first = validation();
        const auto second = validation();
        first->start(u"checked"_s);
        QTRY_COMPARE(m_stage.waiting(), 1);
        m_stage.app()->saveAPIKey(u"saved"_s);
        m_stage.release();
        QTRY_VERIFY(!first->isValidating());
        QCOMPARE(m_stage.storedKey(), u"saved"_s);
        second->start(u"next"_s);
        QTRY_VERIFY(!second->isValidating());
        QCOMPARE(m_stage.storedKey(), u"next"_s);
    }

    void twoViews_checkSideBySide()
    {
        const auto first = validation();
        const auto second = validation();
        QSignalSpy one(first.get(), &KeyValidation::finished);
        QSignalSpy two(second.get(), &KeyValidation::finished);
        first->start(u"a"_s);
        second->start(u"b"_s);
        QTRY_COMPARE(one.size() + two.size(), 2);
    }

private:
    std::unique_ptr<KeyValidation> validation()
    {
        auto view = std::make_unique<KeyValidation>();
        view->setProperty("app", QVariant::fromValue(m_stage.app()));
        return view;
    }

    test::Stage m_stage;
};

QTEST_MAIN(KeyValidationTest)

#include "tst_keyvalidation.moc"

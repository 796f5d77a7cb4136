// SPDX-FileCopyrightText: 2026 The Pixpress authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "stage.h"

#include <QTest>

using namespace pixpress;
using namespace Qt::StringLiterals;

class PixpressAppTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void filesToOpen_areAddedAtOnceWithAKey()
    {
        m_stage.start();
        m_stage.app()->openFiles({m_stage.file(u"a.png"_s), m_stage.file(u"notes.txt"_s)});
        QCOMPARE(m_stage.batches, QList<int>{1});
        m_stage.app()->appState()->saveAPIKey(u"another"_s);
        QCOMPARE(m_stage.batches, QList<int>{1});
    }

    void filesToOpen_waitForTheFirstKey()
    {
        m_stage.start({});
        m_stage.acceptOnly(u"new"_s);
        m_stage.app()->openFiles({m_stage.file(u"a.png"_s), m_stage.file(u"b.jpg"_s)});
        QVERIFY(m_stage.batches.isEmpty());
        m_stage.app()->appState()->saveAPIKey(u"new"_s);
        QCOMPARE(m_stage.batches, QList<int>{2});
        QTRY_COMPARE(m_stage.app()->appState()->compressionQueue()->completedCount(), 2);
    }

    void filesToOpenOffline_needNoKey()
    {
        m_stage.startOffline();
        m_stage.app()->openFiles({m_stage.file(u"a.png"_s)});
        QCOMPARE(m_stage.batches, QList<int>{1});
    }

    void noFilesToOpen_addNothing()
    {
        m_stage.start({});
        m_stage.app()->openFiles({});
        m_stage.app()->appState()->saveAPIKey(u"new"_s);
        QVERIFY(m_stage.batches.isEmpty());
    }

private:
    test::Stage m_stage;
};

QTEST_MAIN(PixpressAppTest)

#include "tst_pixpressapp.moc"

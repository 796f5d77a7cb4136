// SPDX-FileCopyrightText: 2026 The Pixpress authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "stage.h"

#include <QAbstractItemModelTester>
#include <QMetaEnum>
#include <QSignalSpy>
#include <QTest>

using namespace pixpress;
using namespace Qt::StringLiterals;

class TaskModelTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init()
    {
        m_tester.reset();
        m_stage.release();
        m_stage.start();
        m_tester = std::make_unique<QAbstractItemModelTester>(
            &model(), QAbstractItemModelTester::FailureReportingMode::QtTest);
    }

    void adding_insertsRowsInOneStepABatch()
    {
        m_stage.hold();
        QSignalSpy inserted(&model(), &QAbstractItemModel::rowsInserted);
        QSignalSpy counted(&model(), &TaskModel::countChanged);
        add({u"a.png"_s, u"b.png"_s});
        add({u"c.png"_s});
        QCOMPARE(inserted.size(), 2);
        QCOMPARE(inserted[0][1].toInt(), 0);
        QCOMPARE(inserted[0][2].toInt(), 1);
        QCOMPARE(inserted[1][1].toInt(), 2);
        QCOMPARE(counted.size(), 2);
        QCOMPARE(names(), u"a.png b.png c.png"_s);
        QCOMPARE(model().progressText(), u"0/3 completed"_s);
    }

    void nameOfSeveralLines_readsOnOne()
    {
        m_stage.hold();
        add({u"two\nlines\tand\x1b a\u2028half.png"_s});
        QCOMPARE(names(), u"two lines and  a half.png"_s);
        QVERIFY(model().data(model().index(0), TaskModel::Summary).toString().startsWith(names()));
    }

    void completedTask_readsAsText()
    {
        m_stage.answerWith(1'534'000, 582'920);
        finish(u"smaller.png"_s, 2'000);
        QCOMPARE(text(0),
                 u"smaller.png|2 KB|completed|→ 583 KB||-62%|saved 951 KB|smaller-pixpress.png"_s);
        QCOMPARE(model().progressText(), u"1/1 completed"_s);
        QCOMPARE(model().totalSavedText(), u"Total saved: 951 KB"_s);
    }

    void grownAndEqualOutputs_keepTheMinusSign()
    {
        m_stage.answerWith(1000, 1050);
        finish(u"grown.png"_s, 532);
        QCOMPARE(
            text(0),
            u"grown.png|532 bytes|completed|→ 1 KB||--5%|saved -50 bytes|grown-pixpress.png"_s);
        QCOMPARE(model().totalSavedText(), QString());
        m_stage.answerWith(1000, 1000);
        finish(u"equal.png"_s, 532);
        QCOMPARE(text(1),
                 u"equal.png|532 bytes|completed|→ 1 KB||-0%|saved Zero KB|equal-pixpress.png"_s);
        QCOMPARE(model().totalSavedText(), QString());
    }

    void failedTask_readsAsItsMessage()
    {
        m_stage.failWith(500, u"No <b>way</b>."_s);
        finish(u"a.png"_s, 0);
        QCOMPARE(text(0), u"a.png|Zero KB|failed|API error (500): No <b>way</b>.||||"_s);
        QCOMPARE(model().progressText(), u"0/1 completed"_s);
    }

    void waitingAndRunningTasks_haveAWordAndASymbol()
    {
        m_stage.hold();
        add({u"a.png"_s, u"b.png"_s});
        QTRY_COMPARE(m_stage.waiting(), 1);
        QCOMPARE(text(0), u"a.png|1 KB|compressing|Compressing|gearshape.2|||"_s);
        QCOMPARE(text(1), u"b.png|1 KB|pending|Queued|clock|||"_s);
        m_stage.releaseOne();
        QTRY_COMPARE(text(0), u"a.png|1 KB|downloading|Downloading|arrow.down.circle|||"_s);
    }

    void run_goesThroughAllStatesWithoutAReset()
    {
        QSignalSpy reset(&model(), &QAbstractItemModel::modelReset);
        QStringList states;
        connect(&model(), &QAbstractItemModel::dataChanged, this,
                [&](const QModelIndex &first, const QModelIndex &last, const QList<int> &roles) {
                    QCOMPARE(first.row(), last.row());
                    QVERIFY(roles.contains(TaskModel::StatusText));
                    QVERIFY(!roles.contains(TaskModel::FileName));
                    states.append(first.data(TaskModel::StatusText).toString());
                });
        finish(u"a.png"_s, 1000);
        QCOMPARE(states.join(u' '), u"Uploading Compressing Downloading → 400 bytes"_s);
        QVERIFY(reset.isEmpty());
    }

    void clearCompleted_takesOutItsRowsAndLeavesTheOthersInPlace()
    {
        finish(u"a.png"_s, 1000);
        m_stage.failWith(500, u"No."_s);
        finish(u"b.png"_s, 1000);
        m_stage.answerWith(1000, 400);
        m_stage.hold();
        add({u"c.png"_s, u"d.png"_s});
        QTRY_COMPARE(m_stage.waiting(), 1);
        m_stage.releaseOne(); // no upload is under way while rows are taken out
        QTRY_COMPARE(m_stage.waiting(), 1);
        const QPersistentModelIndex c(model().index(2));
        const QPersistentModelIndex d(model().index(3));
        QSignalSpy reset(&model(), &QAbstractItemModel::modelReset);
        QSignalSpy removed(&model(), &QAbstractItemModel::rowsRemoved);
        m_stage.app()->clearCompleted();
        QCOMPARE(names(), u"c.png d.png"_s);
        QCOMPARE(c.row(), 0);
        QCOMPARE(d.row(), 1);
        QVERIFY(reset.isEmpty());
        QCOMPARE(removed.size(), 1); // neighbours go in one step
        m_stage.release();
        QTRY_COMPARE(model().progressText(), u"2/2 completed"_s);
    }

    void clearAll_leavesNoRow()
    {
        finish(u"a.png"_s, 1000);
        finish(u"b.png"_s, 1000);
        QSignalSpy counted(&model(), &TaskModel::countChanged);
        m_stage.app()->clearAll();
        QCOMPARE(model().rowCount(), 0);
        QCOMPARE(counted.size(), 1);
        QCOMPARE(model().progressText(), u"0/0 completed"_s);
        finish(u"c.png"_s, 1000);
        QCOMPARE(names(), u"c.png"_s);
    }

    void retry_ofNoRowDoesNothing()
    {
        m_stage.failWith(500, u"No."_s);
        finish(u"a.png"_s, 1000);
        m_stage.app()->retry(-1);
        m_stage.app()->retry(1);
        QCOMPARE(m_stage.uploads(), 1);
        m_stage.answerWith(1000, 400);
        m_stage.app()->retry(0);
        QTRY_COMPARE(model().progressText(), u"1/1 completed"_s);
    }

    void rows_haveNoChildrenAndNoOtherRoles()
    {
        finish(u"a.png"_s, 1000);
        const QModelIndex row = model().index(0);
        QCOMPARE(model().rowCount(row), 0);
        QVERIFY(!model().data(row, Qt::DisplayRole).isValid());
        QVERIFY(!model().data({}, TaskModel::FileName).isValid());
        QCOMPARE(model().roleNames().size(), 10);
    }

private:
    TaskModel &model() { return *m_stage.app()->tasks(); }

    void add(const QStringList &fileNames)
    {
        QList<QUrl> urls;
        for (const QString &name : fileNames)
            urls.append(m_stage.file(name));
        m_stage.app()->handleDrop(urls);
    }

    void finish(const QString &name, int bytes)
    {
        m_stage.app()->handleDrop({m_stage.file(name, bytes)});
        const qsizetype last = model().count() - 1;
        const auto &tasks = m_stage.app()->appState()->compressionQueue()->tasks();
        QTRY_VERIFY(hasEnded(tasks[last].status));
    }

    QString names()
    {
        QStringList list;
        for (int row = 0; row < model().rowCount(); ++row)
            list.append(model().index(row).data(TaskModel::FileName).toString());
        return list.join(u' ');
    }

    /// A row's roles, parted by bars; of the output its name.
    QString text(int row)
    {
        const auto value = [&](int role) { return model().index(row).data(role); };
        const auto state = value(TaskModel::TaskState).value<TaskModel::State>();
        return QStringList{
            value(TaskModel::FileName).toString(),
            value(TaskModel::OriginalSize).toString(),
            QString::fromLatin1(QMetaEnum::fromType<TaskModel::State>().valueToKey(int(state))),
            value(TaskModel::StatusText).toString(),
            value(TaskModel::StatusSymbol).toString(),
            value(TaskModel::Savings).toString(),
            value(TaskModel::Saved).toString(),
            value(TaskModel::OutputURL).toUrl().fileName()}
            .join(u'|');
    }

    test::Stage m_stage;
    std::unique_ptr<QAbstractItemModelTester> m_tester;
};

QTEST_MAIN(TaskModelTest)

#include "tst_taskmodel.moc"

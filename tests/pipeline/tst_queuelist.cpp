// SPDX-FileCopyrightText: 2026 The Pixpress authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "pipeline/queueoftest.h"

#include <QDir>
#include <QProcess>
#include <QSignalSpy>
#include <QTest>

using namespace pixpress;
using namespace pixpress::test;
using namespace Qt::StringLiterals;

class QueueListTest : public QObject, private QueueOfTest
{
    Q_OBJECT

private Q_SLOTS:
    void init() { makeQueue(); }
    void cleanup() { removeQueue(); }

    void retry_appliesTheGivenOptions();
    void retry_startsFromAnyStatus();
    void retryOfUnknownTask_doesNothing();
    void clearCompleted_keepsPendingAndRunningInOrder();
    void clearCompletedDuringUpload_marksTheTaskAtTheOldIndex();
    void clearAllDuringFetch_stillWritesTheFile();
    void clearAllDuringUpload_isFatal();
    void listClearedBeforeTheTaskStarts_endsItsRun();
    void totals_equalARecomputation();
    void unchangedValues_signalNothing();
    void destroyedQueue_writesNothing();
};

void QueueListTest::retry_appliesTheGivenOptions()
{
    m_server->setScript([](const Request &) { return Answer{.status = 500}; });
    add({file(u"a.png"_s)}, {.convertEnabled = true});
    QTRY_COMPARE(statuses(), QStringList(u"API error (500): Unknown error"_s));
    m_server->requests.clear();
    m_server->setScript([this](const Request &request) {
        return request.target == "/shrink" ? shrinkAnswer(m_server->url(u"/o"_s))
                                           : Answer{.body = "second"};
    });
    const CompressionOptions now{.outputDestination = OutputDestination::overwrite};
    m_queue->retryTask(m_queue->tasks()[0].id, now);
    QCOMPARE(m_queue->tasks()[0].options, now);
    QTRY_COMPARE(statuses(), QStringList(u"completed"_s));
    QCOMPARE(m_server->requests[1].method, "GET");
    QCOMPARE(contentOf(u"a.png"_s), "second");
}

void QueueListTest::retry_startsFromAnyStatus()
{
    add({file(u"a.png"_s)});
    QTRY_COMPARE(m_queue->completedCount(), 1);
    m_queue->retryTask(m_queue->tasks()[0].id, {});
    QCOMPARE(m_queue->completedCount(), 0);
    QTRY_COMPARE(m_queue->completedCount(), 1);
    QCOMPARE(contentOf(u"a-pixpress-1.png"_s), "output");
}

void QueueListTest::retryOfUnknownTask_doesNothing()
{
    KeychainHelper::saveAPIKey(*m_settings, u""_s);
    add({file(u"a.png"_s), file(u"b.png"_s)});
    m_queue->retryTask(QUuid::createUuid(), {});
    QCOMPARE(statuses(), QStringList({u"No API key configured"_s, u"pending"_s}));
}

void QueueListTest::clearCompleted_keepsPendingAndRunningInOrder()
{
    add({file(u"done.png"_s)});
    QTRY_COMPARE(m_queue->completedCount(), 1);
    add({QUrl::fromLocalFile(m_folder->filePath(u"failed.png"_s))});
    QTRY_COMPARE(m_queue->activeTasks(), 0);
    m_server->hold();
    add({file(u"running.png"_s), file(u"pending 1.png"_s), file(u"pending 2.png"_s)});
    QTRY_COMPARE(m_server->requests.size(), 3);
    m_server->releaseOne();
    QTRY_COMPARE(statuses().value(2), u"downloading"_s);

    QSignalSpy removed(m_queue.get(), &CompressionQueue::tasksRemoved);
    m_queue->clearCompleted();
    QCOMPARE(statuses(), QStringList({u"downloading"_s, u"pending"_s, u"pending"_s}));
    QStringList names;
    for (const CompressionTask &task : m_queue->tasks())
        names.append(task.fileName);
    QCOMPARE(names, QStringList({u"running.png"_s, u"pending 1.png"_s, u"pending 2.png"_s}));
    QCOMPARE(removed.size(), 1);
    QCOMPARE(m_queue->completedCount(), 0);
    QCOMPARE(m_queue->totalSaved(), 0);
    m_queue->clearCompleted();
    QCOMPARE(removed.size(), 1);

    m_server->release();
    QTRY_COMPARE(m_queue->completedCount(), 3);
}

void QueueListTest::clearCompletedDuringUpload_marksTheTaskAtTheOldIndex()
{
    add({file(u"done.png"_s)});
    QTRY_COMPARE(m_queue->completedCount(), 1);
    m_server->hold();
    add({file(u"running.png"_s), file(u"pending.png"_s)});
    QTRY_COMPARE(m_server->requests.size(), 3);
    m_queue->clearCompleted();
    m_server->releaseOne();
    QTRY_COMPARE(statuses(), QStringList({u"compressing"_s, u"downloading"_s}));
    m_server->release();
    // The run that was shifted ends on its own task; the other was taken for started.
    QTRY_COMPARE(statuses(), QStringList({u"completed"_s, u"downloading"_s}));
    QCOMPARE(m_queue->activeTasks(), 0);
}

void QueueListTest::clearAllDuringFetch_stillWritesTheFile()
{
    m_server->hold();
    add({file(u"a.png"_s), file(u"b.png"_s)});
    QTRY_COMPARE(m_server->requests.size(), 1);
    m_server->releaseOne();
    QTRY_COMPARE(m_server->requests.size(), 2);
    m_queue->clearAll();
    QVERIFY(m_queue->tasks().isEmpty());
    QCOMPARE(m_queue->activeTasks(), 0);
    m_server->release();
    QTRY_COMPARE(m_queue->activeTasks(), -1);
    QCOMPARE(contentOf(u"a-pixpress.png"_s), "output");
    QCOMPARE(contentOf(u"b-pixpress.png"_s), "(no such file)");
    QVERIFY(m_queue->tasks().isEmpty());

    // One slot more than three is open from now on.
    m_server->hold();
    for (int i = 1; i <= 5; ++i)
        add({file(u"%1.png"_s.arg(i))});
    QCOMPARE(m_queue->activeTasks(), 3);
    QCOMPARE(statuses().count(u"compressing"_s), 4);
    m_server->release();
    QTRY_COMPARE(m_queue->completedCount(), 5);
    QCOMPARE(m_queue->activeTasks(), -1);
}

void QueueListTest::clearAllDuringUpload_isFatal()
{
    // What is fatal is done by this same test, run as a process of its own.
    const QString dies = u"PIXPRESS_TEST_DIES"_s;
    if (qEnvironmentVariableIsSet(qPrintable(dies))) {
        m_server->hold();
        add({file(u"a.png"_s)});
        QTRY_COMPARE(m_server->requests.size(), 1);
        m_queue->clearAll();
        m_server->release();
        QTRY_VERIFY2(false, "The process is still there.");
    }
    QProcess process;
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.insert(dies, u"1"_s);
    process.setProcessEnvironment(environment);
    process.start(QCoreApplication::applicationFilePath(),
                  {u"-nocrashhandler"_s, u"clearAllDuringUpload_isFatal"_s});
    QVERIFY(process.waitForFinished());
    QCOMPARE(process.exitStatus(), QProcess::CrashExit);
    QVERIFY(process.readAllStandardOutput().contains(
        "CompressionQueue: index 0 is out of range, the list has 0 tasks."));
}

void QueueListTest::listClearedBeforeTheTaskStarts_endsItsRun()
{
    const auto connection =
        connect(m_queue.get(), &CompressionQueue::activeTasksChanged, this, [this] {
            if (m_queue->activeTasks() == 1)
                m_queue->clearAll();
        });
    add({file(u"a.png"_s)});
    disconnect(connection);
    QCOMPARE(m_queue->activeTasks(), -1);
    QVERIFY(m_queue->tasks().isEmpty());
    QCoreApplication::processEvents();
    QCOMPARE(m_server->connections, 0);
}

void QueueListTest::totals_equalARecomputation()
{
    const auto check = [this] {
        qsizetype completed = 0;
        qsizetype firstPending = -1;
        qint64 saved = 0;
        bool active = false;
        for (qsizetype i = 0; i < m_queue->tasks().size(); ++i) {
            const CompressionTask &task = m_queue->tasks()[i];
            active = active || isActive(task.status);
            if (const auto *done = std::get_if<status::Completed>(&task.status)) {
                ++completed;
                saved += done->result.originalSize - done->result.compressedSize;
            }
            if (firstPending < 0 && task.status == TaskStatus(status::Pending{}))
                firstPending = i;
            QCOMPARE(m_queue->indexOf(task.id), i);
        }
        QCOMPARE(m_queue->hasActiveTasks(), active);
        QCOMPARE(m_queue->completedCount(), completed);
        QCOMPARE(m_queue->totalSaved(), saved);
        QCOMPARE(m_queue->firstPending(), firstPending);
    };
    connect(m_queue.get(), &CompressionQueue::taskChanged, this, check);
    connect(m_queue.get(), &CompressionQueue::tasksAdded, this, check);
    connect(m_queue.get(), &CompressionQueue::tasksRemoved, this, check);

    m_output = QByteArray(1010, 'x'); // 10 bytes more than came in
    add({file(u"a.png"_s)});
    QTRY_COMPARE(m_queue->completedCount(), 1);
    QCOMPARE(m_queue->totalSaved(), -10);

    m_output = "x";
    add({file(u"b.png"_s), QUrl::fromLocalFile(m_folder->filePath(u"no.png"_s)), file(u"c.png"_s)});
    QTRY_COMPARE(m_queue->completedCount(), 3);
    QCOMPARE(m_queue->totalSaved(), -10 + 999 + 999);
    m_queue->retryTask(m_queue->tasks()[1].id, {});
    m_queue->retryTask(m_queue->tasks()[0].id, {});
    QTRY_COMPARE(m_queue->completedCount(), 3);
    m_queue->clearCompleted();
    QCOMPARE(m_queue->totalSaved(), 0);
    check();
}

void QueueListTest::unchangedValues_signalNothing()
{
    QSignalSpy active(m_queue.get(), &CompressionQueue::hasActiveTasksChanged);
    QSignalSpy completed(m_queue.get(), &CompressionQueue::completedCountChanged);
    QSignalSpy saved(m_queue.get(), &CompressionQueue::totalSavedChanged);
    QSignalSpy removed(m_queue.get(), &CompressionQueue::tasksRemoved);
    m_queue->clearAll();
    m_queue->clearCompleted();
    QCOMPARE(removed.size(), 0);
    add({file(u"a.png"_s)});
    QTRY_COMPARE(completed.size(), 1);
    QCOMPARE(active.size(), 2); // on, off
    QCOMPARE(saved.size(), 1);
    add({QUrl::fromLocalFile(m_folder->filePath(u"no.png"_s))});
    QTRY_COMPARE(m_queue->activeTasks(), 0);
    QCOMPARE(completed.size(), 1);
    QCOMPARE(saved.size(), 1);
}

void QueueListTest::destroyedQueue_writesNothing()
{
    m_server->hold();
    add({file(u"a.png"_s), file(u"b.png"_s)});
    add({file(u"c.png"_s)});
    QTRY_COMPARE(m_server->requests.size(), 2);
    m_server->releaseOne();
    QTRY_COMPARE(m_server->requests.size(), 3);
    QSignalSpy changed(m_queue.get(), &CompressionQueue::taskChanged);
    m_queue.reset();
    m_server->release();
    QCoreApplication::processEvents();
    QCOMPARE(changed.size(), 0);
    QCOMPARE(QDir(m_folder->path()).entryList(QDir::Files),
             QStringList({u"a.png"_s, u"b.png"_s, u"c.png"_s}));
    QCOMPARE(m_server->requests.size(), 3);
}

QTEST_GUILESS_MAIN(QueueListTest)
#include "tst_queuelist.moc"

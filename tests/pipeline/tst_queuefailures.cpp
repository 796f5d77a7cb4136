// SPDX-FileCopyrightText: 2026 The Pixpress authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "pipeline/queueoftest.h"

#include <QDir>
#include <QTest>

using namespace pixpress;
using namespace pixpress::test;
using namespace Qt::StringLiterals;

class QueueFailuresTest : public QObject, private QueueOfTest
{
    Q_OBJECT

private Q_SLOTS:
    void init() { makeQueue(); }
    void cleanup() { removeQueue(); }

    void withoutKey_onlyTheFirstFails();
    void withUsedUpQuota_onlyTheFirstFails();
    void refusedTasks_waitForTheNextCall_data();
    void refusedTasks_waitForTheNextCall();
    void quota_takesTheServicesNumber_data();
    void quota_takesTheServicesNumber();
    void quotaUpdate_staysWhenTheFetchFails();
    void quotaUpdate_rollsTheMonthOver();
    void withoutTracker_runsAll();
    void failure_isRecordedAndTheNextTaskRuns_data();
    void failure_isRecordedAndTheNextTaskRuns();
    void lostConnection_isRecordedAndTheNextTaskRuns_data();
    void lostConnection_isRecordedAndTheNextTaskRuns();
    void outputThatCannotBeWritten_isRecordedAndTheNextTaskRuns();
    void emptyOutput_leavesTheSourceAlone_data();
    void emptyOutput_leavesTheSourceAlone();
    void thousandUnreadableFiles_failWithoutRecursion();
};

void QueueFailuresTest::withoutKey_onlyTheFirstFails()
{
    KeychainHelper::saveAPIKey(*m_settings, u""_s);
    add({file(u"1.png"_s), file(u"2.png"_s), file(u"3.png"_s)});
    QCOMPARE(statuses(), QStringList({u"No API key configured"_s, u"pending"_s, u"pending"_s}));
    QCOMPARE(m_queue->activeTasks(), 0);
    QCOMPARE(m_server->connections, 0);
}

void QueueFailuresTest::withUsedUpQuota_onlyTheFirstFails()
{
    m_tracker->setCurrentCount(500);
    add({file(u"1.png"_s), file(u"2.png"_s)});
    QCOMPARE(statuses(), QStringList({u"Monthly quota exhausted"_s, u"pending"_s}));

    // The count in memory decides, though a new month has begun.
    m_now = m_now.addMonths(1);
    add({});
    QCOMPARE(statuses(), QStringList({u"Monthly quota exhausted"_s, u"Monthly quota exhausted"_s}));
    QCOMPARE(m_server->connections, 0);
}

void QueueFailuresTest::refusedTasks_waitForTheNextCall_data()
{
    QTest::addColumn<bool>("retries");
    QTest::addColumn<int>("completed");
    QTest::newRow("files are added") << false << 2;
    QTest::newRow("the refused one is tried again") << true << 3;
}

void QueueFailuresTest::refusedTasks_waitForTheNextCall()
{
    QFETCH(const bool, retries);
    QFETCH(const int, completed);
    KeychainHelper::saveAPIKey(*m_settings, u""_s);
    add({file(u"1.png"_s), file(u"2.png"_s), file(u"3.png"_s)});
    KeychainHelper::saveAPIKey(*m_settings, u"key"_s);
    m_tracker->setCurrentCount(500);
    m_tracker->reset();
    QCoreApplication::processEvents();
    QCOMPARE(statuses(), QStringList({u"No API key configured"_s, u"pending"_s, u"pending"_s}));
    if (retries)
        m_queue->retryTask(m_queue->tasks()[0].id, {});
    else
        add({});
    QTRY_COMPARE(m_queue->completedCount(), completed);
}

void QueueFailuresTest::quota_takesTheServicesNumber_data()
{
    QTest::addColumn<std::optional<qint64>>("shrink");
    QTest::addColumn<std::optional<qint64>>("fetch");
    QTest::addColumn<qint64>("count");
    using Count = std::optional<qint64>;
    QTest::newRow("of the upload") << Count(12) << Count() << qint64(12);
    QTest::newRow("of the fetch") << Count(12) << Count(13) << qint64(13);
    QTest::newRow("of the fetch, lower") << Count(12) << Count(3) << qint64(3);
    QTest::newRow("0 of the upload counts") << Count(0) << Count() << qint64(0);
    QTest::newRow("none of the upload is 0") << Count() << Count() << qint64(0);
    QTest::newRow("0 of the fetch does not count") << Count(12) << Count(0) << qint64(12);
    QTest::newRow("negative of the fetch does not count") << Count(12) << Count(-4) << qint64(12);
    QTest::newRow("negative of the upload counts") << Count(-4) << Count() << qint64(-4);
}

void QueueFailuresTest::quota_takesTheServicesNumber()
{
    QFETCH(const std::optional<qint64>, shrink);
    QFETCH(const std::optional<qint64>, fetch);
    QFETCH(const qint64, count);
    m_tracker->setCurrentCount(480);
    m_shrinkCount = shrink;
    m_fetchCount = fetch;
    add({file(u"a.png"_s)});
    QTRY_COMPARE(m_queue->completedCount(), 1);
    QCOMPARE(m_tracker->currentCount(), count);
    QCOMPARE(m_settings->value(u"pixpress_quota_count"_s).toLongLong(), count);
}

void QueueFailuresTest::quotaUpdate_staysWhenTheFetchFails()
{
    m_server->setScript([this](const Request &request) {
        return request.target == "/shrink" ? shrinkAnswer(m_server->url(u"/output/x"_s), 77)
                                           : Answer{.status = 500};
    });
    add({file(u"a.png"_s)});
    QTRY_COMPARE(statuses(), QStringList(u"API error (500): Unknown error"_s));
    QCOMPARE(m_tracker->currentCount(), 77);
}

void QueueFailuresTest::quotaUpdate_rollsTheMonthOver()
{
    m_tracker->setCurrentCount(499);
    m_shrinkCount = 2;
    m_now = QDateTime(QDate(2026, 12, 1), QTime(0, 0));
    QList<qint64> counts;
    connect(m_tracker.get(), &QuotaTracker::currentCountChanged, this,
            [&] { counts.append(m_tracker->currentCount()); });
    add({file(u"a.png"_s)});
    QTRY_COMPARE(m_queue->completedCount(), 1);
    QCOMPARE(counts, QList<qint64>({0, 2}));
    QCOMPARE(m_settings->value(u"pixpress_quota_count"_s).toLongLong(), 2);
    QCOMPARE(m_settings->value(u"pixpress_quota_month"_s).toString(), u"2026-12"_s);
}

void QueueFailuresTest::withoutTracker_runsAll()
{
    m_tracker->setCurrentCount(500);
    m_queue->setQuotaTracker(nullptr);
    m_shrinkCount = 3;
    add({file(u"a.png"_s)});
    QTRY_COMPARE(m_queue->completedCount(), 1);
    QCOMPARE(m_tracker->currentCount(), 500);
}

void QueueFailuresTest::failure_isRecordedAndTheNextTaskRuns_data()
{
    QTest::addColumn<int>("shrinkStatus");
    QTest::addColumn<int>("fetchStatus");
    QTest::addColumn<QString>("error");
    QTest::newRow("upload refused") << 401 << 200 << u"Invalid API key"_s;
    QTest::newRow("upload too large") << 413 << 200 << u"File exceeds 500 MB limit"_s;
    QTest::newRow("limit reached")
        << 429 << 200 << u"Monthly compression limit reached (500/month)"_s;
    QTest::newRow("upload answered with 200") << 200 << 200 << u"API error (200): Unknown error"_s;
    QTest::newRow("output gone") << 201 << 404 << u"API error (404): Unknown error"_s;
}

void QueueFailuresTest::failure_isRecordedAndTheNextTaskRuns()
{
    QFETCH(const int, shrinkStatus);
    QFETCH(const int, fetchStatus);
    QFETCH(const QString, error);
    m_server->setScript([&](const Request &request) {
        Answer answer = request.target == "/shrink" && shrinkStatus == 201
                            ? shrinkAnswer(m_server->url(u"/output/x"_s))
                            : Answer{};
        answer.status = request.target == "/shrink" ? shrinkStatus : fetchStatus;
        return answer;
    });
    add({file(u"1.png"_s), file(u"2.png"_s), QUrl::fromLocalFile(m_folder->filePath(u"no.png"_s)),
         file(u"3.png"_s)});
    const QString unread = u"Could not read \"no.png\": No such file or directory."_s;
    QTRY_COMPARE(statuses(), QStringList({error, error, unread, error}));
    QCOMPARE(m_queue->activeTasks(), 0);
    QCOMPARE(QDir(m_folder->path()).entryList(QDir::Files),
             QStringList({u"1.png"_s, u"2.png"_s, u"3.png"_s}));
}

void QueueFailuresTest::lostConnection_isRecordedAndTheNextTaskRuns_data()
{
    QTest::addColumn<int>("answered"); // requests, before connections end without an answer
    QTest::addColumn<int>("lost");
    QTest::newRow("in the upload") << 0 << 1;
    QTest::newRow("in the fetch") << 1 << 2; // which, being a GET, is repeated once
}

void QueueFailuresTest::lostConnection_isRecordedAndTheNextTaskRuns()
{
    QFETCH(const int, answered);
    QFETCH(const int, lost);
    m_server->hold();
    add({file(u"1.png"_s), file(u"2.png"_s)});
    for (int i = 0; i < answered + lost; ++i) {
        QTRY_COMPARE(m_server->waiting(), 1);
        if (i < answered)
            m_server->releaseOne();
        else
            m_server->dropOne();
    }
    QTRY_COMPARE(statuses(),
                 QStringList({u"The network connection was lost."_s, u"compressing"_s}));
    QTRY_COMPARE(m_server->waiting(), 1);
    m_server->release();
    QTRY_COMPARE(m_queue->completedCount(), 1);
    QCOMPARE(m_queue->activeTasks(), 0);
    QCOMPARE(contentOf(u"1-pixpress.png"_s), "(no such file)");
    QCOMPARE(contentOf(u"2-pixpress.png"_s), "output");
}

void QueueFailuresTest::outputThatCannotBeWritten_isRecordedAndTheNextTaskRuns()
{
    const QString folder = m_folder->filePath(u"out"_s);
    m_server->hold();
    add({file(u"1.png"_s)}, {.outputDestination = OutputDestination::customFolder,
                             .customFolderURL = QUrl::fromLocalFile(folder)});
    add({file(u"2.png"_s), file(u"3.png"_s)});
    QTRY_COMPARE(m_server->waiting(), 2);
    m_server->release();
    QTRY_COMPARE(m_queue->activeTasks(), 0);
    QCOMPARE(statuses(), QStringList({u"Could not write \"1.png\": No such file or directory."_s,
                                      u"completed"_s, u"completed"_s}));
    QVERIFY(!QFile::exists(folder));
    QCOMPARE(contentOf(u"3-pixpress.png"_s), "output");
}

void QueueFailuresTest::emptyOutput_leavesTheSourceAlone_data()
{
    QTest::addColumn<OutputDestination>("destination");
    QTest::newRow("overwrite") << OutputDestination::overwrite;
    QTest::newRow("alongside") << OutputDestination::alongside;
}

void QueueFailuresTest::emptyOutput_leavesTheSourceAlone()
{
    QFETCH(const OutputDestination, destination);
    m_output.clear();
    m_fetchCount = 7;
    add({file(u"1.png"_s)}, {.outputDestination = destination});
    QTRY_COMPARE(statuses(), QStringList(u"Failed to download compressed image"_s));
    QCOMPARE(contentOf(u"1.png"_s), "source");
    QCOMPARE(QDir(m_folder->path()).entryList(QDir::Files), QStringList(u"1.png"_s));
    QCOMPARE(m_tracker->currentCount(), 7);
    m_output = "output";
    add({file(u"2.png"_s)});
    QTRY_COMPARE(m_queue->completedCount(), 1);
}

void QueueFailuresTest::thousandUnreadableFiles_failWithoutRecursion()
{
    const QUrl missing = QUrl::fromLocalFile(m_folder->filePath(u"no.png"_s));
    int depth = 0;
    int deepest = 0;
    connect(m_queue.get(), &CompressionQueue::activeTasksChanged, this, [&] {
        depth += m_queue->activeTasks() > 0 ? 1 : -1;
        deepest = std::max(deepest, depth);
    });
    add(QList<QUrl>(1000, missing));
    QTRY_VERIFY(m_queue->firstPending() < 0);
    QCOMPARE(m_queue->activeTasks(), 0);
    QCOMPARE(deepest, 1);
}

QTEST_GUILESS_MAIN(QueueFailuresTest)
#include "tst_queuefailures.moc"

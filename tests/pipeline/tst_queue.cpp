// SPDX-FileCopyrightText: 2026 The Pixpress authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "pipeline/queue.h"

#include "support/scriptedserver.h"

#include <QFile>
#include <QProcess>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QTest>

using namespace pixpress;
using namespace pixpress::test;
using namespace Qt::StringLiterals;

namespace {

QString text(const TaskStatus &status)
{
    struct Visitor
    {
        QString operator()(const status::Completed &) const { return u"completed"_s; }
        QString operator()(const status::Failed &failed) const { return failed.error; }
        QString operator()(const status::Pending &) const { return u"pending"_s; }
        QString operator()(const status::Uploading &) const { return u"uploading"_s; }
        QString operator()(const status::Compressing &) const { return u"compressing"_s; }
        QString operator()(const status::Downloading &) const { return u"downloading"_s; }
    };
    return std::visit(Visitor{}, status);
}

} // namespace

class QueueTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void cleanup();

    void task_passesThroughEveryStatus();
    void result_isWhatTheServiceToldOfTheUpload();
    void batch_runsOneAfterAnother();
    void filesAddedWhileOthersRun_runBesideThem();
    void filesAddedInOneTurn_startOneTaskEach();
    void addFiles_keepsSupportedFilesOnly();
    void addFiles_takesTheSameFileTwice();

    void withoutKey_onlyTheFirstFails();
    void withUsedUpQuota_onlyTheFirstFails();
    void refusedTasks_waitForTheNextCall();

    void quota_takesTheServicesNumber_data();
    void quota_takesTheServicesNumber();
    void quotaUpdate_staysWhenTheFetchFails();
    void quotaUpdate_rollsTheMonthOver();
    void withoutTracker_runsAll();

    void fetch_carriesOptionsOnlyWhenTheyAsk();
    void failure_isRecordedAndTheNextTaskRuns_data();
    void failure_isRecordedAndTheNextTaskRuns();
    void lostConnection_isRecordedAndTheNextTaskRuns_data();
    void lostConnection_isRecordedAndTheNextTaskRuns();
    void outputThatCannotBeWritten_isRecordedAndTheNextTaskRuns();
    void emptyOutput_leavesTheSourceAlone_data();
    void emptyOutput_leavesTheSourceAlone();
    void thousandUnreadableFiles_failWithoutRecursion();

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

private:
    QUrl file(const QString &name, const QByteArray &content = "source");
    QByteArray contentOf(const QString &name);
    QStringList statuses() const;
    void add(const QList<QUrl> &urls, const CompressionOptions &options = {});
    void makeQueue();

    std::unique_ptr<QTemporaryDir> m_folder;
    std::unique_ptr<ScriptedServer> m_server;
    std::unique_ptr<TransientSettings> m_settings;
    std::unique_ptr<QuotaTracker> m_tracker;
    std::unique_ptr<CompressionQueue> m_queue;
    QDateTime m_now;
    std::optional<qint64> m_shrinkCount;
    std::optional<qint64> m_fetchCount;
    QByteArray m_output;
};

void QueueTest::init()
{
    m_folder = std::make_unique<QTemporaryDir>();
    m_shrinkCount.reset();
    m_fetchCount.reset();
    m_output = "output";
    m_now = QDateTime(QDate(2026, 11, 21), QTime(12, 0));
    m_server = std::make_unique<ScriptedServer>([this](const Request &request) {
        if (request.target == "/shrink")
            return shrinkAnswer(m_server->url(u"/output/x"_s), m_shrinkCount);
        Answer answer{.body = m_output};
        if (m_fetchCount)
            answer.headers.append({"Compression-Count", QByteArray::number(*m_fetchCount)});
        return answer;
    });
    m_settings = std::make_unique<TransientSettings>();
    KeychainHelper::saveAPIKey(*m_settings, u"key"_s);
    m_tracker = std::make_unique<QuotaTracker>(*m_settings, [this] { return m_now; });
    makeQueue();
}

void QueueTest::makeQueue()
{
    m_queue = std::make_unique<CompressionQueue>(
        *m_settings, ServiceConfig{.baseURL = m_server->url(), .limits = {}});
    m_queue->setQuotaTracker(m_tracker.get());
}

void QueueTest::cleanup()
{
    m_queue.reset();
    m_tracker.reset();
    m_server.reset();
}

QUrl QueueTest::file(const QString &name, const QByteArray &content)
{
    QFile file(m_folder->filePath(name));
    if (!file.open(QIODevice::WriteOnly) || file.write(content) != content.size())
        qFatal("The test cannot write its files.");
    return QUrl::fromLocalFile(file.fileName());
}

QByteArray QueueTest::contentOf(const QString &name)
{
    QFile file(m_folder->filePath(name));
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray("(no such file)");
}

QStringList QueueTest::statuses() const
{
    QStringList list;
    for (const CompressionTask &task : m_queue->tasks())
        list.append(text(task.status));
    return list;
}

void QueueTest::add(const QList<QUrl> &urls, const CompressionOptions &options)
{
    m_queue->addFiles(urls, options);
}

void QueueTest::task_passesThroughEveryStatus()
{
    QStringList seen;
    connect(m_queue.get(), &CompressionQueue::taskChanged, m_queue.get(),
            [&](qsizetype index) { seen.append(text(m_queue->tasks()[index].status)); });
    add({file(u"a.png"_s)});
    QTRY_COMPARE(m_queue->completedCount(), 1);
    QCOMPARE(seen,
             QStringList({u"uploading"_s, u"compressing"_s, u"downloading"_s, u"completed"_s}));
    QCOMPARE(m_server->requests.size(), 2);
    QCOMPARE(m_server->requests[0].body, "source");
    QCOMPARE(contentOf(u"a-pixpress.png"_s), "output");
    QCOMPARE(contentOf(u"a.png"_s), "source");
    QCOMPARE(m_queue->activeTasks(), 0);
}

void QueueTest::result_isWhatTheServiceToldOfTheUpload()
{
    const QDateTime before = QDateTime::currentDateTime();
    add({file(u"a.png"_s)}, {.resizeEnabled = true,
                             .resizeWidth = 5,
                             .convertEnabled = true,
                             .convertFormat = ImageFormat::jpeg});
    QTRY_COMPARE(m_queue->completedCount(), 1);
    const auto result = std::get<status::Completed>(m_queue->tasks()[0].status).result;
    QCOMPARE(result.originalSize, 1000);
    QCOMPARE(result.compressedSize, 6); // fetched, not the 371 that were announced
    QCOMPARE(result.outputURL, QUrl::fromLocalFile(m_folder->filePath(u"a-pixpress.jpg"_s)));
    QCOMPARE(result.inputType, u"image/png"_s);
    QCOMPARE(result.outputType, u"image/png"_s);
    QCOMPARE(result.width, 40);
    QCOMPARE(result.height, 30);
    QVERIFY(result.timestamp >= before && result.timestamp <= QDateTime::currentDateTime());
    QCOMPARE(m_queue->totalSaved(), 994);
}

void QueueTest::batch_runsOneAfterAnother()
{
    m_server->hold();
    QList<QUrl> urls;
    for (int i = 1; i <= 5; ++i)
        urls.append(file(u"%1.png"_s.arg(i)));
    add(urls);
    QStringList expected{u"compressing"_s, u"pending"_s, u"pending"_s, u"pending"_s, u"pending"_s};
    QCOMPARE(statuses(), expected);
    for (int i = 0; i < 5; ++i) {
        QTRY_COMPARE(m_server->requests.size(), 2 * i + 1);
        QCOMPARE(m_queue->activeTasks(), 1);
        m_server->releaseOne();
        QTRY_COMPARE(m_server->requests.size(), 2 * i + 2);
        expected[i] = u"downloading"_s;
        QCOMPARE(statuses(), expected);
        m_server->releaseOne();
        QTRY_COMPARE(m_queue->completedCount(), i + 1);
        expected[i] = u"completed"_s;
        if (i < 4)
            expected[i + 1] = u"compressing"_s;
        QCOMPARE(statuses(), expected);
    }
    QCOMPARE(m_queue->activeTasks(), 0);
}

void QueueTest::filesAddedWhileOthersRun_runBesideThem()
{
    m_server->hold();
    for (int i = 1; i <= 4; ++i) {
        add({file(u"%1.png"_s.arg(i))});
        QTRY_COMPARE(m_server->requests.size(), std::min(i, 3));
        QCOMPARE(m_queue->activeTasks(), std::min(i, 3));
    }
    QCOMPARE(statuses(),
             QStringList({u"compressing"_s, u"compressing"_s, u"compressing"_s, u"pending"_s}));
    m_server->releaseOne(); // the upload of one
    QTRY_COMPARE(m_server->requests.size(), 4);
    QCOMPARE(m_queue->tasks()[3].status, TaskStatus(status::Pending{}));
    m_server->release();
    QTRY_COMPARE(m_queue->completedCount(), 4);
}

void QueueTest::filesAddedInOneTurn_startOneTaskEach()
{
    m_server->hold();
    add({file(u"1.png"_s)});
    add({file(u"2.png"_s)});
    add({file(u"3.png"_s), file(u"4.png"_s)});
    QCOMPARE(m_queue->activeTasks(), 3);
    QTRY_COMPARE(m_server->requests.size(), 3);
    m_server->release();
    QTRY_COMPARE(m_queue->completedCount(), 4);
    QCOMPARE(m_server->requests.size(), 8); // nothing was sent twice
}

void QueueTest::addFiles_keepsSupportedFilesOnly()
{
    m_server->hold();
    QSignalSpy added(m_queue.get(), &CompressionQueue::tasksAdded);
    add({file(u"a.JPG"_s), file(u"notes.txt"_s), file(u"b.avif"_s), file(u"c.gif"_s),
         file(u"png"_s), file(u"d.WebP"_s), QUrl(), file(u"e.jpeg"_s)});
    QStringList names;
    for (const CompressionTask &task : m_queue->tasks())
        names.append(task.fileName);
    QCOMPARE(names, QStringList({u"a.JPG"_s, u"b.avif"_s, u"d.WebP"_s, u"e.jpeg"_s}));
    QCOMPARE(added.size(), 1);
    add({file(u"notes.txt"_s)});
    QCOMPARE(added.size(), 1);
}

void QueueTest::addFiles_takesTheSameFileTwice()
{
    const QUrl url = file(u"a.png"_s);
    add({url, url});
    QTRY_COMPARE(m_queue->completedCount(), 2);
    QCOMPARE(contentOf(u"a-pixpress.png"_s), "output");
    QCOMPARE(contentOf(u"a-pixpress-1.png"_s), "output");
}

void QueueTest::withoutKey_onlyTheFirstFails()
{
    KeychainHelper::saveAPIKey(*m_settings, u""_s);
    add({file(u"1.png"_s), file(u"2.png"_s), file(u"3.png"_s)});
    QCOMPARE(statuses(), QStringList({u"No API key configured"_s, u"pending"_s, u"pending"_s}));
    QCOMPARE(m_queue->activeTasks(), 0);
    QCOMPARE(m_server->connections, 0);
}

void QueueTest::withUsedUpQuota_onlyTheFirstFails()
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

void QueueTest::refusedTasks_waitForTheNextCall()
{
    KeychainHelper::saveAPIKey(*m_settings, u""_s);
    add({file(u"1.png"_s), file(u"2.png"_s), file(u"3.png"_s)});
    KeychainHelper::saveAPIKey(*m_settings, u"key"_s);
    m_tracker->setCurrentCount(500);
    m_tracker->reset();
    QCoreApplication::processEvents();
    QCOMPARE(statuses(), QStringList({u"No API key configured"_s, u"pending"_s, u"pending"_s}));
    add({});
    QTRY_COMPARE(m_queue->completedCount(), 2);
}

void QueueTest::quota_takesTheServicesNumber_data()
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

void QueueTest::quota_takesTheServicesNumber()
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

void QueueTest::quotaUpdate_staysWhenTheFetchFails()
{
    m_server->setScript([this](const Request &request) {
        return request.target == "/shrink" ? shrinkAnswer(m_server->url(u"/output/x"_s), 77)
                                           : Answer{.status = 500};
    });
    add({file(u"a.png"_s)});
    QTRY_COMPARE(statuses(), QStringList(u"API error (500): Unknown error"_s));
    QCOMPARE(m_tracker->currentCount(), 77);
}

void QueueTest::quotaUpdate_rollsTheMonthOver()
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

void QueueTest::withoutTracker_runsAll()
{
    m_tracker->setCurrentCount(500);
    m_queue->setQuotaTracker(nullptr);
    m_shrinkCount = 3;
    add({file(u"a.png"_s)});
    QTRY_COMPARE(m_queue->completedCount(), 1);
    QCOMPARE(m_tracker->currentCount(), 500);
}

void QueueTest::fetch_carriesOptionsOnlyWhenTheyAsk()
{
    add({file(u"a.png"_s)}, {.backgroundColor = u"#000000"_s});
    QTRY_COMPARE(m_queue->completedCount(), 1);
    QCOMPARE(m_server->requests[1].method, "GET");
    add({file(u"b.png"_s)}, {.preserveCreation = true});
    QTRY_COMPARE(m_queue->completedCount(), 2);
    QCOMPARE(m_server->requests[3].method, "POST");
    QCOMPARE(m_server->requests[3].body, R"({"preserve":["creation"]})");
}

void QueueTest::failure_isRecordedAndTheNextTaskRuns_data()
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

void QueueTest::failure_isRecordedAndTheNextTaskRuns()
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

void QueueTest::lostConnection_isRecordedAndTheNextTaskRuns_data()
{
    QTest::addColumn<int>("answered"); // requests, before connections end without an answer
    QTest::addColumn<int>("lost");
    QTest::newRow("in the upload") << 0 << 1;
    QTest::newRow("in the fetch") << 1 << 2; // which, being a GET, is repeated once
}

void QueueTest::lostConnection_isRecordedAndTheNextTaskRuns()
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

void QueueTest::outputThatCannotBeWritten_isRecordedAndTheNextTaskRuns()
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

void QueueTest::emptyOutput_leavesTheSourceAlone_data()
{
    QTest::addColumn<OutputDestination>("destination");
    QTest::newRow("overwrite") << OutputDestination::overwrite;
    QTest::newRow("alongside") << OutputDestination::alongside;
}

void QueueTest::emptyOutput_leavesTheSourceAlone()
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

void QueueTest::thousandUnreadableFiles_failWithoutRecursion()
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

void QueueTest::retry_appliesTheGivenOptions()
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

void QueueTest::retry_startsFromAnyStatus()
{
    add({file(u"a.png"_s)});
    QTRY_COMPARE(m_queue->completedCount(), 1);
    m_queue->retryTask(m_queue->tasks()[0].id, {});
    QCOMPARE(m_queue->completedCount(), 0);
    QTRY_COMPARE(m_queue->completedCount(), 1);
    QCOMPARE(contentOf(u"a-pixpress-1.png"_s), "output");
}

void QueueTest::retryOfUnknownTask_doesNothing()
{
    KeychainHelper::saveAPIKey(*m_settings, u""_s);
    add({file(u"a.png"_s), file(u"b.png"_s)});
    m_queue->retryTask(QUuid::createUuid(), {});
    QCOMPARE(statuses(), QStringList({u"No API key configured"_s, u"pending"_s}));
}

void QueueTest::clearCompleted_keepsPendingAndRunningInOrder()
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
    QCOMPARE(removed.size(), 1);
    QCOMPARE(m_queue->completedCount(), 0);
    QCOMPARE(m_queue->totalSaved(), 0);
    m_queue->clearCompleted();
    QCOMPARE(removed.size(), 1);

    m_server->release();
    QTRY_COMPARE(m_queue->completedCount(), 3);
}

void QueueTest::clearCompletedDuringUpload_marksTheTaskAtTheOldIndex()
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

void QueueTest::clearAllDuringFetch_stillWritesTheFile()
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

void QueueTest::clearAllDuringUpload_isFatal()
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

void QueueTest::listClearedBeforeTheTaskStarts_endsItsRun()
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

void QueueTest::totals_equalARecomputation()
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

void QueueTest::unchangedValues_signalNothing()
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

void QueueTest::destroyedQueue_writesNothing()
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

QTEST_GUILESS_MAIN(QueueTest)
#include "tst_queue.moc"

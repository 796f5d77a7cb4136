// SPDX-FileCopyrightText: 2026 The Pixpress authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "pipeline/queueoftest.h"

#include <QSignalSpy>
#include <QTest>

using namespace pixpress;
using namespace pixpress::test;
using namespace Qt::StringLiterals;

class QueueTest : public QObject, private QueueOfTest
{
    Q_OBJECT

private Q_SLOTS:
    void init() { makeQueue(); }
    void cleanup() { removeQueue(); }

    void task_passesThroughEveryStatus();
    void result_isWhatTheServiceToldOfTheUpload();
    void batch_runsOneAfterAnother();
    void filesAddedWhileOthersRun_runBesideThem();
    void filesAddedInOneTurn_startOneTaskEach();
    void addFiles_keepsSupportedFilesOnly();
    void addFiles_keepsTheOrderOfThousands();
    void addFiles_takesTheSameFileTwice();
    void fetch_carriesOptionsOnlyWhenTheyAsk();
};

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

void QueueTest::addFiles_keepsTheOrderOfThousands()
{
    m_server->hold();
    add({file(u"first.png"_s)});
    QList<QUrl> urls;
    QStringList expected{u"first.png"_s};
    for (int i = 0; i < 3001; ++i) {
        const QString name = u"%1.%2"_s.arg(i).arg(i % 7 == 0 ? u"txt" : u"png");
        urls.append(QUrl::fromLocalFile(m_folder->filePath(name)));
        if (i % 7 != 0)
            expected.append(name);
    }
    QSignalSpy added(m_queue.get(), &CompressionQueue::tasksAdded);
    file(u"1.png"_s, "first half");
    file(u"3000.png"_s, "last of the other half");
    add(urls);
    QCOMPARE(added.size(), 1);
    QCOMPARE(added[0], QVariantList({qsizetype{1}, expected.size() - 1}));
    QStringList names;
    for (const CompressionTask &task : m_queue->tasks()) {
        QCOMPARE(m_queue->indexOf(task.id), names.size());
        names.append(task.fileName);
    }
    QCOMPARE(names, expected);
    QCOMPARE(m_queue->tasks()[1].originalSize, 10);
    QCOMPARE(m_queue->tasks().last().originalSize, 22);
    QCOMPARE(m_queue->firstPending(), 2); // each call starts one
}

void QueueTest::addFiles_takesTheSameFileTwice()
{
    const QUrl url = file(u"a.png"_s);
    add({url, url});
    QTRY_COMPARE(m_queue->completedCount(), 2);
    QCOMPARE(contentOf(u"a-pixpress.png"_s), "output");
    QCOMPARE(contentOf(u"a-pixpress-1.png"_s), "output");
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

QTEST_GUILESS_MAIN(QueueTest)
#include "tst_queue.moc"

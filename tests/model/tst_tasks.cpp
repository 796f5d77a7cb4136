// SPDX-FileCopyrightText: 2026 The Pixpress authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "model/tasks.h"

#include "support/child.h"

#include <QDir>
#include <QFile>
#include <QSet>
#include <QTemporaryDir>
#include <QTest>

#include <limits>

using namespace pixpress;
using namespace Qt::StringLiterals;

class TasksTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void newTask_isPendingWithItsFilesSize();
    void newTaskOfFile_hasItsSize_data();
    void newTaskOfFile_hasItsSize();
    void newTaskOfMissingFile_hasSizeZero();
    void newTaskOfUnreachableFile_hasSizeZero();
    void newTaskOfLink_hasThePicturesSize();
    void newTask_isNamedByTheLastPathComponent_data();
    void newTask_isNamedByTheLastPathComponent();
    void newTask_keepsTheSizeOfItsMoment();
    void newTask_copiesItsOptions();
    void newTasks_areNeverEqual();
    void copiedTask_isEqualUntilAFieldDiffers();
    void onlyRunningStatuses_areActive();
    void statuses_compareByCaseAndContent();
    void anyFieldThatDiffers_makesResultsUnequal_data();
    void anyFieldThatDiffers_makesResultsUnequal();
    void savings_areTruncatedTowardZero_data();
    void savings_areTruncatedTowardZero();
    void savingsBeyond64Bits_areFatal();
};

static void writeFile(const QString &path, const QByteArray &content)
{
    QFile file(path);
    QVERIFY(file.open(QIODevice::WriteOnly));
    QCOMPARE(file.write(content), content.size());
}

void TasksTest::newTask_isPendingWithItsFilesSize()
{
    const QTemporaryDir folder;
    const QUrl url = QUrl::fromLocalFile(folder.filePath(u"a.png"_s));
    writeFile(url.toLocalFile(), "12345");
    const CompressionOptions options{.convertEnabled = true};

    const QDateTime before = QDateTime::currentDateTime();
    const CompressionTask task(url, options);
    const QDateTime after = QDateTime::currentDateTime();

    QVERIFY(!task.id.isNull());
    QCOMPARE(task.id.version(), QUuid::Random);
    QCOMPARE(task.id.variant(), QUuid::DCE);
    QCOMPARE(task.sourceURL, url);
    QCOMPARE(task.fileName, u"a.png"_s);
    QCOMPARE(task.originalSize, 5);
    QVERIFY(task.status == TaskStatus(status::Pending{}));
    QVERIFY(task.options == options);
    QVERIFY(before <= task.addedAt && task.addedAt <= after);
}

void TasksTest::newTaskOfFile_hasItsSize_data()
{
    QTest::addColumn<qint64>("size");
    QTest::newRow("empty") << qint64(0);
    QTest::newRow("one byte") << qint64(1);
    QTest::newRow("beyond 32 bits") << qint64(5'000'000'001);
}

void TasksTest::newTaskOfFile_hasItsSize()
{
    QFETCH(const qint64, size);
    const QTemporaryDir folder;
    QFile file(folder.filePath(u"a.png"_s));
    QVERIFY(file.open(QIODevice::WriteOnly) && file.resize(size)); // takes no room on the disk
    const CompressionTask task(QUrl::fromLocalFile(file.fileName()), {});
    QCOMPARE(task.originalSize, size);
    QVERIFY(task.status == TaskStatus(status::Pending{}));
}

void TasksTest::newTaskOfMissingFile_hasSizeZero()
{
    const QTemporaryDir folder;
    const CompressionTask task(QUrl::fromLocalFile(folder.filePath(u"none/gone.JPG"_s)), {});
    QCOMPARE(task.originalSize, 0);
    QCOMPARE(task.fileName, u"gone.JPG"_s);
    QVERIFY(task.status == TaskStatus(status::Pending{}));
}

void TasksTest::newTaskOfUnreachableFile_hasSizeZero()
{
    const QTemporaryDir folder;
    QDir(folder.path()).mkdir(u"closed"_s);
    const QString path = folder.filePath(u"closed/a.png"_s);
    writeFile(path, "12345");
    const auto sizeForNobody = [&path] {
        return test::dropPrivileges()
                   ? QString::number(CompressionTask(QUrl::fromLocalFile(path), {}).originalSize)
                   : u"still root"_s;
    };

    const QFile::Permissions open =
        QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner | QFile::ReadOther | QFile::ExeOther;
    QVERIFY(QFile::setPermissions(folder.path(), open));
    QCOMPARE(test::inChild(sizeForNobody).answer, u"5"_s);

    QVERIFY(QFile::setPermissions(folder.filePath(u"closed"_s), {}));
    QCOMPARE(test::inChild(sizeForNobody).answer, u"0"_s);
    QVERIFY(QFile::setPermissions(folder.filePath(u"closed"_s), open)); // so that it can be removed
}

void TasksTest::newTaskOfLink_hasThePicturesSize()
{
    const QTemporaryDir folder;
    writeFile(folder.filePath(u"picture.png"_s), QByteArray(1234, 'x'));
    QVERIFY(QFile::link(u"picture.png"_s, folder.filePath(u"link.png"_s)));
    QVERIFY(QFile::link(u"gone.png"_s, folder.filePath(u"dangling.png"_s)));
    QCOMPARE(CompressionTask(QUrl::fromLocalFile(folder.filePath(u"link.png"_s)), {}).originalSize,
             1234);
    QCOMPARE(
        CompressionTask(QUrl::fromLocalFile(folder.filePath(u"dangling.png"_s)), {}).originalSize,
        0);
}

void TasksTest::newTask_isNamedByTheLastPathComponent_data()
{
    QTest::addColumn<QUrl>("url");
    QTest::addColumn<QString>("name");
    const auto row = [](const char *path, const char *name) {
        QTest::newRow(path) << QUrl::fromLocalFile(QString::fromUtf8(path))
                            << QString::fromUtf8(name);
    };
    row("/x/photo.final.PNG", "photo.final.PNG");
    row("/photo.png", "photo.png");
    row("/x/.hidden.jpg", ".hidden.jpg");
    row("/x/no extension", "no extension");
    row("/x/100%25 #1? [a].png", "100%25 #1? [a].png");
    row("/x/Größe – 大きさ 🐈.webp", "Größe – 大きさ 🐈.webp");
    row("/x/a\\b;c&d=e.png", "a\\b;c&d=e.png");
    row("/x.y/z", "z");
    row("/x/folder.png/", "folder.png");
    QTest::newRow("encoded") << QUrl(u"file:///x/a%20b%23c.png"_s) << u"a b#c.png"_s;
    QTest::newRow("encoded percent") << QUrl(u"file:///x/100%25.png"_s) << u"100%.png"_s;
}

void TasksTest::newTask_isNamedByTheLastPathComponent()
{
    QFETCH(const QUrl, url);
    QFETCH(const QString, name);
    const CompressionTask task(url, {});
    QCOMPARE(task.fileName, name);
    QCOMPARE(task.sourceURL, url);
}

void TasksTest::newTask_keepsTheSizeOfItsMoment()
{
    const QTemporaryDir folder;
    const QString path = folder.filePath(u"a.png"_s);
    writeFile(path, "123");
    const CompressionTask task(QUrl::fromLocalFile(path), {});
    writeFile(path, "123456");
    QCOMPARE(task.originalSize, 3);
}

void TasksTest::newTask_copiesItsOptions()
{
    CompressionOptions options{.backgroundColor = u"#000000"_s};
    const CompressionTask task(QUrl(u"file:///a.png"_s), options);
    options.backgroundColor = u"#111111"_s;
    options.resizeWidth = 3;
    QVERIFY(task.options == CompressionOptions{.backgroundColor = u"#000000"_s});
}

void TasksTest::newTasks_areNeverEqual()
{
    QSet<QUuid> ids;
    for (int i = 0; i < 1000; ++i)
        ids << CompressionTask(QUrl(u"file:///a.png"_s), {}).id;
    QCOMPARE(ids.size(), 1000);
    const QDateTime before = CompressionTask(QUrl(u"file:///a.png"_s), {}).addedAt;
    QTRY_VERIFY(CompressionTask(QUrl(u"file:///a.png"_s), {}).addedAt > before);

    const CompressionTask first(QUrl(u"file:///a.png"_s), {});
    CompressionTask second(QUrl(u"file:///a.png"_s), {});
    second.addedAt = first.addedAt;
    QVERIFY(first != second);
}

void TasksTest::copiedTask_isEqualUntilAFieldDiffers()
{
    const CompressionTask task(QUrl(u"file:///a.png"_s), {});
    const auto differsAfter = [&task](const auto &change) {
        CompressionTask copy = task;
        if (copy != task)
            return false;
        change(copy);
        return copy != task;
    };
    QVERIFY(differsAfter([](CompressionTask &copy) { copy.id = QUuid::createUuid(); }));
    QVERIFY(differsAfter([](CompressionTask &copy) { copy.sourceURL = QUrl(u"file:///b"_s); }));
    QVERIFY(differsAfter([](CompressionTask &copy) { copy.fileName += u'x'; }));
    QVERIFY(differsAfter([](CompressionTask &copy) { ++copy.originalSize; }));
    QVERIFY(differsAfter([](CompressionTask &copy) { copy.status = status::Uploading{}; }));
    QVERIFY(differsAfter([](CompressionTask &copy) { copy.options.resizeEnabled = true; }));
    QVERIFY(differsAfter([](CompressionTask &copy) { copy.addedAt = copy.addedAt.addMSecs(1); }));
}

void TasksTest::onlyRunningStatuses_areActive()
{
    QVERIFY(!isActive(status::Pending{}));
    QVERIFY(isActive(status::Uploading{}));
    QVERIFY(isActive(status::Compressing{}));
    QVERIFY(isActive(status::Downloading{}));
    QVERIFY(!isActive(status::Completed{}));
    QVERIFY(!isActive(status::Failed{u"uploading"_s}));
}

void TasksTest::statuses_compareByCaseAndContent()
{
    const CompressionResult result{.timestamp = QDateTime::fromSecsSinceEpoch(1)};
    CompressionResult later = result;
    later.timestamp = result.timestamp.addMSecs(1);
    const QList<TaskStatus> different{
        status::Completed{result}, status::Completed{later}, status::Failed{u"a"_s},
        status::Failed{u"b"_s},    status::Failed{},         status::Pending{},
        status::Uploading{},       status::Compressing{},    status::Downloading{}};
    for (qsizetype i = 0; i < different.size(); ++i) {
        for (qsizetype j = 0; j < different.size(); ++j)
            QCOMPARE(different[i] == TaskStatus(different[j]), i == j);
    }
}

void TasksTest::anyFieldThatDiffers_makesResultsUnequal_data()
{
    QTest::addColumn<CompressionResult>("changed");
    QTest::newRow("originalSize") << CompressionResult{.originalSize = 1};
    QTest::newRow("compressedSize") << CompressionResult{.compressedSize = 1};
    QTest::newRow("outputURL") << CompressionResult{.outputURL = QUrl(u"file:///a"_s)};
    QTest::newRow("inputType") << CompressionResult{.inputType = u"image/png"_s};
    QTest::newRow("outputType") << CompressionResult{.outputType = u"image/png"_s};
    QTest::newRow("width") << CompressionResult{.width = 1};
    QTest::newRow("height") << CompressionResult{.height = 1};
    QTest::newRow("timestamp") << CompressionResult{.timestamp = QDateTime::currentDateTime()};
}

void TasksTest::anyFieldThatDiffers_makesResultsUnequal()
{
    QFETCH(const CompressionResult, changed);
    const CompressionResult copy = changed;
    QVERIFY(copy == changed);
    QVERIFY(changed != CompressionResult());
}

void TasksTest::savings_areTruncatedTowardZero_data()
{
    QTest::addColumn<qint64>("originalSize");
    QTest::addColumn<qint64>("compressedSize");
    QTest::addColumn<qint64>("percent");
    const auto row = [](qint64 originalSize, qint64 compressedSize, qint64 percent) {
        QTest::addRow("%lld of %lld", static_cast<long long>(compressedSize),
                      static_cast<long long>(originalSize))
            << originalSize << compressedSize << percent;
    };
    row(1000, 371, 62);
    row(1000, 1000, 0);
    row(1000, 1050, -5);
    row(1000, 1037, -3);
    row(1000, 1009, 0);
    row(1000, 1, 99);
    row(1000, 0, 100);
    row(3, 2, 33);
    row(1, 5, -400);
    row(0, 10, 0);
    row(0, 0, 0);
    row(-1, 10, 0);
    row(std::numeric_limits<qint64>::min(), 10, 0);
    row(100, 90, 9); // 9.999999999999998
    row(100, 92, 7); // 7.9999999999999964
    row(100, 75, 25);
    row(524'288'000, 131'072'000, 75);
    row(std::numeric_limits<qint64>::max(), 1, 100);
    row(std::numeric_limits<qint64>::max(), std::numeric_limits<qint64>::max(), 0);
    row(100, std::numeric_limits<qint64>::max(), std::numeric_limits<qint64>::min()); // just fits
}

void TasksTest::savings_areTruncatedTowardZero()
{
    QFETCH(const qint64, originalSize);
    QFETCH(const qint64, compressedSize);
    QFETCH(const qint64, percent);
    const CompressionResult result{.originalSize = originalSize, .compressedSize = compressedSize};
    QCOMPARE(result.savingsPercentage(), percent);
}

void TasksTest::savingsBeyond64Bits_areFatal()
{
    const auto result = test::inChild([] {
        const CompressionResult result{.originalSize = 1,
                                       .compressedSize = std::numeric_limits<qint64>::max()};
        return QString::number(result.savingsPercentage());
    });
    QCOMPARE(result.answer, QString());
    QCOMPARE(result.signal, SIGABRT);
}

QTEST_GUILESS_MAIN(TasksTest)
#include "tst_tasks.moc"

// SPDX-FileCopyrightText: 2026 The Pixpress authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "pipeline/queue.h"
#include "worker/localservice.h"
#include "worker/worker.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>
#include <QTest>

#include <sys/resource.h>
#include <unistd.h>

using namespace pixpress;
using namespace Qt::StringLiterals;

namespace {

QByteArray sample(const QString &name)
{
    QFile file(QStringLiteral(PIXPRESS_SAMPLES "/") + name);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

constexpr auto imageLibraries = {"libvips", "libheif", "libwebp", "libjpeg", "libimagequant"};

QByteArray contents(const QString &path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

} // namespace

class WorkerTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void pictureOfEachFormat_isCompressed_data()
    {
        QTest::addColumn<QString>("name");
        QTest::addColumn<ImageFormat>("format");
        QTest::newRow("png") << u"island map.png"_s << ImageFormat::png;
        QTest::newRow("jpeg") << u"lake at dusk.jpg"_s << ImageFormat::jpeg;
        QTest::newRow("webp") << u"marbled ink.webp"_s << ImageFormat::webp;
        QTest::newRow("avif") << u"city by night.avif"_s << ImageFormat::avif;
    }

    void pictureOfEachFormat_isCompressed()
    {
        QFETCH(QString, name);
        QFETCH(ImageFormat, format);
        const QByteArray picture = sample(name);
        const auto plain = compress(picture, {});
        QVERIFY2(plain, qPrintable(plain ? QString() : plain.error()));
        QCOMPARE(plain->inputFormat, format);
        QCOMPARE(plain->outputFormat, format);
        QVERIFY(!plain->bytes.isEmpty() && plain->bytes.size() < picture.size());

        const auto converted = compress(picture, {.resizeEnabled = true,
                                                  .resizeWidth = 40,
                                                  .resizeHeight = std::nullopt,
                                                  .convertEnabled = true,
                                                  .convertFormat = ImageFormat::webp});
        QVERIFY2(converted, qPrintable(converted ? QString() : converted.error()));
        QCOMPARE(converted->inputFormat, format);
        QCOMPARE(converted->outputFormat, ImageFormat::webp);
        QCOMPARE(converted->width, 40);
        QCOMPARE(converted->bytes.first(4), "RIFF");
    }

    void thumbnail_isMade()
    {
        QFile picture(QStringLiteral(PIXPRESS_SAMPLES "/lake at dusk.jpg"));
        QVERIFY(picture.open(QIODevice::ReadOnly));
        std::optional<std::expected<Thumbnail, QString>> answer;
        m_worker.makeThumbnail(picture.handle(), 72, [&](const auto &result) { answer = result; });
        picture.close(); // the worker has a descriptor of its own
        QTRY_VERIFY(answer);
        QVERIFY(*answer);
        QCOMPARE(std::max((*answer)->width, (*answer)->height), 72);
        QCOMPARE((*answer)->rgba.size(), 4 * (*answer)->width * (*answer)->height);
    }

    void failure_isASentence_data()
    {
        QTest::addColumn<QByteArray>("picture");
        QTest::addColumn<QString>("sentence");
        const QString noImage = u"The file is not a PNG, JPEG, WebP or AVIF image."_s;
        const QString damaged = u"The image is damaged or incomplete."_s;
        QTest::newRow("nothing") << QByteArray() << noImage;
        QTest::newRow("text") << QByteArray("Hello") << noImage;
        const QByteArray png = sample(u"island map.png"_s);
        QTest::newRow("half a PNG") << png.first(png.size() / 2) << damaged;
        const QByteArray jpeg = sample(u"lake at dusk.jpg"_s);
        QTest::newRow("half a JPEG") << jpeg.first(jpeg.size() / 2) << damaged;
    }

    void failure_isASentence()
    {
        QFETCH(QByteArray, picture);
        QFETCH(QString, sentence);
        const auto result = compress(picture, {});
        QVERIFY(!result);
        QCOMPARE(result.error(), sentence);
    }

    void impossibleOptions_areRefused_data()
    {
        QTest::addColumn<qint64>("width");
        QTest::addColumn<QString>("background");
        QTest::addColumn<QString>("sentence");
        const QString sides = u"Width and height must be between 1 and 65535 pixels."_s;
        QTest::newRow("no width") << qint64(0) << u"#ffffff"_s << sides;
        QTest::newRow("negative") << qint64(-1) << u"#ffffff"_s << sides;
        QTest::newRow("too wide") << qint64(65'536) << u"#ffffff"_s << sides;
        QTest::newRow("colour") << qint64(10) << u"white"_s
                                << u"\"white\" is not a background colour."_s;
    }

    void impossibleOptions_areRefused()
    {
        QFETCH(qint64, width);
        QFETCH(QString, background);
        QFETCH(QString, sentence);
        const auto result =
            compress(sample(u"island map.png"_s), {.resizeEnabled = true,
                                                   .resizeWidth = width,
                                                   .resizeHeight = std::nullopt,
                                                   .convertEnabled = true,
                                                   .convertFormat = ImageFormat::jpeg,
                                                   .backgroundColor = background});
        QVERIFY(!result);
        QCOMPARE(result.error(), sentence);
    }

    void severalAtATime_getTheirOwnAnswers()
    {
        QHash<int, QByteArray> answers;
        for (int side = 10; side < 30; ++side) {
            m_worker.compress(
                sample(u"island map.png"_s),
                {.resizeEnabled = true, .resizeWidth = side, .resizeHeight = std::nullopt},
                [&answers, side](const auto &result) {
                    QCOMPARE(result->width, side);
                    answers.insert(side, result->bytes);
                });
        }
        QTRY_COMPARE(answers.size(), 20);
    }

    void cancelled_isNotAnswered()
    {
        bool isAnswered = false;
        m_worker.cancel(m_worker.compress(sample(u"island map.png"_s), {},
                                          [&](const auto &) { isAnswered = true; }));
        QVERIFY(compress(sample(u"island map.png"_s), {}));
        QVERIFY(!isAnswered);
    }

    void missingProgram_isNamed()
    {
        Worker worker({.program = u"/nowhere/pixpress-worker"_s});
        QString error;
        worker.compress("x", {}, [&](const auto &result) { error = result.error(); });
        QVERIFY(error.isEmpty()); // told from the event loop only
        QTRY_COMPARE(error, u"\"/nowhere/pixpress-worker\" could not be started: "
                            "No such file or directory."_s);
    }

    void noDescriptorLeft_isSaid()
    {
        rlimit before{};
        QCOMPARE(getrlimit(RLIMIT_NOFILE, &before), 0);
        const rlimit none{0, before.rlim_max};
        Worker worker;
        QString error;
        QCOMPARE(setrlimit(RLIMIT_NOFILE, &none), 0);
        worker.compress("x", {}, [&](const auto &result) { error = result.error(); });
        QCOMPARE(setrlimit(RLIMIT_NOFILE, &before), 0);
        QTRY_COMPARE(error, u"The picture could not be passed to pixpress-worker: "
                            "Too many open files."_s);
    }

    void noProcessLeft_isSaid()
    {
        if (geteuid() == 0)
            QSKIP("The limit of processes does not hold for root.");
        rlimit before{};
        QCOMPARE(getrlimit(RLIMIT_NPROC, &before), 0);
        const rlimit none{0, before.rlim_max};
        Worker worker;
        QString error;
        QCOMPARE(setrlimit(RLIMIT_NPROC, &none), 0);
        worker.compress("x", {}, [&](const auto &result) { error = result.error(); });
        QCOMPARE(setrlimit(RLIMIT_NPROC, &before), 0);
        QTRY_VERIFY(error.endsWith(u" could not be started: Resource temporarily unavailable."_s));
    }

    void fullWorker_isAskedAgain()
    {
        qputenv("PIXPRESS_LIE", "busy while another is under way");
        Worker worker({.program = QStringLiteral(PIXPRESS_LYING_WORKER)});
        QByteArrayList answers;
        for (const char *picture : {"first", "second", "third"})
            worker.compress(picture, {},
                            [&](const auto &result) { answers.append(result->bytes); });
        QTRY_COMPARE(answers.size(), 3);
        std::ranges::sort(answers);
        QCOMPARE(answers, (QByteArrayList{"first", "second", "third"}));
    }

    void destroyedWorker_leavesNoProcess()
    {
        {
            Worker worker;
            worker.compress(sample(u"city by night.avif"_s), {}, [](const auto &) { QFAIL(""); });
        }
        // That of this object is there, or not yet.
        const QByteArray children =
            contents(u"/proc/self/task/%1/children"_s.arg(QCoreApplication::applicationPid()));
        QVERIFY2(children.simplified().split(' ').size() <= 1, children.constData());
    }

    void queue_compressesWithoutAKey()
    {
        QTemporaryDir folder;
        QList<QUrl> files;
        for (const QString &name : {u"island map.png"_s, u"lake at dusk.jpg"_s}) {
            QVERIFY(
                QFile::copy(QStringLiteral(PIXPRESS_SAMPLES "/") + name, folder.filePath(name)));
            files.append(QUrl::fromLocalFile(folder.filePath(name)));
        }
        QFile broken(folder.filePath(u"broken.png"_s));
        QVERIFY(broken.open(QIODevice::WriteOnly) && broken.write("x") == 1);
        broken.close();
        files.insert(1, QUrl::fromLocalFile(broken.fileName()));

        TransientSettings settings;
        CompressionQueue queue(settings, std::make_unique<LocalService>(m_worker));
        queue.addFiles(files, {.convertEnabled = true, .convertFormat = ImageFormat::webp});
        QTRY_COMPARE(queue.completedCount(), 2);
        QTRY_COMPARE(queue.activeTasks(), 0);
        const auto *failed = std::get_if<status::Failed>(&queue.tasks()[1].status);
        QVERIFY(failed);
        QCOMPARE(failed->error, u"The file is not a PNG, JPEG, WebP or AVIF image."_s);
        const QByteArray written = contents(folder.filePath(u"island map-pixpress.webp"_s));
        QCOMPARE(written.first(4), "RIFF");
        QCOMPARE(written.sliced(8, 4), "WEBP");
    }

    void destroyedQueue_leavesItsTasks()
    {
        TransientSettings settings;
        auto queue =
            std::make_unique<CompressionQueue>(settings, std::make_unique<LocalService>(m_worker));
        queue->addFiles({QUrl::fromLocalFile(QStringLiteral(PIXPRESS_SAMPLES "/island map.png"))},
                        {});
        queue->addFiles({QUrl::fromLocalFile(QStringLiteral(PIXPRESS_SAMPLES "/island map.png"))},
                        {});
        QCOMPARE(queue->activeTasks(), 2);
        queue.reset();
        QVERIFY(compress(sample(u"island map.png"_s), {})); // answers to the queue are behind this
        QVERIFY(!QFile::exists(QStringLiteral(PIXPRESS_SAMPLES "/island map-pixpress.png")));
    }

    void thisProcess_hasNoDecoder()
    {
        QVERIFY(compress(sample(u"island map.png"_s), {}));
        const QByteArray maps = contents(u"/proc/self/maps"_s);
        QVERIFY(maps.contains("libQt6Core"));
        for (const char *library : imageLibraries)
            QVERIFY2(!maps.contains(library), library);
    }

private:
    std::expected<Compressed, QString> compress(const QByteArray &picture,
                                                const CompressionOptions &options)
    {
        std::optional<std::expected<Compressed, QString>> answer;
        m_worker.compress(picture, options, [&](const auto &result) { answer = result; });
        if (!QTest::qWaitFor([&] { return answer.has_value(); }, 60'000))
            return std::unexpected(u"There is no answer."_s);
        return *answer;
    }

    Worker m_worker;
};

QTEST_GUILESS_MAIN(WorkerTest)
#include "tst_worker.moc"

// SPDX-FileCopyrightText: 2026 The Pixpress authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "stage.h"
#include "ui/thumbnailitem.h"
#include "ui/thumbnails.h"

#include <QDeadlineTimer>
#include <QDir>
#include <QFile>
#include <QImageWriter>
#include <QTest>
#include <QThread>

#include <algorithm>

#include <sys/inotify.h>
#include <sys/resource.h>
#include <sys/stat.h>

using namespace pixpress;
using namespace Qt::StringLiterals;

namespace {

QByteArray bigEndian(quint32 value)
{
    return {QByteArray(1, char(value >> 24)) + char(value >> 16) + char(value >> 8) + char(value)};
}

} // namespace

class ThumbnailsTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void longerSide_isAtMost72_data()
    {
        QTest::addColumn<QSize>("picture");
        QTest::addColumn<QSize>("thumbnail");

        QTest::newRow("wide") << QSize(720, 360) << QSize(72, 36);
        QTest::newRow("tall") << QSize(300, 600) << QSize(36, 72);
        QTest::newRow("square") << QSize(500, 500) << QSize(72, 72);
        QTest::newRow("exactly") << QSize(72, 40) << QSize(72, 40);
        QTest::newRow("small") << QSize(20, 10) << QSize(20, 10);
        QTest::newRow("very wide") << QSize(7200, 10) << QSize(72, 1);
    }

    void longerSide_isAtMost72()
    {
        QFETCH(QSize, picture);
        QFETCH(QSize, thumbnail);
        for (const QString &name : {u"a.png"_s, u"a.jpg"_s}) {
            const QUrl file = m_stage.picture(name, picture.width(), picture.height());
            QCOMPARE(made(file).size(), thumbnail);
        }
    }

    void sample_ofEveryFormatIsMade_data()
    {
        QTest::addColumn<QString>("name");

        for (const auto *name : {"lake at dusk.jpg", "lighthouse.jpeg", "island map.png",
                                 "marbled ink.webp", "city by night.avif"})
            QTest::newRow(name) << QString::fromLatin1(name);
    }

    void sample_ofEveryFormatIsMade()
    {
        QFETCH(QString, name);
        const QImage image = made(m_stage.sample(name));
        QCOMPARE(std::max(image.width(), image.height()), 72);
    }

    void colours_staySo()
    {
        const QImage image = made(m_stage.picture(u"a.png"_s, 144, 144));
        QCOMPARE(image.pixelColor(5, 36), QColor(Qt::red));
        QCOMPARE(image.pixelColor(36, 36), QColor(Qt::green));
        QCOMPARE(image.pixelColor(66, 36), QColor(Qt::blue));
    }

    void transparency_isKept()
    {
        const QUrl file = m_stage.file(u"clear.png"_s);
        QImage clear(100, 100, QImage::Format_ARGB32);
        clear.fill(Qt::transparent);
        QVERIFY(clear.save(file.toLocalFile()));
        QCOMPARE(made(file).pixelColor(36, 36).alpha(), 0);
    }

    void rotatedPhoto_standsUpright()
    {
        // Lying on its side in the file: red at the left, which belongs on top.
        const QUrl file = m_stage.picture(u"plain.jpg"_s, 300, 100);
        const QUrl turned = m_stage.file(u"turned.jpg"_s);
        QImageWriter writer(turned.toLocalFile());
        writer.setTransformation(QImageIOHandler::TransformationRotate90);
        QVERIFY(writer.write(QImage(file.toLocalFile())));
        const QImage image = made(turned);
        QCOMPARE(image.size(), QSize(24, 72));
        QVERIFY(image.pixelColor(12, 5).red() > 200);
        QVERIFY(image.pixelColor(12, 67).blue() > 200);
    }

    void whatIsNoPicture_givesNone_data()
    {
        QTest::addColumn<QUrl>("file");

        QTest::newRow("missing") << QUrl(u"file:///nowhere/a.png"_s);
        QTest::newRow("empty address") << QUrl();
        QTest::newRow("elsewhere") << QUrl(u"https://tinypng.com/a.png"_s);
        QTest::newRow("zero bytes") << m_stage.file(u"empty.png"_s, 0);
        QTest::newRow("no picture") << m_stage.file(u"text.png"_s);
        QTest::newRow("folder") << QUrl::fromLocalFile(u"/tmp"_s);
        QTest::newRow("endless") << QUrl::fromLocalFile(u"/dev/zero"_s);

        const QUrl pipe = m_stage.file(u"pipe.png"_s);
        QVERIFY(QFile::remove(pipe.toLocalFile()));
        QCOMPARE(mkfifo(qPrintable(pipe.toLocalFile()), 0600), 0);
        QTest::newRow("pipe that nobody writes to") << pipe;

        QTest::newRow("corrupt") << write(
            u"corrupt.png"_s, QByteArray::fromHex("89504e470d0a1a0a") + QByteArray(1000, 'x'));
        const QUrl torn = m_stage.picture(u"torn.png"_s, 400, 400);
        QVERIFY(QFile::resize(torn.toLocalFile(), 20));
        QTest::newRow("torn in its head") << torn;

        for (const auto *name :
             {"paper balloon.png", "lake at dusk.jpg", "marbled ink.webp", "city by night.avif"}) {
            QFile sample(m_stage.sample(QString::fromLatin1(name)).toLocalFile());
            QVERIFY(sample.open(QIODevice::ReadOnly));
            QTest::addRow("torn in its middle: %s", name)
                << write(u"torn "_s + QString::fromLatin1(name), sample.read(sample.size() / 2));
        }
        QTest::newRow("unreadable kind: SVG")
            << write(u"drawing.png"_s,
                     "<svg xmlns=\"http://www.w3.org/2000/svg\" width=\"9\" height=\"9\"/>");
        QTest::newRow("unreadable kind: PPM") << write(u"raw.png"_s, "P6 1 1 255\nabc");
        QTest::newRow("absurdly large") << hugePng();
    }

    void whatIsNoPicture_givesNone()
    {
        QFETCH(QUrl, file);
        QVERIFY(made(file).isNull());
    }

    void request_isAnsweredInTheBackground()
    {
        Thumbnails thumbnails(m_worker);
        QFuture<QImage> future = thumbnails.request(m_stage.picture(u"a.png"_s, 720, 360));
        QTRY_VERIFY(future.isFinished());
        QCOMPARE(future.result().size(), QSize(72, 36));
        future = thumbnails.request(m_stage.file(u"b.png"_s));
        QTRY_VERIFY(future.isFinished());
        QVERIFY(future.result().isNull());
    }

    void lastRequest_comesFirstAndTheCancelledNotAtAll()
    {
        Thumbnails thumbnails(m_worker);
        const QUrl small = m_stage.picture(u"small.png"_s, 100, 100);
        QList<int> order;
        QList<QFuture<QImage>> asked;
        for (int index = 0; index < 30; ++index) {
            asked.append(thumbnails.request(small));
            asked.last().then(this, [&, index](const QImage &) { order.append(index); });
        }
        const qsizetype begun = qMax(2, QThread::idealThreadCount() - 1);
        for (qsizetype index = begun; index < 10; ++index)
            asked[index].cancel();
        for (auto &future : asked)
            QTRY_VERIFY(future.isFinished());
        QTRY_COMPARE(order.size(), 30 - (10 - begun));
        // Requests under way at the same time may finish in either order.
        const auto isLate = [](int index) { return index >= 18; };
        QVERIFY2(std::count_if(order.cbegin() + begun, order.cbegin() + begun + 10, isLate) >= 8,
                 "the last requested are the first made");
        for (qsizetype index = begun; index < 10; ++index)
            QVERIFY(!order.contains(int(index)) && asked[index].resultCount() == 0);
    }

    void slowPicture_holdsUpNoOther()
    {
        Thumbnails thumbnails(m_worker);
        const QFuture<QImage> slow =
            thumbnails.request(m_stage.picture(u"large.png"_s, 9000, 9000));
        QList<QFuture<QImage>> quick;
        for (int count = 0; count < 3; ++count)
            quick.append(thumbnails.request(m_stage.picture(u"small.png"_s, 100, 100)));
        for (const auto &future : quick)
            QTRY_VERIFY(future.isFinished() || slow.isFinished());
        QVERIFY(!slow.isFinished());
    }

    void pictureInViewForAMoment_isNotOpened()
    {
        const QUrl passed = m_stage.picture(u"passed.png"_s, 100, 100);
        const QUrl other = m_stage.picture(u"other.png"_s, 100, 100);
        QFile openings;
        QVERIFY(openings.open(::inotify_init1(IN_NONBLOCK | IN_CLOEXEC), QFile::ReadOnly,
                              QFile::AutoCloseHandle));
        QVERIFY(::inotify_add_watch(openings.handle(), QFile::encodeName(passed.toLocalFile()),
                                    IN_OPEN) >= 0);
        const auto hasBeenOpened = [&] {
            inotify_event event;
            return ::read(openings.handle(), &event, sizeof event) > 0;
        };
        Thumbnails thumbnails(m_worker);
        ThumbnailItem item;
        item.setProperty("thumbnails", QVariant::fromValue(&thumbnails));

        item.setUrl(passed);
        item.setUrl(other);
        QTRY_VERIFY(item.isReady());
        QVERIFY(!hasBeenOpened());

        item.setUrl(passed);
        QTRY_VERIFY(item.isReady());
        QVERIFY(hasBeenOpened());
    }

    void waiting_isLeftOutOnDestruction()
    {
        const QUrl large = m_stage.picture(u"large.png"_s, 6000, 6000);
        QList<QFuture<QImage>> asked;
        {
            Thumbnails thumbnails(m_worker);
            for (int index = 0; index < 100; ++index)
                asked.append(thumbnails.request(large));
        }
        const auto isLeftOut = [](const QFuture<QImage> &future) {
            return future.isCanceled() && future.resultCount() == 0;
        };
        QVERIFY(std::ranges::count_if(asked, isLeftOut) > 50);
    }

private:
    QImage made(const QUrl &file)
    {
        Thumbnails thumbnails(m_worker);
        const QFuture<QImage> future = thumbnails.request(file);
        if (!QTest::qWaitFor([&] { return future.isFinished(); }, 60'000))
            qFatal("There is no answer.");
        return future.result();
    }

    QUrl write(const QString &name, const QByteArray &bytes)
    {
        const QUrl url = m_stage.file(name);
        QFile file(url.toLocalFile());
        if (!file.open(QIODevice::WriteOnly) || file.write(bytes) != bytes.size())
            qFatal("It cannot be written.");
        return url;
    }

    /// The head of a PNG of 60,000 by 60,000 pixels. Its check sum is right, so the size is
    /// believed.
    QUrl hugePng()
    {
        const QByteArray head =
            "IHDR" + bigEndian(60'000) + bigEndian(60'000) + QByteArray::fromHex("0802000000");
        return write(u"huge.png"_s, QByteArray::fromHex("89504e470d0a1a0a") + bigEndian(13) + head +
                                        bigEndian(crc32(head)) + QByteArray(1000, '\0'));
    }

    static quint32 crc32(const QByteArray &bytes)
    {
        quint32 sum = 0xFFFFFFFF;
        for (const char byte : bytes) {
            sum ^= quint8(byte);
            for (int bit = 0; bit < 8; ++bit)
                sum = (sum >> 1) ^ (sum & 1 ? 0xEDB88320 : 0);
        }
        return ~sum;
    }

    test::Stage m_stage;
    Worker m_worker;
};

QTEST_MAIN(ThumbnailsTest)

#include "tst_thumbnails.moc"

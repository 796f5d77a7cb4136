// SPDX-FileCopyrightText: 2026 The Pixpress authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "codec/codec.h"
#include "codec/thumbnail.h"
#include "codec/vipslibrary.h"

#include "brokenpictures.h"
#include "pictures.h"

#include <QTemporaryFile>
#include <QTest>

#include <atomic>
#include <sys/resource.h>
#include <thread>

using namespace pixpress;
using namespace pixpress::testing;

Q_DECLARE_METATYPE(pixpress::testing::BrokenPicture)

namespace {

const std::atomic_bool running = false;
constexpr qint64 pixelLimit = 50'000'000;

#if defined(__SANITIZE_ADDRESS__) || defined(__SANITIZE_THREAD__)
constexpr bool isMemoryOurs = false; // but the sanitizer's too
#else
constexpr bool isMemoryOurs = true;
#endif

/// In MB, of the whole process and all of its time.
long peakMemory()
{
    rusage usage{};
    getrusage(RUSAGE_SELF, &usage);
    return usage.ru_maxrss / 1024;
}

} // namespace

/// Whatever a file holds: there is a thumbnail or none, and a compressed picture or a sentence.
class TestBrokenPictures : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase() { startVips(); }
    void cleanupTestCase();

    void pictures_areTreatedOrRefused_data();
    void pictures_areTreatedOrRefused();
    void bombs_areTreatedOrRefused();
    void thumbnail_ofAFileThatShrinks_data();
    void thumbnail_ofAFileThatShrinks();

private:
    void tryAll(const BrokenPictures &pictures);
    void tryThumbnail(const QByteArray &bytes);
    void tryCompressing(const QByteArray &bytes, const QByteArray &options);

    int m_pictures = 0;
    int m_thumbnails = 0;
    int m_compressed = 0;
    int m_refused = 0;
};

void TestBrokenPictures::cleanupTestCase()
{
    qInfo("%d pictures: %d thumbnails, %d compressed, %d refused; %ld MB at most.", m_pictures,
          m_thumbnails, m_compressed, m_refused, peakMemory());
    if (isMemoryOurs)
        QVERIFY(peakMemory() < 1024);
}

void TestBrokenPictures::pictures_areTreatedOrRefused_data()
{
    QTest::addColumn<BrokenPictures>("pictures");
    for (const ImageFormat format : allCases<ImageFormat>()) {
        const auto row = [&](const char *name, const BrokenPictures &pictures) {
            QTest::addRow("%s %s", qPrintable(rawValue(format)), name) << pictures;
        };
        row("truncated", truncated(format));
        row("flipped bits", withFlippedBits(format));
        row("wrong lengths", withWrongLengths(format));
        row("lying dimensions", withLyingDimensions(format));
    }
}

void TestBrokenPictures::pictures_areTreatedOrRefused()
{
    QFETCH(const BrokenPictures, pictures);
    QVERIFY(pictures.size() >= 15);
    tryAll(pictures);
}

void TestBrokenPictures::bombs_areTreatedOrRefused()
{
    for (const BrokenPicture &bomb : bombs()) {
        QVERIFY2(bomb.bytes.size() < 1'000'000, bomb.name.constData());
        tryAll({bomb});
    }
}

void TestBrokenPictures::tryAll(const BrokenPictures &pictures)
{
    for (const BrokenPicture &picture : pictures) {
        ++m_pictures;
        tryThumbnail(picture.bytes);
        for (const char *options : {"{}", R"({"convert":{"type":"image/webp"}})",
                                    R"({"resize":{"method":"fit","width":20,"height":20}})"})
            tryCompressing(picture.bytes, options);
        if (QTest::currentTestFailed()) {
            qWarning("%s", picture.name.constData());
            return;
        }
    }
}

void TestBrokenPictures::tryThumbnail(const QByteArray &bytes)
{
    QTemporaryFile file;
    QVERIFY(file.open());
    file.write(bytes);
    QVERIFY(file.flush());
    const Thumbnail thumbnail = makeThumbnail(file.handle(), 72, running);
    QVERIFY(thumbnail.width >= 0 && thumbnail.width <= 72);
    QVERIFY(thumbnail.height >= 0 && thumbnail.height <= 72);
    QCOMPARE(thumbnail.rgba.size(), thumbnail.width * thumbnail.height * 4);
    m_thumbnails += thumbnail.width > 0;
}

void TestBrokenPictures::tryCompressing(const QByteArray &bytes, const QByteArray &options)
{
    const auto result = compress(bytes, requestOptions(options), pixelLimit, running);
    if (!result) {
        ++m_refused;
        const CodecError &error = result.error();
        QVERIFY2(error.fault == CodecFault::unsupported || error.fault == CodecFault::tooLarge ||
                     error.fault == CodecFault::badRequest,
                 qPrintable(error.message));
        QVERIFY2(error.message.size() > 20 && error.message.endsWith(u'.'),
                 qPrintable(error.message));
        return;
    }
    ++m_compressed;
    try {
        const vips::VImage image =
            vips::VImage::new_from_buffer(
                result->bytes.constData(), static_cast<size_t>(result->bytes.size()), "",
                vips::VImage::option()->set("fail_on", VIPS_FAIL_ON_ERROR))
                .copy_memory();
        QCOMPARE(image.width(), int(result->size.width));
        QCOMPARE(image.height(), int(result->size.height));
    } catch (const vips::VError &error) {
        QFAIL(error.what());
    }
}

void TestBrokenPictures::thumbnail_ofAFileThatShrinks_data()
{
    QTest::addColumn<ImageFormat>("format");
    for (const ImageFormat format : allCases<ImageFormat>())
        QTest::newRow(qPrintable(rawValue(format))) << format;
}

// As it does when its row's task overwrites it.
void TestBrokenPictures::thumbnail_ofAFileThatShrinks()
{
    QFETCH(const ImageFormat, format);
    const QByteArray whole = saved(photo(700, 500), format);
    QTemporaryFile file;
    QVERIFY(file.open());
    const int descriptor = file.handle();
    for (int round = 0; round < 60; ++round) {
        QCOMPARE(pwrite(descriptor, whole.constData(), static_cast<size_t>(whole.size()), 0),
                 ssize_t(whole.size()));
        // A little later each time.
        std::thread shrinking([descriptor, yields = round * 20] {
            for (int i = 0; i < yields; ++i)
                std::this_thread::yield();
            [[maybe_unused]] const int result = ftruncate(descriptor, 100);
        });
        const Thumbnail thumbnail = makeThumbnail(descriptor, 72, running);
        shrinking.join();
        QCOMPARE(thumbnail.rgba.size(), thumbnail.width * thumbnail.height * 4);
    }
}

QTEST_GUILESS_MAIN(TestBrokenPictures)
#include "tst_brokenpictures.moc"

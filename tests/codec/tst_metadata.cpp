// SPDX-FileCopyrightText: 2026 The Pixpress authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "codec/codec.h"
#include "codec/vipslibrary.h"

#include "pictures.h"

#include <QTest>

using namespace pixpress;
using namespace pixpress::testing;
using vips::VImage;

class TestMetadata : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase() { startVips(); }

    void onlyWhatIsNamed_survives_data();
    void onlyWhatIsNamed_survives();
    void repackedJpeg_keepsWhatIsNamed();
    void brokenExif_isNoObstacle();
};

namespace {

const std::atomic_bool running = false;

VImage withEverything(const VImage &plainImage)
{
    VImage image = plainImage.copy();
    image.set("exif-ifd0-Copyright", "Ada Example");
    image.set("exif-ifd0-Artist", "Bob Example");
    image.set("exif-ifd0-Make", "Camera Works");
    image.set("exif-ifd0-DateTime", "2024:05:06 07:08:09");
    image.set("exif-ifd2-DateTimeOriginal", "2023:04:05 06:07:08");
    image.set("exif-ifd2-UserComment", "Not for others");
    image.set("exif-ifd3-GPSLatitude", "48/1 8/1 3000/100");
    image.set("exif-ifd3-GPSLatitudeRef", "N");
    vips_image_set_blob_copy(image.get_image(), VIPS_META_XMP_NAME, "<x:xmpmeta/>", 12);
    // Only once it was in a file there is a block that a PNG can be given.
    return loaded(saved(image, ImageFormat::jpeg));
}

bool contains(const VImage &image, const char *name, const char *text)
{
    return field(image, name).startsWith(text);
}

} // namespace

void TestMetadata::onlyWhatIsNamed_survives_data()
{
    QTest::addColumn<ImageFormat>("from");
    QTest::addColumn<ImageFormat>("to");
    QTest::addColumn<Preserve>("preserve");

    for (const ImageFormat to : allCases<ImageFormat>()) {
        for (const ImageFormat from : {ImageFormat::jpeg, to}) {
            for (int kinds = 0; kinds < 8; ++kinds) {
                const Preserve preserve{(kinds & 1) != 0, (kinds & 2) != 0, (kinds & 4) != 0};
                QTest::addRow("%s to %s%s%s%s", qPrintable(rawValue(from)),
                              qPrintable(rawValue(to)), preserve.copyright ? ", copyright" : "",
                              preserve.creation ? ", creation" : "",
                              preserve.location ? ", location" : "")
                    << from << to << preserve;
            }
        }
    }
}

void TestMetadata::onlyWhatIsNamed_survives()
{
    QFETCH(ImageFormat, from);
    QFETCH(ImageFormat, to);
    QFETCH(Preserve, preserve);

    const QByteArray original = saved(withEverything(photo(160, 120)), from);
    QVERIFY(contains(loaded(original), "exif-ifd0-Copyright", "Ada Example"));
    RequestOptions options;
    options.preserve = preserve;
    options.convert = {to};
    const auto result = compress(original, options, 1'000'000, running);
    QVERIFY(result);
    QVERIFY(result->bytes != original);
    const VImage image = loaded(result->bytes);

    QCOMPARE(contains(image, "exif-ifd0-Copyright", "Ada Example"), preserve.copyright);
    QCOMPARE(contains(image, "exif-ifd0-Artist", "Bob Example"), preserve.copyright);
    QCOMPARE(contains(image, "exif-ifd0-DateTime", "2024:05:06"), preserve.creation);
    QCOMPARE(contains(image, "exif-ifd2-DateTimeOriginal", "2023:04:05"), preserve.creation);
    QCOMPARE(contains(image, "exif-ifd3-GPSLatitude", "48/1 8/1"), preserve.location);
    QCOMPARE(contains(image, "exif-ifd3-GPSLatitudeRef", "N"), preserve.location);
    for (const char *text : {"Camera Works", "Not for others", "xmpmeta"})
        QVERIFY2(!result->bytes.contains(text), text);
    const auto hidden = [&](bool kept, const char *text) {
        return kept || !result->bytes.contains(text);
    };
    QVERIFY(hidden(preserve.copyright, "Example"));
    QVERIFY(hidden(preserve.creation, "2023:04:05"));
}

void TestMetadata::repackedJpeg_keepsWhatIsNamed()
{
    void *bytes = nullptr;
    size_t size = 0;
    withEverything(photo(160, 120))
        .write_to_buffer(".jpg", &bytes, &size, VImage::option()->set("Q", 60));
    const QByteArray original(static_cast<const char *>(bytes), static_cast<qsizetype>(size));
    g_free(bytes);
    RequestOptions options;
    options.preserve.copyright = true;
    const auto result = compress(original, options, 1'000'000, running);
    QVERIFY(result);
    QVERIFY(result->bytes.size() < original.size());
    QVERIFY(contains(loaded(result->bytes), "exif-ifd0-Copyright", "Ada Example"));
    QVERIFY(!result->bytes.contains("Camera Works"));
    QCOMPARE((loaded(original) - loaded(result->bytes)).abs().max(), 0.0);
}

void TestMetadata::brokenExif_isNoObstacle()
{
    QByteArray jpeg = saved(withEverything(photo(160, 120)), ImageFormat::jpeg);
    const qsizetype exif = jpeg.indexOf(QByteArrayView("Exif\0\0", 6));
    QVERIFY(exif > 0);
    jpeg.replace(exif + 10, 60, QByteArray(60, '\xff'));
    RequestOptions options;
    options.preserve = {true, true, true};
    QVERIFY(compress(jpeg, options, 1'000'000, running));
}

QTEST_GUILESS_MAIN(TestMetadata)
#include "tst_metadata.moc"

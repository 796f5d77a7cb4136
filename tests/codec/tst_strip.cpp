// SPDX-FileCopyrightText: 2026 The Pixpress authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "codec/strip.h"

#include "codec/codec.h"
#include "codec/vipslibrary.h"

#include "pictures.h"

#include <QTest>
#include <QtEndian>

using namespace pixpress;
using namespace pixpress::testing;
using vips::VImage;

class TestStrip : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();

    void everythingElse_isGone_data();
    void everythingElse_isGone();
    void givenExif_isWritten_data();
    void givenExif_isWritten();
    void profile_stays_data();
    void profile_stays();
    void jpegWithoutPlainColours_looksTheSame();
    void progressiveJpeg_isWhole();
    void animation_isKept();
    void brokenFiles_areNotTaken_data();
    void brokenFiles_areNotTaken();
    void answeredOriginal_tellsNothing_data();
    void answeredOriginal_tellsNothing();
    void answeredOriginal_keepsWhatIsNamed_data();
    void answeredOriginal_keepsWhatIsNamed();
    void answeredOriginal_staysUpright_data();
    void answeredOriginal_staysUpright();
    void answeredOriginal_keepsItsColours();
};

namespace {

const std::atomic_bool running = false;

void setExif(VImage &image)
{
    image.set("exif-ifd0-Copyright", "Ada SECRET");
    image.set("exif-ifd0-Make", "Camera SECRET");
    image.set("exif-ifd2-DateTimeOriginal", "2023:04:05 06:07:08");
    image.set("exif-ifd3-GPSLatitude", "48/1 8/1 3000/100");
    vips_image_set_blob_copy(image.get_image(), VIPS_META_XMP_NAME, "<x:xmpmeta>SECRET</x:xmpmeta>",
                             29);
}

QByteArray bigEndian(quint32 value)
{
    QByteArray bytes(4, '\0');
    qToBigEndian(value, bytes.data());
    return bytes;
}

QByteArray segment(quint8 marker, const QByteArray &content)
{
    return QByteArray(1, '\xff') + static_cast<char>(marker) +
           bigEndian(static_cast<quint32>(content.size() + 2)).last(2) + content;
}

/// Decoders do not look at the sums of chunks that they do not need.
QByteArray pngChunk(const QByteArray &type, const QByteArray &content)
{
    return bigEndian(static_cast<quint32>(content.size())) + type + content + QByteArray(4, 'S');
}

/// The file with more secrets in the places that its format has for them.
QByteArray withSecrets(QByteArray file, ImageFormat format)
{
    switch (format) {
    case ImageFormat::png: {
        const qsizetype pixels = file.indexOf("IDAT") - 4;
        file.insert(pixels, pngChunk("tEXt", QByteArray("Author\0SECRET", 13)) +
                                pngChunk("tIME", "SECRET!") + pngChunk("seCr", "SECRET"));
        return file + "SECRET";
    }
    case ImageFormat::jpeg: {
        // A thumbnail of two pixels in the first segment.
        QByteArray jfif("JFIF\0\1\1\1\0\x48\0\x48\2\1SECRET", 20);
        const qsizetype first = file.startsWith("\xff\xd8\xff\xe0") ? 20 : 2;
        file = file.first(2) + segment(0xe0, jfif) + segment(0xe0, "JFXXSECRET") +
               segment(0xed, "Photoshop 3.0SECRET") + segment(0xfe, "SECRET") +
               segment(0xe2, "MPFSECRET") + segment(0xe1, "SECRET") + file.sliced(first);
        return file.insert(file.size() - 2, segment(0xfe, "SECRET")) + "SECRET" + file;
    }
    case ImageFormat::webp:
        file += QByteArray("SECR\6\0\0\0SECRET", 14);
        qToLittleEndian(static_cast<quint32>(file.size() - 8), file.data() + 4);
        return file;
    case ImageFormat::avif: return file + bigEndian(8 + 16 + 6) + "uuid0123456789abcdefSECRET";
    }
    Q_UNREACHABLE();
}

/// A picture full of secrets.
QByteArray talkative(ImageFormat format, int orientation = 1, const VImage &picture = photo(80, 60))
{
    VImage image = picture.copy();
    setExif(image);
    if (orientation > 1)
        image.set(VIPS_META_ORIENTATION, orientation);
    // Only once it was in a file there is a block that a PNG can be given.
    return withSecrets(saved(loaded(saved(image, ImageFormat::jpeg)), format), format);
}

bool isTelling(const QByteArray &file)
{
    return file.contains("SECRET") || file.contains("2023:04:05") || file.contains("xmpmeta");
}

double largestDifference(const VImage &a, const VImage &b)
{
    return a.width() == b.width() && a.height() == b.height() ? (a - b).abs().max() : 1000;
}

void addFormats()
{
    QTest::addColumn<ImageFormat>("format");
    for (const ImageFormat format : allCases<ImageFormat>())
        QTest::newRow(qPrintable(rawValue(format))) << format;
}

Encoded answered(const QByteArray &file, const Preserve &preserve = {})
{
    RequestOptions options;
    options.preserve = preserve;
    return compress(file, options, 1'000'000, running).value_or(Encoded{});
}

QByteArray exifOf(const VImage &image)
{
    size_t size = 0;
    const void *block = image.get_blob(VIPS_META_EXIF_NAME, &size);
    return {static_cast<const char *>(block), static_cast<qsizetype>(size)};
}

/// In so few colours or at so low a quality that no copy is smaller, with secrets around it.
QByteArray smallAndTalkative(ImageFormat format, int orientation = 1)
{
    VImage image = photo(320, 240);
    setExif(image);
    if (orientation > 1)
        image.set(VIPS_META_ORIENTATION, orientation);
    const VImage tagged = loaded(saved(image, ImageFormat::jpeg));
    void *bytes = nullptr;
    size_t size = 0;
    switch (format) {
    case ImageFormat::png: {
        const QByteArray once = answered(saved(quarters(320, 240), format)).bytes;
        return withSecrets(stripped(once, format, exifOf(tagged)).value(), format);
    }
    case ImageFormat::jpeg:
        tagged.write_to_buffer(
            ".jpg", &bytes, &size,
            VImage::option()->set("Q", 20)->set("optimize_coding", true)->set("interlace", true));
        break;
    case ImageFormat::webp:
        tagged.write_to_buffer(".webp", &bytes, &size,
                               VImage::option()->set("Q", 5)->set("effort", 6));
        break;
    case ImageFormat::avif:
        tagged.write_to_buffer(
            ".avif", &bytes, &size,
            VImage::option()->set("Q", 10)->set("effort", 6)->set("bitdepth", 8));
        break;
    }
    const QByteArray file(static_cast<const char *>(bytes), static_cast<qsizetype>(size));
    g_free(bytes);
    return withSecrets(file, format);
}

} // namespace

void TestStrip::initTestCase()
{
    startVips();
}

void TestStrip::everythingElse_isGone_data()
{
    addFormats();
}

void TestStrip::everythingElse_isGone()
{
    QFETCH(ImageFormat, format);
    const QByteArray file = talkative(format);
    QVERIFY(isTelling(file));
    const auto result = stripped(file, format, {});
    QVERIFY(result);
    QVERIFY2(!isTelling(*result), *result);
    QVERIFY(result->size() <= file.size());
    QCOMPARE(largestDifference(loaded(*result), loaded(file)), 0.0);
    QCOMPARE(stripped(*result, format, {}).value(), *result);
}

void TestStrip::givenExif_isWritten_data()
{
    addFormats();
}

void TestStrip::givenExif_isWritten()
{
    QFETCH(ImageFormat, format);
    VImage image = plain(8, 8, {1, 2, 3}).copy();
    image.set("exif-ifd0-Artist", "Bob Example");
    const VImage tagged = loaded(saved(image, ImageFormat::jpeg));
    const QByteArray exif = exifOf(tagged);
    const QByteArray file = talkative(format);
    const auto result = stripped(file, format, exif);
    QVERIFY(result);
    QVERIFY(!isTelling(*result));
    const VImage written = loaded(*result);
    QVERIFY(field(written, "exif-ifd0-Artist").startsWith("Bob Example"));
    // The first thing that some readers look for.
    QVERIFY(format != ImageFormat::jpeg || result->startsWith("\xff\xd8\xff\xe0"));
    QCOMPARE(largestDifference(written, loaded(file)), 0.0);
}

void TestStrip::profile_stays_data()
{
    addFormats();
}

void TestStrip::profile_stays()
{
    QFETCH(ImageFormat, format);
    const VImage wide =
        photo(80, 60).icc_transform("p3", VImage::option()->set("input_profile", "srgb"));
    const QByteArray file = talkative(format, 1, wide);
    const auto result = stripped(file, format, {});
    QVERIFY(result && !isTelling(*result));
    const auto profileOf = [](const QByteArray &bytes) {
        size_t size = 0;
        // Of an AVIF's image a copy outlives neither the bytes nor, in libvips 8.14, the profile.
        const VImage image =
            VImage::new_from_buffer(bytes.constData(), static_cast<size_t>(bytes.size()), "");
        const void *blob = image.get_blob(VIPS_META_ICC_NAME, &size);
        return QByteArray(static_cast<const char *>(blob), static_cast<qsizetype>(size));
    };
    QCOMPARE(profileOf(*result), profileOf(file));
}

void TestStrip::jpegWithoutPlainColours_looksTheSame()
{
    const VImage cmyk =
        photo(80, 60).icc_transform("cmyk", VImage::option()->set("input_profile", "srgb"));
    const QByteArray file = withSecrets(saved(cmyk, ImageFormat::jpeg), ImageFormat::jpeg);
    const auto result = stripped(file, ImageFormat::jpeg, {});
    QVERIFY(result && !isTelling(*result));
    QCOMPARE(loaded(*result).bands(), 4);
    QCOMPARE(largestDifference(loaded(*result), loaded(file)), 0.0);
}

void TestStrip::progressiveJpeg_isWhole()
{
    void *bytes = nullptr;
    size_t size = 0;
    photo(80, 60).write_to_buffer(".jpg", &bytes, &size,
                                  VImage::option()->set("interlace", true)->set("Q", 70));
    QByteArray file(static_cast<const char *>(bytes), static_cast<qsizetype>(size));
    g_free(bytes);
    // Between two scans, and after bytes that belong to nothing.
    const qsizetype second = file.indexOf("\xff\xc4", file.indexOf("\xff\xda"));
    QVERIFY(second > 0);
    file.insert(second, "\1\2" + segment(0xfe, "SECRET") + "\xff\xff");
    const auto result = stripped(file, ImageFormat::jpeg, {});
    QVERIFY(result && !isTelling(*result));
    QCOMPARE(largestDifference(loaded(*result), loaded(file)), 0.0);
}

void TestStrip::animation_isKept()
{
    const QByteArray file = withSecrets(animatedWebp(40, 30, 4), ImageFormat::webp);
    const auto result = stripped(file, ImageFormat::webp, {});
    QVERIFY(result && !isTelling(*result));
    const auto frames = [](const QByteArray &bytes) {
        return VImage::new_from_buffer(bytes.constData(), static_cast<size_t>(bytes.size()), "",
                                       VImage::option()->set("n", -1))
            .copy_memory();
    };
    QCOMPARE(frames(*result).get_array_int("delay"), std::vector<int>(4, 100));
    QCOMPARE(largestDifference(frames(*result), frames(file)), 0.0);
}

void TestStrip::brokenFiles_areNotTaken_data()
{
    addFormats();
}

void TestStrip::brokenFiles_areNotTaken()
{
    QFETCH(ImageFormat, format);
    const QByteArray file = saved(photo(30, 20), format);
    QVERIFY(stripped(file, format, {}));
    for (qsizetype size = 0; size < file.size(); ++size)
        QVERIFY2(!stripped(file.first(size), format, {}), qPrintable(QString::number(size)));
}

void TestStrip::answeredOriginal_tellsNothing_data()
{
    addFormats();
}

void TestStrip::answeredOriginal_tellsNothing()
{
    QFETCH(ImageFormat, format);
    const QByteArray file = smallAndTalkative(format);
    const Encoded answer = answered(file);
    QCOMPARE(answer.bytes, stripped(file, format, {}).value());
    QVERIFY(!isTelling(answer.bytes));
}

void TestStrip::answeredOriginal_keepsWhatIsNamed_data()
{
    addFormats();
}

void TestStrip::answeredOriginal_keepsWhatIsNamed()
{
    QFETCH(ImageFormat, format);
    const QByteArray file = smallAndTalkative(format);
    const VImage rights = loaded(answered(file, {.copyright = true}).bytes);
    QVERIFY(field(rights, "exif-ifd0-Copyright").startsWith("Ada SECRET"));
    QVERIFY(field(rights, "exif-ifd0-Make").isEmpty());
    QVERIFY(field(rights, "exif-ifd3-GPSLatitude").isEmpty());
    QVERIFY(field(rights, "exif-ifd2-DateTimeOriginal").isEmpty());
    QCOMPARE(largestDifference(rights, loaded(file)), 0.0);
    const VImage place = loaded(answered(file, {.location = true}).bytes);
    QVERIFY(field(place, "exif-ifd3-GPSLatitude").startsWith("48/1 8/1"));
    const VImage date = loaded(answered(file, {.creation = true}).bytes);
    QVERIFY(field(date, "exif-ifd2-DateTimeOriginal").startsWith("2023:04:05"));
}

void TestStrip::answeredOriginal_staysUpright_data()
{
    addOrientationRows();
}

void TestStrip::answeredOriginal_staysUpright()
{
    QFETCH(ImageFormat, format);
    QFETCH(int, orientation);
    // Without the secrets the file is smaller than any copy of it.
    QByteArray file = smallAndTalkative(format, orientation);
    file = stripped(file, format, {}).value();
    const VImage tagged = loaded(talkative(ImageFormat::jpeg, orientation));
    file = stripped(file, format, exifOf(tagged)).value();
    const Encoded answer = answered(file);
    QVERIFY(!isTelling(answer.bytes));
    QVERIFY(answer.bytes.size() < file.size());
    const VImage upright = loaded(answer.bytes).autorot();
    QVERIFY(answer.size == (PixelSize{upright.width(), upright.height()}));
    QVERIFY((upright - loaded(file).autorot()).abs().avg() < 3);
    QVERIFY(field(upright, "exif-ifd0-Make").isEmpty());
}

void TestStrip::answeredOriginal_keepsItsColours()
{
    const VImage wide = plain(64, 64, {250, 30, 40})
                            .icc_transform("p3", VImage::option()->set("input_profile", "srgb"));
    void *bytes = nullptr;
    size_t size = 0;
    wide.write_to_buffer(".jpg", &bytes, &size, VImage::option()->set("Q", 30));
    const QByteArray file(static_cast<const char *>(bytes), static_cast<qsizetype>(size));
    g_free(bytes);
    const VImage answer = loaded(answered(withSecrets(file, ImageFormat::jpeg)).bytes);
    const bool hasProfile = vips_image_get_typeof(answer.get_image(), VIPS_META_ICC_NAME) != 0;
    const VImage shown = hasProfile ? answer.icc_transform("srgb") : answer;
    QVERIFY(distance(pixel(shown, 9, 9), {250, 30, 40}) < 12);
}

QTEST_GUILESS_MAIN(TestStrip)
#include "tst_strip.moc"

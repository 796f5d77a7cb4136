// SPDX-FileCopyrightText: 2026 The Pixpress authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "codec/codec.h"
#include "codec/quality.h"
#include "codec/similarity.h"
#include "codec/vipslibrary.h"

#include "pictures.h"

#include <QTest>

using namespace pixpress;
using namespace pixpress::testing;
using vips::VImage;

class TestQuality : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase() { startVips(); }

    void similarity_fallsWithTheQuality();
    void similarity_seesLostTransparency();
    void results_lookAsTheyAreTo_data();
    void results_lookAsTheyAreTo();
    void secondPass_returnsTheSameBytes_data();
    void secondPass_returnsTheSameBytes();
    void fewColours_areWrittenExactly_data();
    void fewColours_areWrittenExactly();
};

namespace {

const std::atomic_bool running = false;

/// Thin lines in strong colours, which suffer most from colours at half the size.
VImage drawing(int width, int height)
{
    const VImage xy = VImage::xyz(width, height);
    const auto lines = [&](double a, double b) {
        return ((xy[0] * a + xy[1] * b).cast(VIPS_FORMAT_INT) % 9 == 0) / 255.0;
    };
    const VImage red = lines(1, 0.5);
    const VImage blue = lines(0.3, 1);
    const VImage image = ((blue * -1 + 1) * 255)
                             .bandjoin((red * -1 + 1) * (blue * -1 + 1) * 255)
                             .bandjoin((red * -1 + 1) * 255);
    return image.cast(VIPS_FORMAT_UCHAR)
        .copy(VImage::option()->set("interpretation", VIPS_INTERPRETATION_sRGB))
        .copy_memory();
}

VImage soft(int width, int height)
{
    return photo(width, height).gaussblur(1.5).cast(VIPS_FORMAT_UCHAR).copy_memory();
}

VImage pictureNamed(const QByteArray &name)
{
    if (name == "drawing")
        return drawing(240, 200);
    if (name == "soft")
        return soft(240, 200);
    if (name == "noise")
        return noise(120, 100);
    if (name == "grey")
        return photo(240, 200).colourspace(VIPS_INTERPRETATION_B_W);
    if (name == "alpha")
        return photo(240, 200).bandjoin(photo(240, 200)[0]).copy_memory();
    return photo(240, 200);
}

void addPictures()
{
    QTest::addColumn<QByteArray>("name");
    QTest::addColumn<ImageFormat>("format");
    for (const char *name : {"photo", "soft", "drawing", "noise", "grey", "alpha"})
        for (const ImageFormat format : allCases<ImageFormat>())
            QTest::addRow("%s %s", name, qPrintable(rawValue(format)))
                << QByteArray(name) << format;
}

Encoded converted(const QByteArray &bytes, ImageFormat format)
{
    RequestOptions options;
    options.convert = {format};
    return compress(bytes, options, 1'000'000, running).value_or(Encoded{});
}

} // namespace

void TestQuality::similarity_fallsWithTheQuality()
{
    const VImage image = photo(240, 200);
    QCOMPARE(similarity(image, image), 100.0);
    double last = 100;
    for (const int quality : {95, 80, 50, 20}) {
        void *bytes = nullptr;
        size_t size = 0;
        image.write_to_buffer(".jpg", &bytes, &size, VImage::option()->set("Q", quality));
        const QByteArray jpeg(static_cast<const char *>(bytes), static_cast<qsizetype>(size));
        g_free(bytes);
        const double now = similarity(image, loaded(jpeg));
        QVERIFY2(now < last - 3, qPrintable(QString::number(now)));
        last = now;
    }
}

void TestQuality::similarity_seesLostTransparency()
{
    for (const double level : {0.0, 255.0}) {
        const VImage image = plain(64, 64, {level, level, level, 128});
        QVERIFY(similarity(image, plain(64, 64, {level, level, level, 255})) < 70);
    }
}

void TestQuality::results_lookAsTheyAreTo_data()
{
    addPictures();
}

void TestQuality::results_lookAsTheyAreTo()
{
    QFETCH(QByteArray, name);
    QFETCH(ImageFormat, format);
    VImage image = pictureNamed(name);
    const Encoded result = converted(saved(image, ImageFormat::png), format);
    QVERIFY(!result.bytes.isEmpty());
    if (image.has_alpha() && format == ImageFormat::jpeg)
        image = image.flatten(VImage::option()->set("background", 255.0));
    const double alike = similarity(image, loaded(result.bytes));
    QVERIFY2(alike > 70, qPrintable(QString::number(alike)));
}

void TestQuality::secondPass_returnsTheSameBytes_data()
{
    addPictures();
}

void TestQuality::secondPass_returnsTheSameBytes()
{
    QFETCH(QByteArray, name);
    QFETCH(ImageFormat, format);
    const VImage image = pictureNamed(name);
    for (const ImageFormat from : {ImageFormat::png, format}) {
        const Encoded first = converted(saved(image, from), format);
        QVERIFY(!first.bytes.isEmpty());
        const auto second = compress(first.bytes, RequestOptions{}, 1'000'000, running);
        QVERIFY(second);
        QVERIFY2(second->bytes == first.bytes, qPrintable(QStringLiteral("%1, then %2 bytes")
                                                              .arg(first.bytes.size())
                                                              .arg(second->bytes.size())));
    }
}

void TestQuality::fewColours_areWrittenExactly_data()
{
    QTest::addColumn<ImageFormat>("format");
    QTest::newRow("png") << ImageFormat::png;
    QTest::newRow("webp") << ImageFormat::webp;
}

void TestQuality::fewColours_areWrittenExactly()
{
    QFETCH(ImageFormat, format);
    const VImage image = drawing(240, 200);
    const Encoded result = converted(saved(image, ImageFormat::png), format);
    QCOMPARE((loaded(result.bytes) - image).abs().max(), 0.0);
}

QTEST_GUILESS_MAIN(TestQuality)
#include "tst_quality.moc"

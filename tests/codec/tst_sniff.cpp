// SPDX-FileCopyrightText: 2026 The Pixpress authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "codec/codec.h"
#include "codec/sniff.h"
#include "codec/vipslibrary.h"

#include "pictures.h"

#include <QTest>

using namespace pixpress;
using namespace pixpress::testing;

class TestSniff : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase() { startVips(); }

    void formats_areToldByContent_data();
    void formats_areToldByContent();
    void animations_areNoticed();
    void foreignFiles_areRefused_data();
    void foreignFiles_areRefused();
    void pictureAboveThePixelLimit_isRefusedByItsHeader_data();
    void pictureAboveThePixelLimit_isRefusedByItsHeader();
    void pngThatStatesAbsurdSize_isTooLarge();
    void otherLoaders_areBlocked();
};

namespace {

constexpr qint64 pixelLimit = 1'000'000;

CodecFault faultOf(const QByteArray &bytes)
{
    const auto info = inspect(bytes, pixelLimit);
    return info ? CodecFault::failed : info.error().fault;
}

} // namespace

void TestSniff::formats_areToldByContent_data()
{
    QTest::addColumn<ImageFormat>("format");
    for (const ImageFormat format : allCases<ImageFormat>())
        QTest::newRow(qPrintable(rawValue(format))) << format;
}

void TestSniff::formats_areToldByContent()
{
    QFETCH(ImageFormat, format);
    const QByteArray bytes = saved(photo(40, 30), format);
    QCOMPARE(sniff(bytes).value(), (Sniffed{format, false}));
    const auto info = inspect(bytes, pixelLimit);
    QVERIFY(info);
    QCOMPARE(info->format, format);
    QVERIFY(info->frame == (PixelSize{40, 30}));
    QCOMPARE(info->frameCount, 1);
}

void TestSniff::animations_areNoticed()
{
    const QByteArray webp = animatedWebp(20, 10, 3);
    QCOMPARE(sniff(webp).value(), (Sniffed{ImageFormat::webp, true}));
    const auto info = inspect(webp, pixelLimit);
    QVERIFY(info);
    QCOMPARE(info->frameCount, 3);
    QVERIFY(info->frame == (PixelSize{20, 10}));
    QCOMPARE(info->pixels(), 600);
    QVERIFY(!inspect(webp, 599));

    const QByteArray png = asAnimatedPng(saved(photo(9, 9), ImageFormat::png));
    QCOMPARE(sniff(png).value(), (Sniffed{ImageFormat::png, true}));
    const QByteArray avif = saved(photo(64, 64), ImageFormat::avif);
    QCOMPARE(sniff(withBrand(avif, "avis")).value(), (Sniffed{ImageFormat::avif, true}));
}

void TestSniff::foreignFiles_areRefused_data()
{
    QTest::addColumn<QByteArray>("bytes");

    const QByteArray png = saved(photo(64, 64), ImageFormat::png);
    const QByteArray avif = saved(photo(64, 64), ImageFormat::avif);
    const auto row = [](const char *name, const QByteArray &bytes) {
        QTest::newRow(name) << bytes;
    };
    row("one byte", "x");
    row("text", "This is not a picture, but a text of some length.");
    row("GIF", QByteArray::fromHex("47494638396101000100800000000000ffffff2c000000000100010000"
                                   "02024401003b"));
    row("SVG", "<?xml version=\"1.0\"?><svg xmlns=\"http://www.w3.org/2000/svg\" width=\"9\" "
               "height=\"9\"><rect width=\"9\" height=\"9\"/></svg>");
    row("TIFF", QByteArray("II*\0\x08\0\0\0", 8) + QByteArray(100, '\0'));
    row("PDF", "%PDF-1.4\n%%EOF\n");
    row("HEIC", withBrand(avif, "heic"));
    row("AVIF sequence", withBrand(avif, "avis"));
    row("animated PNG", asAnimatedPng(png));
    row("PNG signature alone", png.first(8));
    row("PNG header cut", png.first(20));
    row("JPEG start alone", QByteArray::fromHex("ffd8ff"));
    row("WebP start alone", QByteArray("RIFF\x10\0\0\0WEBP", 12));
    row("AVIF start alone", avif.first(40));
}

void TestSniff::foreignFiles_areRefused()
{
    QFETCH(QByteArray, bytes);
    QCOMPARE(faultOf(bytes), CodecFault::unsupported);
}

void TestSniff::pictureAboveThePixelLimit_isRefusedByItsHeader_data()
{
    formats_areToldByContent_data();
}

void TestSniff::pictureAboveThePixelLimit_isRefusedByItsHeader()
{
    QFETCH(ImageFormat, format);
    const QByteArray bytes = saved(plain(1000, 1001, {9, 99, 199}), format);
    QCOMPARE(faultOf(bytes), CodecFault::tooLarge);
    QVERIFY(inspect(bytes, 1'001'000));
}

void TestSniff::pngThatStatesAbsurdSize_isTooLarge()
{
    QByteArray png = saved(photo(9, 9), ImageFormat::png);
    png.replace(16, 8, QByteArray::fromHex("7fffffff7fffffff"));
    QCOMPARE(faultOf(png), CodecFault::tooLarge);
}

void TestSniff::otherLoaders_areBlocked()
{
    const QByteArray svg = "<svg xmlns=\"http://www.w3.org/2000/svg\" width=\"9\" height=\"9\"/>";
    QVERIFY_EXCEPTION_THROWN(loaded(svg), vips::VError);
    vips_error_clear();
}

QTEST_GUILESS_MAIN(TestSniff)
#include "tst_sniff.moc"

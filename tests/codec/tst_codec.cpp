// SPDX-FileCopyrightText: 2026 The Pixpress authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "codec/codec.h"
#include "codec/vipslibrary.h"

#include "pictures.h"

#include <QTest>

using namespace pixpress;
using namespace pixpress::testing;
using vips::VImage;

class TestCodec : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase() { startVips(); }

    void pictures_becomeSmallerAndStayAlike_data();
    void pictures_becomeSmallerAndStayAlike();
    void answers_areNeverLargerThanTheOriginal_data();
    void answers_areNeverLargerThanTheOriginal();
    void compressedJpeg_losesNoMoreQuality();
    void conversions_yieldTheFormatAskedFor_data();
    void conversions_yieldTheFormatAskedFor();
    void severalFormats_theSmallestAnswers();
    void transparency_isKept_data();
    void transparency_isKept();
    void transparency_fallsOnTheBackground_data();
    void transparency_fallsOnTheBackground();
    void orientation_isApplied_data();
    void orientation_isApplied();
    void colours_becomeSrgb();
    void cmyk_becomesSrgb();
    void grey_staysGrey();
    void sixteenBits_becomeEight();
    void fewColours_areKeptExactly();
    void smoothPictureWithManyColours_isNotBanded();
    void damagedPictures_areRefused_data();
    void damagedPictures_areRefused();
    void animatedWebp_keepsItsFrames();
    void animatedWebp_isNotConverted();
    void raisedStopFlag_endsTheWork();
};

namespace {

const std::atomic_bool running = false;
constexpr qint64 pixelLimit = 50'000'000;

std::expected<Encoded, CodecError> tryCompress(const QByteArray &bytes,
                                               const QByteArray &options = "{}")
{
    return compress(bytes, requestOptions(options), pixelLimit, running);
}

Encoded compressed(const QByteArray &bytes, const QByteArray &options = "{}")
{
    const auto result = tryCompress(bytes, options);
    if (!result)
        qWarning("%s", qPrintable(result.error().message));
    return result.value_or(Encoded{});
}

QByteArray convertTo(ImageFormat format)
{
    return R"({"convert":{"type":")" + rawValue(format).toLatin1() + R"("}})";
}

/// The mean difference per sample.
double meanDifference(const VImage &a, const VImage &b)
{
    return (a - b).abs().avg();
}

void addFormats()
{
    QTest::addColumn<ImageFormat>("format");
    for (const ImageFormat format : allCases<ImageFormat>())
        QTest::newRow(qPrintable(rawValue(format))) << format;
}

} // namespace

void TestCodec::pictures_becomeSmallerAndStayAlike_data()
{
    addFormats();
}

void TestCodec::pictures_becomeSmallerAndStayAlike()
{
    QFETCH(ImageFormat, format);
    const QByteArray original = saved(photo(320, 200), format);
    const Encoded result = compressed(original);
    QCOMPARE(result.format, format);
    QVERIFY(result.size == (PixelSize{320, 200}));
    QVERIFY2(result.bytes.size() < original.size() * 9 / 10,
             qPrintable(QString::number(result.bytes.size())));
    const double difference = meanDifference(loaded(original), loaded(result.bytes));
    QVERIFY2(difference < 5, qPrintable(QString::number(difference)));
}

void TestCodec::answers_areNeverLargerThanTheOriginal_data()
{
    QTest::addColumn<QByteArray>("original");
    for (const ImageFormat format : allCases<ImageFormat>()) {
        const auto row = [&](const char *name, const QByteArray &bytes) {
            QTest::addRow("%s %s", qPrintable(rawValue(format)), name) << bytes;
        };
        const QByteArray once = compressed(saved(photo(150, 90), format)).bytes;
        row("compressed before", once);
        row("compressed twice", compressed(once).bytes);
        row("one pixel", saved(plain(1, 1, {1, 2, 3}), format));
        row("noise", saved(noise(120, 70), format));
        row("two colours", saved(quarters(64, 64), format));
    }
    QTest::newRow("well packed PNG") << saved(quarters(300, 300), ImageFormat::png);
}

void TestCodec::answers_areNeverLargerThanTheOriginal()
{
    QFETCH(QByteArray, original);
    const Encoded result = compressed(original);
    QVERIFY(!result.bytes.isEmpty());
    QVERIFY2(result.bytes.size() <= original.size(),
             qPrintable(QString::number(result.bytes.size() - original.size())));
}

void TestCodec::compressedJpeg_losesNoMoreQuality()
{
    void *bytes = nullptr;
    size_t size = 0;
    photo(200, 150).write_to_buffer(".jpg", &bytes, &size, VImage::option()->set("Q", 70));
    const QByteArray original(static_cast<const char *>(bytes), static_cast<qsizetype>(size));
    g_free(bytes);
    const Encoded result = compressed(original);
    QVERIFY(result.bytes.size() < original.size());
    QCOMPARE(meanDifference(loaded(original), loaded(result.bytes)), 0.0);
}

void TestCodec::conversions_yieldTheFormatAskedFor_data()
{
    QTest::addColumn<ImageFormat>("from");
    QTest::addColumn<ImageFormat>("to");
    for (const ImageFormat from : allCases<ImageFormat>()) {
        for (const ImageFormat to : allCases<ImageFormat>())
            QTest::addRow("%s to %s", qPrintable(rawValue(from)), qPrintable(rawValue(to)))
                << from << to;
    }
}

void TestCodec::conversions_yieldTheFormatAskedFor()
{
    QFETCH(ImageFormat, from);
    QFETCH(ImageFormat, to);
    const QByteArray original = saved(quarters(70, 50), from);
    const Encoded result = compressed(original, convertTo(to));
    QCOMPARE(result.format, to);
    const VImage image = loaded(result.bytes);
    QCOMPARE(image.width(), 70);
    QCOMPARE(image.height(), 50);
    QVERIFY(distance(pixel(image, 10, 10), {255, 0, 0}) < 12);
    QVERIFY(distance(pixel(image, 60, 10), {0, 255, 0}) < 12);
    QVERIFY(distance(pixel(image, 10, 40), {0, 0, 255}) < 12);
    QVERIFY(distance(pixel(image, 60, 40), {255, 255, 255}) < 12);
}

void TestCodec::severalFormats_theSmallestAnswers()
{
    const QByteArray original = saved(photo(200, 200), ImageFormat::png);
    qsizetype smallest = original.size();
    ImageFormat winner = ImageFormat::png;
    for (const ImageFormat format : allCases<ImageFormat>()) {
        const Encoded result = compressed(original, convertTo(format));
        if (result.bytes.size() < smallest) {
            smallest = result.bytes.size();
            winner = format;
        }
    }
    const Encoded result = compressed(original, R"({"convert":{"type":"*/*"}})");
    QCOMPARE(result.format, winner);
    QCOMPARE(result.bytes.size(), smallest);
}

void TestCodec::transparency_isKept_data()
{
    QTest::addColumn<ImageFormat>("format");
    QTest::newRow("png") << ImageFormat::png;
    QTest::newRow("webp") << ImageFormat::webp;
    QTest::newRow("avif") << ImageFormat::avif;
}

void TestCodec::transparency_isKept()
{
    QFETCH(ImageFormat, format);
    const VImage image = plain(40, 64, {200, 100, 50, 128})
                             .join(plain(40, 64, {20, 10, 250, 255}), VIPS_DIRECTION_HORIZONTAL);
    for (const QByteArray &original : {saved(image, format), saved(image, ImageFormat::png)}) {
        const VImage result = loaded(compressed(original, convertTo(format)).bytes);
        QCOMPARE(result.bands(), 4);
        QVERIFY(distance(pixel(result, 20, 30), {200, 100, 50, 128}) < 8);
        QVERIFY(distance(pixel(result, 60, 30), {20, 10, 250, 255}) < 8);
    }
}

void TestCodec::transparency_fallsOnTheBackground_data()
{
    QTest::addColumn<QByteArray>("options");
    QTest::addColumn<ImageFormat>("format");
    QTest::addColumn<double>("red");
    QTest::addColumn<double>("green");
    QTest::addColumn<double>("blue");

    const auto row = [](const char *name, const char *options, ImageFormat format, double red,
                        double green, double blue) {
        QTest::newRow(name) << QByteArray(options) << format << red << green << blue;
    };
    row("JPEG, none given", R"({"convert":{"type":"image/jpeg"}})", ImageFormat::jpeg, 255, 255,
        255);
    row("JPEG", R"({"convert":{"type":"image/jpeg"},"transform":{"background":"#102030"}})",
        ImageFormat::jpeg, 16, 32, 48);
    row("AVIF", R"({"convert":{"type":"image/avif"},"transform":{"background":"#102030"}})",
        ImageFormat::avif, 16, 32, 48);
    row("WebP", R"({"convert":{"type":"image/webp"},"transform":{"background":"#c02030"}})",
        ImageFormat::webp, 192, 32, 48);
    row("same format", R"({"transform":{"background":"#000000"}})", ImageFormat::png, 0, 0, 0);
}

void TestCodec::transparency_fallsOnTheBackground()
{
    QFETCH(QByteArray, options);
    QFETCH(ImageFormat, format);
    QFETCH(double, red);
    QFETCH(double, green);
    QFETCH(double, blue);
    const QByteArray original = saved(plain(64, 64, {9, 200, 9, 0}), ImageFormat::png);
    const Encoded result = compressed(original, options);
    QCOMPARE(result.format, format);
    const VImage image = loaded(result.bytes).colourspace(VIPS_INTERPRETATION_sRGB);
    QCOMPARE(image.bands(), 3);
    QVERIFY(distance(pixel(image, 30, 30), {red, green, blue}) < 8);

    const QByteArray grey =
        saved(VImage(plain(64, 64, {9, 0}))
                  .copy(VImage::option()->set("interpretation", VIPS_INTERPRETATION_B_W)),
              ImageFormat::png);
    const VImage fromGrey =
        loaded(compressed(grey, options).bytes).colourspace(VIPS_INTERPRETATION_sRGB);
    QVERIFY(distance(pixel(fromGrey, 30, 30), {red, green, blue}) < 8);
}

void TestCodec::orientation_isApplied_data()
{
    addOrientationRows();
}

void TestCodec::orientation_isApplied()
{
    QFETCH(ImageFormat, format);
    QFETCH(int, orientation);
    VImage image = quarters(160, 96).copy();
    image.set(VIPS_META_ORIENTATION, orientation);
    // Only once it was in a file there is a block that a PNG can be given.
    const QByteArray original = saved(loaded(saved(image, ImageFormat::jpeg)), format);
    const Encoded result = compressed(original, convertTo(ImageFormat::png));
    const VImage expected = loaded(original).autorot();
    const VImage actual = loaded(result.bytes).colourspace(VIPS_INTERPRETATION_sRGB);
    QCOMPARE(actual.width(), expected.width());
    QCOMPARE(actual.height(), expected.height());
    QCOMPARE(actual.width(), orientation < 5 ? 160 : 96);
    QCOMPARE(result.size.width, actual.width());
    const double difference = meanDifference(actual, expected);
    QVERIFY2(difference < 3, qPrintable(QString::number(difference)));
    QVERIFY(vips_image_get_orientation(actual.get_image()) == 1);
}

void TestCodec::colours_becomeSrgb()
{
    const std::vector<double> orange{200, 120, 40};
    const VImage wide =
        plain(64, 64, orange).icc_transform("p3", VImage::option()->set("input_profile", "srgb"));
    QVERIFY(distance(pixel(wide, 9, 9), orange) > 8);
    for (const ImageFormat format : allCases<ImageFormat>()) {
        const VImage result =
            loaded(compressed(saved(wide, ImageFormat::png), convertTo(format)).bytes);
        QVERIFY(distance(pixel(result, 9, 9), orange) < 6);
        QVERIFY(vips_image_get_typeof(result.get_image(), VIPS_META_ICC_NAME) == 0);
    }
}

void TestCodec::cmyk_becomesSrgb()
{
    const std::vector<double> colour{180, 60, 90};
    const VImage cmyk =
        plain(64, 64, colour).icc_transform("cmyk", VImage::option()->set("input_profile", "srgb"));
    const QByteArray original = saved(cmyk, ImageFormat::jpeg);
    QCOMPARE(loaded(original).bands(), 4);
    const VImage result = loaded(compressed(original).bytes);
    QCOMPARE(result.bands(), 3);
    QVERIFY(distance(pixel(result, 9, 9), colour) < 25);
}

void TestCodec::grey_staysGrey()
{
    const VImage grey = photo(100, 100).colourspace(VIPS_INTERPRETATION_B_W);
    for (const ImageFormat format : {ImageFormat::png, ImageFormat::jpeg}) {
        const QByteArray original = saved(grey, format);
        const VImage result =
            loaded(compressed(original).bytes).colourspace(VIPS_INTERPRETATION_B_W);
        QVERIFY(meanDifference(result, loaded(original)) < 4);
    }
    const VImage jpeg =
        loaded(compressed(saved(grey, ImageFormat::png), convertTo(ImageFormat::jpeg)).bytes);
    QCOMPARE(jpeg.bands(), 1);
}

void TestCodec::sixteenBits_becomeEight()
{
    const VImage deep = photo(100, 80).colourspace(VIPS_INTERPRETATION_RGB16);
    const VImage result = loaded(compressed(saved(deep, ImageFormat::png)).bytes);
    QCOMPARE(result.format(), VIPS_FORMAT_UCHAR);
    QVERIFY(meanDifference(result, deep.colourspace(VIPS_INTERPRETATION_sRGB)) < 5);

    const VImage alpha = plain(30, 30, {10, 20, 30, 128}).colourspace(VIPS_INTERPRETATION_RGB16);
    const VImage faint = loaded(compressed(saved(alpha, ImageFormat::png)).bytes);
    QVERIFY(distance(pixel(faint, 9, 9), {10, 20, 30, 128}) < 3);
}

void TestCodec::fewColours_areKeptExactly()
{
    const QByteArray original = saved(quarters(90, 90), ImageFormat::png);
    const VImage result = loaded(compressed(original, R"({"preserve":["copyright"]})").bytes);
    QCOMPARE(meanDifference(result, quarters(90, 90)), 0.0);
}

void TestCodec::smoothPictureWithManyColours_isNotBanded()
{
    // All hues at all brightnesses: 256 colours are far too few for it.
    const VImage xy = VImage::xyz(512, 512);
    const VImage x = xy[0] * 0.5;
    const VImage y = xy[1] * 0.5;
    const VImage image =
        x.bandjoin(y)
            .bandjoin((x + y) * -1 + 255)
            .cast(VIPS_FORMAT_UCHAR)
            .copy(VImage::option()->set("interpretation", VIPS_INTERPRETATION_sRGB))
            .copy_memory();
    const VImage result = loaded(compressed(saved(image, ImageFormat::png)).bytes);
    const double blurred = meanDifference(result.gaussblur(2), image.gaussblur(2));
    QVERIFY2(blurred < 1.5, qPrintable(QString::number(blurred)));
}

void TestCodec::damagedPictures_areRefused_data()
{
    QTest::addColumn<QByteArray>("bytes");
    for (const ImageFormat format : allCases<ImageFormat>()) {
        const QByteArray whole = saved(noise(200, 150), format);
        for (const int percent : {30, 60, 95})
            QTest::addRow("%s, %d %% of it", qPrintable(rawValue(format)), percent)
                << whole.first(whole.size() * percent / 100);
    }
    QByteArray jpeg = saved(noise(200, 150), ImageFormat::jpeg);
    QTest::newRow("JPEG with an early end")
        << QByteArray(jpeg).replace(jpeg.size() / 2, 2, QByteArray::fromHex("ffd9"));
    QTest::newRow("JPEG without its end") << jpeg.chopped(2);
    QByteArray png = saved(noise(200, 150), ImageFormat::png);
    QTest::newRow("PNG with other bytes") << png.replace(png.size() / 2, 4, "abcd");
}

void TestCodec::damagedPictures_areRefused()
{
    QFETCH(QByteArray, bytes);
    for (const QByteArray &options : {QByteArray("{}"), convertTo(ImageFormat::webp)}) {
        const auto result = tryCompress(bytes, options);
        QVERIFY(!result);
        QCOMPARE(result.error().fault, CodecFault::unsupported);
        QVERIFY(!result.error().message.isEmpty());
    }
}

void TestCodec::animatedWebp_keepsItsFrames()
{
    const QByteArray original = animatedWebp(60, 40, 5);
    for (const auto &[options, width, height] :
         {std::tuple("{}", 60, 40), std::tuple(R"({"convert":{"type":"image/webp"}})", 60, 40),
          std::tuple(R"({"resize":{"method":"scale","width":30}})", 30, 20),
          std::tuple(R"({"resize":{"method":"cover","width":20,"height":30}})", 20, 30),
          std::tuple(R"({"resize":{"method":"thumb","width":10,"height":10}})", 10, 10)}) {
        const Encoded result = compressed(original, options);
        QVERIFY(result.size == (PixelSize{width, height}));
        const VImage image = VImage::new_from_buffer(result.bytes.constData(),
                                                     static_cast<size_t>(result.bytes.size()), "",
                                                     VImage::option()->set("n", -1))
                                 .copy_memory();
        QCOMPARE(image.get_int("n-pages"), 5);
        QCOMPARE(image.get_int("page-height"), height);
        QCOMPARE(image.get_array_int("delay"), std::vector<int>(5, 100));
        for (int i = 0; i < 5; ++i) {
            const auto centre = image.getpoint(width / 2, i * height + height / 2);
            QVERIFY(distance(centre, {51.0 * i, 40, 200}) < 12);
        }
    }
}

void TestCodec::animatedWebp_isNotConverted()
{
    for (const ImageFormat format : {ImageFormat::png, ImageFormat::jpeg, ImageFormat::avif}) {
        const auto result = tryCompress(animatedWebp(10, 10, 2), convertTo(format));
        QVERIFY(!result);
        QCOMPARE(result.error().fault, CodecFault::unsupported);
        QVERIFY(result.error().message.contains(QLatin1String("animated")));
    }
}

void TestCodec::raisedStopFlag_endsTheWork()
{
    const std::atomic_bool stopped = true;
    for (const ImageFormat format : allCases<ImageFormat>()) {
        const auto result =
            compress(saved(photo(500, 500), format), RequestOptions{}, pixelLimit, stopped);
        QVERIFY(!result);
        QCOMPARE(result.error().fault, CodecFault::stopped);
    }
}

QTEST_GUILESS_MAIN(TestCodec)
#include "tst_codec.moc"

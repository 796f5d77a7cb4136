// SPDX-FileCopyrightText: 2026 The Pixpress authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "codec/codec.h"
#include "codec/vipslibrary.h"

#include "pictures.h"

#include <QTest>

using namespace pixpress;
using namespace pixpress::testing;
using vips::VImage;

class TestResize : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase() { startVips(); }

    void dimensions_areExact_data();
    void dimensions_areExact();
    void edgesOfTransparency_keepTheirColour();
    void cover_showsTheMiddle();
    void thumb_showsWhatStandsOut();
    void orientation_comesBeforeTheSize();
    void hugeResult_isRefused();
    void formatThatCannotHoldTheSize_isRefused();
};

namespace {

const std::atomic_bool running = false;

std::expected<Encoded, CodecError> resized(const VImage &image, const ResizeRequest &request,
                                           ImageFormat format = ImageFormat::png,
                                           qint64 pixelLimit = 20'000'000)
{
    RequestOptions options;
    options.resize = request;
    return compress(saved(image, format), options, pixelLimit, running);
}

} // namespace

void TestResize::dimensions_areExact_data()
{
    QTest::addColumn<int>("width");
    QTest::addColumn<int>("height");
    QTest::addColumn<ResizeMode>("method");
    QTest::addColumn<qint64>("askedWidth");
    QTest::addColumn<qint64>("askedHeight");

    using enum ResizeMode;
    const auto row = [](int width, int height, ResizeMode method, qint64 askedWidth,
                        qint64 askedHeight) {
        QTest::addRow("%dx%d %s %lldx%lld", width, height, qPrintable(rawValue(method)), askedWidth,
                      askedHeight)
            << width << height << method << askedWidth << askedHeight;
    };
    for (const ResizeMode method : {fit, cover, thumb}) {
        row(317, 211, method, 100, 100);
        row(211, 317, method, 33, 77);
        row(317, 211, method, 1, 1);
        row(317, 211, method, 316, 210);
        row(317, 211, method, 317, 211);
        row(317, 211, method, 400, 500);
        row(317, 211, method, 640, 3);
        row(1, 1, method, 5, 9);
        row(1, 300, method, 1, 20);
        row(1, 300, method, 20, 20);
        row(300, 1, method, 20, 20);
    }
    for (const qint64 width : {1, 2, 3, 7, 99, 100, 101, 316, 317, 318})
        row(317, 211, scale, width, 0);
    for (const qint64 height : {1, 2, 105, 106, 210, 211, 212})
        row(317, 211, scale, 0, height);
    row(5000, 3, scale, 100, 0);
}

void TestResize::dimensions_areExact()
{
    QFETCH(int, width);
    QFETCH(int, height);
    QFETCH(ResizeMode, method);
    QFETCH(qint64, askedWidth);
    QFETCH(qint64, askedHeight);

    const auto given = [](qint64 side) { return side > 0 ? std::optional(side) : std::nullopt; };
    const ResizeRequest request{method, given(askedWidth), given(askedHeight)};
    const PixelSize expected = planResize({width, height}, request).result;
    for (const int bands : {3, 4}) {
        const auto result = resized(
            plain(width, height, std::vector<double>(static_cast<size_t>(bands), 99)), request);
        QVERIFY(result);
        const VImage image = loaded(result->bytes);
        QCOMPARE(image.width(), expected.width);
        QCOMPARE(image.height(), expected.height);
        QVERIFY(result->size == expected);
        if (method == ResizeMode::cover || method == ResizeMode::thumb)
            QVERIFY(expected == (PixelSize{askedWidth, askedHeight}));
    }
}

void TestResize::edgesOfTransparency_keepTheirColour()
{
    // Green where nothing is seen, red where it is: no green may appear in between.
    const VImage image = plain(101, 100, {0, 255, 0, 0})
                             .join(plain(99, 100, {255, 0, 0, 255}), VIPS_DIRECTION_HORIZONTAL);
    const auto result = resized(image, {ResizeMode::scale, 50, std::nullopt});
    QVERIFY(result);
    const VImage small = loaded(result->bytes);
    bool sawEdge = false;
    for (int x = 20; x < 30; ++x) {
        const auto colour = pixel(small, x, 12);
        QCOMPARE(colour.size(), size_t(4));
        sawEdge |= colour[3] > 10 && colour[3] < 245;
        if (colour[3] > 10)
            QVERIFY2(colour[1] < 20, qPrintable(QString::number(colour[1])));
    }
    QVERIFY(sawEdge);
}

void TestResize::cover_showsTheMiddle()
{
    const VImage image = plain(100, 100, {255, 0, 0})
                             .join(plain(100, 100, {0, 255, 0}), VIPS_DIRECTION_HORIZONTAL)
                             .join(plain(100, 100, {0, 0, 255}), VIPS_DIRECTION_HORIZONTAL);
    const auto result = resized(image, {ResizeMode::cover, 20, 20});
    QVERIFY(result);
    const VImage small = loaded(result->bytes);
    QVERIFY(distance(pixel(small, 3, 10), {0, 255, 0}) < 10);
    QVERIFY(distance(pixel(small, 16, 10), {0, 255, 0}) < 10);
}

void TestResize::thumb_showsWhatStandsOut()
{
    const VImage image =
        plain(600, 100, {120, 120, 120}).insert(noise(60, 60), 510, 20).copy_memory();
    const auto result = resized(image, {ResizeMode::thumb, 100, 100});
    QVERIFY(result);
    QVERIFY(loaded(result->bytes).deviate() > 15);
    const auto middle = resized(image, {ResizeMode::cover, 100, 100});
    QVERIFY(middle);
    QVERIFY(loaded(middle->bytes).deviate() < 1);
}

void TestResize::orientation_comesBeforeTheSize()
{
    VImage image = quarters(200, 100).copy();
    image.set(VIPS_META_ORIENTATION, 6);
    const auto result = resized(image, {ResizeMode::scale, 50, std::nullopt}, ImageFormat::jpeg);
    QVERIFY(result);
    QVERIFY(result->size == (PixelSize{50, 100}));
}

void TestResize::hugeResult_isRefused()
{
    const auto result = resized(plain(10, 10, {1, 2, 3}), {ResizeMode::cover, 5000, 5000});
    QVERIFY(!result);
    QCOMPARE(result.error().fault, CodecFault::badRequest);
    // Its result is small, but not what it would be cut out of.
    const auto cut = resized(plain(2000, 1, {1, 2, 3}), {ResizeMode::cover, 1, 5000});
    QVERIFY(!cut);
    QCOMPARE(cut.error().fault, CodecFault::badRequest);
}

void TestResize::formatThatCannotHoldTheSize_isRefused()
{
    const QByteArray wide = saved(plain(16'384, 2, {1, 2, 3}), ImageFormat::png);
    RequestOptions options;
    options.convert = {ImageFormat::webp};
    const auto refused = compress(wide, options, 1'000'000, running);
    QVERIFY(!refused);
    QCOMPARE(refused.error().fault, CodecFault::badRequest);
    options.convert = {ImageFormat::webp, ImageFormat::jpeg};
    const auto other = compress(wide, options, 1'000'000, running);
    QVERIFY(other);
    QCOMPARE(other->format, ImageFormat::jpeg);
}

QTEST_GUILESS_MAIN(TestResize)
#include "tst_resize.moc"

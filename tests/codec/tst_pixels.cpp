// SPDX-FileCopyrightText: 2026 The Pixpress authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "codec/codec.h"
#include "codec/vipslibrary.h"

#include "pictures.h"

#include <QTest>

#include <lcms2.h>

#include <memory>

using namespace pixpress;
using namespace Qt::StringLiterals;
using namespace pixpress::testing;
using vips::VImage;

/// Every combination of depth, colour model, alpha, colour profile and format. Little CMS, called
/// here directly for a few colours, provides the expected pixels.
class TestPixels : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase() { startVips(); }

    void everyKindOfPixel_keepsItsColourAndAlpha_data();
    void everyKindOfPixel_keepsItsColourAndAlpha();
    void avifColoursNamedByNumber_becomeSrgb();
    void avifInHdr_isRefused_data();
    void avifInHdr_isRefused();
    void avifWithUnseenAlpha_isRefused();
    void unreadableJpegs_areNotCalledDamaged_data();
    void unreadableJpegs_areNotCalledDamaged();
};

namespace {

using Profile = std::unique_ptr<void, decltype(&cmsCloseProfile)>;

constexpr std::array operations{R"({})", R"({"preserve":["copyright"]})",
                                R"({"resize":{"method":"cover","width":48,"height":40}})"};

Profile makeProfile(const QByteArray &name)
{
    const cmsCIExyY d65{0.3127, 0.3290, 1};
    const auto curve = [](double gamma) {
        return std::unique_ptr<cmsToneCurve, decltype(&cmsFreeToneCurve)>(
            cmsBuildGamma(nullptr, gamma), cmsFreeToneCurve);
    };
    if (name == "grey")
        return {cmsCreateGrayProfile(&d65, curve(1.8).get()), cmsCloseProfile};
    if (name == "wide") {
        const cmsCIExyYTRIPLE primaries{{0.68, 0.32, 1}, {0.265, 0.69, 1}, {0.15, 0.06, 1}};
        const auto gamma = curve(2.2);
        cmsToneCurve *curves[]{gamma.get(), gamma.get(), gamma.get()};
        return {cmsCreateRGBProfile(&d65, &primaries, curves), cmsCloseProfile};
    }
    return {cmsCreate_sRGBProfile(), cmsCloseProfile};
}

QByteArray bytesOf(const Profile &profile)
{
    cmsUInt32Number size = 0;
    cmsSaveProfileToMem(profile.get(), nullptr, &size);
    QByteArray bytes(static_cast<qsizetype>(size), '\0');
    cmsSaveProfileToMem(profile.get(), bytes.data(), &size);
    return bytes;
}

/// The colour in 8-bit sRGB; grey as three equal values.
std::vector<double> toSrgb(const std::vector<double> &colour, const QByteArray &profileName)
{
    const bool isGrey = colour.size() == 1;
    if (profileName.isEmpty())
        return isGrey ? std::vector<double>(3, colour[0]) : colour;
    const Profile from = makeProfile(profileName);
    const Profile to = makeProfile("srgb");
    const std::unique_ptr<void, decltype(&cmsDeleteTransform)> transform(
        cmsCreateTransform(from.get(), isGrey ? TYPE_GRAY_DBL : TYPE_RGB_DBL, to.get(),
                           TYPE_RGB_DBL, INTENT_RELATIVE_COLORIMETRIC,
                           cmsFLAGS_BLACKPOINTCOMPENSATION),
        cmsDeleteTransform);
    std::vector<double> in;
    for (const double value : colour)
        in.push_back(value / 255);
    std::vector<double> out(3);
    cmsDoTransform(transform.get(), in.data(), out.data(), 1);
    for (double &value : out)
        value *= 255;
    return out;
}

/// Two colours with an alpha value each, left and right.
struct Halves
{
    std::vector<double> left;
    std::vector<double> right;
    double leftAlpha = 255;
    double rightAlpha = 255;
};

VImage drawn(const Halves &halves, int depth, bool hasAlpha, const QByteArray &profileName)
{
    const auto half = [&](std::vector<double> colour, double alpha) {
        if (hasAlpha)
            colour.push_back(alpha);
        return plain(48, 80, colour);
    };
    VImage image = half(halves.left, halves.leftAlpha)
                       .join(half(halves.right, halves.rightAlpha), VIPS_DIRECTION_HORIZONTAL);
    const bool isGrey = halves.left.size() == 1;
    if (depth == 16)
        image = (image * 257).cast(VIPS_FORMAT_USHORT);
    image = image
                .copy(VImage::option()->set(
                    "interpretation",
                    depth == 16 ? (isGrey ? VIPS_INTERPRETATION_GREY16 : VIPS_INTERPRETATION_RGB16)
                                : (isGrey ? VIPS_INTERPRETATION_B_W : VIPS_INTERPRETATION_sRGB)))
                .copy_memory();
    if (!profileName.isEmpty()) {
        const QByteArray profile = bytesOf(makeProfile(profileName));
        vips_image_set_blob_copy(image.get_image(), VIPS_META_ICC_NAME, profile.constData(),
                                 static_cast<size_t>(profile.size()));
    }
    return image;
}

/// Red, green, blue and alpha of a pixel of any image with 8 bits.
std::vector<double> rgba(const VImage &image, int x, int y)
{
    std::vector<double> values = image.getpoint(x, y);
    if (values.size() < 3)
        values.insert(values.begin(), 2, values.front());
    if (values.size() == 3)
        values.push_back(255);
    return values;
}

} // namespace

void TestPixels::everyKindOfPixel_keepsItsColourAndAlpha_data()
{
    QTest::addColumn<ImageFormat>("from");
    QTest::addColumn<int>("depth");
    QTest::addColumn<bool>("isGrey");
    QTest::addColumn<bool>("hasAlpha");
    QTest::addColumn<QByteArray>("profile");
    for (const ImageFormat from : allCases<ImageFormat>())
        for (const int depth : {8, 16})
            for (const bool isGrey : {false, true})
                for (const bool hasAlpha : {false, true})
                    for (const char *profile : {"", "srgb", "wide", "grey"}) {
                        const bool fitsProfile =
                            !*profile || isGrey == (QByteArrayView(profile) == "grey");
                        const bool fitsFormat =
                            (depth == 8 || from == ImageFormat::png) &&
                            (!hasAlpha || from != ImageFormat::jpeg) &&
                            (!isGrey || from == ImageFormat::png || from == ImageFormat::jpeg);
                        if (fitsProfile && fitsFormat)
                            QTest::addRow("%s, %d bits, %s%s, %s profile",
                                          qPrintable(rawValue(from)), depth,
                                          isGrey ? "grey" : "RGB", hasAlpha ? " with alpha" : "",
                                          *profile ? profile : "no")
                                << from << depth << isGrey << hasAlpha << QByteArray(profile);
                    }
}

void TestPixels::everyKindOfPixel_keepsItsColourAndAlpha()
{
    QFETCH(ImageFormat, from);
    QFETCH(int, depth);
    QFETCH(bool, isGrey);
    QFETCH(bool, hasAlpha);
    QFETCH(QByteArray, profile);
    const Halves halves =
        isGrey ? Halves{{90}, {180}, 128, 60} : Halves{{200, 120, 60}, {70, 110, 180}, 128, 60};
    const QByteArray original = saved(drawn(halves, depth, hasAlpha, profile), from);
    const VImage stored = loaded(original);
    QCOMPARE(stored.has_alpha(), hasAlpha);
    QCOMPARE(stored.format(), depth == 16 ? VIPS_FORMAT_USHORT : VIPS_FORMAT_UCHAR);
    QCOMPARE(vips_image_get_typeof(stored.get_image(), VIPS_META_ICC_NAME) != 0,
             !profile.isEmpty());

    const std::atomic_bool running = false;
    for (const ImageFormat to : allCases<ImageFormat>()) {
        for (const QByteArray operation : operations) {
            RequestOptions options = requestOptions(operation);
            if (to != from || options.preserve.any())
                options.convert = {to};
            const auto result = compress(original, options, 1'000'000, running);
            QVERIFY(result);
            VImage image = loaded(result->bytes);
            const bool keepsAlpha = hasAlpha && to != ImageFormat::jpeg;
            QCOMPARE(image.has_alpha(), keepsAlpha);
            // The smallest answer may be the original, whose profile then stays.
            if (vips_image_get_typeof(image.get_image(), VIPS_META_ICC_NAME) != 0) {
                QCOMPARE(result->bytes.size(), original.size());
                continue;
            }
            QCOMPARE(image.format(), VIPS_FORMAT_UCHAR);
            for (const auto &[colour, alpha, place] :
                 {std::tuple(halves.left, halves.leftAlpha, 1),
                  std::tuple(halves.right, halves.rightAlpha, 3)}) {
                std::vector<double> expected = toSrgb(colour, profile);
                expected.push_back(hasAlpha ? alpha : 255);
                if (!keepsAlpha && hasAlpha) { // flattened on white
                    for (double &value : expected)
                        value = (value * alpha + 255 * (255 - alpha)) / 255;
                    expected[3] = 255;
                }
                const auto actual = rgba(image, image.width() * place / 4, image.height() / 2);
                QVERIFY2(distance(actual, expected) < 8,
                         qPrintable(QStringLiteral("%1 %2: %3 %4 %5 %6, not %7 %8 %9 %10")
                                        .arg(rawValue(to), QString::fromLatin1(operation))
                                        .arg(actual[0])
                                        .arg(actual[1])
                                        .arg(actual[2])
                                        .arg(actual[3])
                                        .arg(expected[0])
                                        .arg(expected[1])
                                        .arg(expected[2])
                                        .arg(expected[3])));
            }
        }
    }
}

namespace {

/// The AVIF with other numbers for its colour primaries and transfer function.
QByteArray withColours(QByteArray avif, char primaries, char transfer)
{
    const qsizetype at = avif.indexOf("colrnclx");
    if (at < 0)
        return {};
    avif[at + 9] = primaries;
    avif[at + 11] = transfer;
    return avif;
}

QString errorFor(const QByteArray &bytes)
{
    const std::atomic_bool running = false;
    const auto result = compress(bytes, RequestOptions{}, 1'000'000, running);
    return result ? QString() : result.error().message;
}

constexpr char displayP3 = 12;
constexpr char srgbCurve = 13;

} // namespace

void TestPixels::avifColoursNamedByNumber_becomeSrgb()
{
    const std::vector<double> orange{200, 120, 40};
    const VImage wide =
        plain(64, 64, orange).icc_transform("p3", VImage::option()->set("input_profile", "srgb"));
    VImage bare = wide.copy();
    bare.remove(VIPS_META_ICC_NAME);
    const QByteArray original = withColours(saved(bare, ImageFormat::avif), displayP3, srgbCurve);
    QVERIFY(!original.isEmpty());
    const std::atomic_bool running = false;
    for (const ImageFormat format : allCases<ImageFormat>()) {
        RequestOptions options;
        options.convert = {format};
        const auto result = compress(original, options, 1'000'000, running);
        QVERIFY(result);
        QVERIFY(distance(pixel(loaded(result->bytes), 30, 30), orange) < 6);
    }
}

void TestPixels::avifInHdr_isRefused_data()
{
    QTest::addColumn<int>("transfer");
    QTest::newRow("PQ") << 16;
    QTest::newRow("HLG") << 18;
}

void TestPixels::avifInHdr_isRefused()
{
    QFETCH(int, transfer);
    const QByteArray original = withColours(saved(plain(64, 64, {9, 99, 200}), ImageFormat::avif),
                                            9, static_cast<char>(transfer));
    QVERIFY(errorFor(original).contains(QLatin1String("HDR")));
}

void TestPixels::avifWithUnseenAlpha_isRefused()
{
    QByteArray original = saved(plain(64, 64, {9, 99, 200, 128}), ImageFormat::avif);
    QCOMPARE(errorFor(original), QString());
    const qsizetype at = original.indexOf("auxl");
    QVERIFY(at > 0);
    original.replace(at, 4, "thmb");
    QVERIFY(errorFor(original).contains(QLatin1String("transparency")));
}

void TestPixels::unreadableJpegs_areNotCalledDamaged_data()
{
    QTest::addColumn<int>("marker");
    QTest::addColumn<int>("bits");
    QTest::addColumn<QString>("expected");
    QTest::newRow("12 bits") << 0xc1 << 12 << u"12 bits"_s;
    QTest::newRow("12 bits, progressive") << 0xc2 << 12 << u"12 bits"_s;
    QTest::newRow("lossless") << 0xc3 << 8 << u"Lossless"_s;
    QTest::newRow("lossless, 16 bits") << 0xc3 << 16 << u"Lossless"_s;
    QTest::newRow("hierarchical") << 0xc5 << 8 << u"Hierarchical"_s;
}

void TestPixels::unreadableJpegs_areNotCalledDamaged()
{
    QFETCH(int, marker);
    QFETCH(int, bits);
    QFETCH(QString, expected);
    QByteArray jpeg = saved(photo(64, 64), ImageFormat::jpeg);
    const qsizetype at = jpeg.indexOf("\xff\xc0");
    QVERIFY(at > 0);
    jpeg[at + 1] = static_cast<char>(marker);
    jpeg[at + 4] = static_cast<char>(bits);
    QVERIFY2(errorFor(jpeg).contains(expected), qPrintable(errorFor(jpeg)));
}

QTEST_GUILESS_MAIN(TestPixels)
#include "tst_pixels.moc"

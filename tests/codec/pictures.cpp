// SPDX-FileCopyrightText: 2026 The Pixpress authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "pictures.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>

#include <QTest>
#include <QtEndian>

#include <algorithm>
#include <cmath>

using namespace Qt::StringLiterals;

namespace pixpress::testing {

using vips::VImage;

namespace {

VImage asSrgb(const VImage &image)
{
    return image.cast(VIPS_FORMAT_UCHAR)
        .copy(VImage::option()->set("interpretation", VIPS_INTERPRETATION_sRGB))
        .copy_memory();
}

} // namespace

VImage photo(int width, int height)
{
    const VImage xy = VImage::xyz(width, height);
    const VImage x = xy[0] * (160.0 / width);
    const VImage y = xy[1] * (160.0 / height);
    const VImage structure =
        (xy[0] * 7).sin() * 12 + (xy[1] * 11).cos() * 12 +
        VImage::gaussnoise(width, height, VImage::option()->set("sigma", 4)->set("mean", 0));
    return asSrgb((x + structure + 40).bandjoin(y + structure + 30).bandjoin(x * -1 + y + 170));
}

VImage noise(int width, int height)
{
    const auto band = [&] {
        return VImage::gaussnoise(width, height,
                                  VImage::option()->set("sigma", 60)->set("mean", 128));
    };
    return asSrgb(band().bandjoin(band()).bandjoin(band()));
}

VImage plain(int width, int height, const std::vector<double> &colour)
{
    return asSrgb(VImage::black(width, height,
                                VImage::option()->set("bands", static_cast<int>(colour.size()))) +
                  colour);
}

VImage quarters(int width, int height)
{
    const int w = width / 2;
    const int h = height / 2;
    const VImage top =
        plain(w, h, {255, 0, 0}).join(plain(width - w, h, {0, 255, 0}), VIPS_DIRECTION_HORIZONTAL);
    const VImage bottom =
        plain(w, height - h, {0, 0, 255})
            .join(plain(width - w, height - h, {255, 255, 255}), VIPS_DIRECTION_HORIZONTAL);
    return top.join(bottom, VIPS_DIRECTION_VERTICAL).copy_memory();
}

QByteArray saved(const VImage &image, ImageFormat format)
{
    void *bytes = nullptr;
    size_t size = 0;
    switch (format) {
    case ImageFormat::png: image.write_to_buffer(".png", &bytes, &size); break;
    case ImageFormat::jpeg:
        image.write_to_buffer(
            ".jpg", &bytes, &size,
            VImage::option()->set("Q", 95)->set("subsample_mode", VIPS_FOREIGN_SUBSAMPLE_OFF));
        break;
    case ImageFormat::webp:
        image.write_to_buffer(".webp", &bytes, &size, VImage::option()->set("Q", 95));
        break;
    case ImageFormat::avif:
        image.write_to_buffer(".avif", &bytes, &size,
                              VImage::option()->set("Q", 90)->set("effort", 0)->set("bitdepth", 8));
        break;
    }
    const QByteArray result(static_cast<const char *>(bytes), static_cast<qsizetype>(size));
    g_free(bytes);
    return result;
}

QByteArray animatedWebp(int width, int height, int frames)
{
    std::vector<VImage> images;
    for (int i = 0; i < frames; ++i)
        images.push_back(plain(width, height, {255.0 * i / frames, 40, 200}));
    VImage joined = VImage::arrayjoin(images, VImage::option()->set("across", 1)).copy();
    joined.set("page-height", height);
    joined.set("delay", std::vector<int>(static_cast<size_t>(frames), 100));
    return saved(joined, ImageFormat::webp);
}

QByteArray asAnimatedPng(const QByteArray &png)
{
    constexpr qsizetype headEnd = 8 + 25; // Signature and header chunk.
    QByteArray chunk(4 + 4 + 8 + 4, '\0');
    qToBigEndian<quint32>(8, chunk.data());
    chunk.replace(4, 4, "acTL");
    qToBigEndian<quint32>(2, chunk.data() + 8);
    return png.first(headEnd) + chunk + png.sliced(headEnd);
}

QByteArray withBrand(const QByteArray &avif, const QByteArray &brand)
{
    QByteArray result = avif;
    const auto boxSize = static_cast<qsizetype>(qFromBigEndian<quint32>(avif.constData()));
    for (qsizetype offset = 8; offset + 4 <= boxSize; offset += 4) {
        if (offset != 12)
            result.replace(offset, 4, brand);
    }
    return result;
}

VImage loaded(const QByteArray &bytes)
{
    return VImage::new_from_buffer(bytes.constData(), static_cast<size_t>(bytes.size()), "")
        .copy_memory();
}

std::vector<double> pixel(const VImage &image, int x, int y)
{
    return image.getpoint(x, y);
}

double distance(const std::vector<double> &a, const std::vector<double> &b)
{
    if (a.size() != b.size())
        return 1000;
    double largest = 0;
    for (size_t i = 0; i < a.size(); ++i)
        largest = std::max(largest, std::abs(a[i] - b[i]));
    return largest;
}

QByteArray field(const VImage &image, const char *name)
{
    if (vips_image_get_typeof(image.get_image(), name) == 0)
        return {};
    char *text = nullptr;
    vips_image_get_as_string(image.get_image(), name, &text);
    const QByteArray result(text);
    g_free(text);
    return result;
}

RequestOptions requestOptions(const QByteArray &json)
{
    const QJsonObject object = QJsonDocument::fromJson(json).object();
    const QJsonObject resize = object["resize"_L1].toObject();
    const auto side = [&](const char *name) {
        return resize.contains(QLatin1String(name))
                   ? std::optional(resize[QLatin1String(name)].toInteger())
                   : std::nullopt;
    };
    RequestOptions options;
    if (!resize.isEmpty())
        options.resize = {fromRawValue<ResizeMode>(resize["method"_L1].toString()).value(),
                          side("width"), side("height")};
    const QString type = object["convert"_L1]["type"_L1].toString();
    if (type == QLatin1String("*/*"))
        std::ranges::copy(allCases<ImageFormat>(), std::back_inserter(options.convert));
    else if (!type.isEmpty())
        options.convert = {fromRawValue<ImageFormat>(type).value()};
    if (const QString background = object["transform"_L1]["background"_L1].toString();
        !background.isEmpty()) {
        const uint colour = background.mid(1).toUInt(nullptr, 16);
        options.background = {static_cast<quint8>(colour >> 16), static_cast<quint8>(colour >> 8),
                              static_cast<quint8>(colour)};
    }
    const QJsonArray preserve = object["preserve"_L1].toArray();
    options.preserve = {.copyright = preserve.contains("copyright"_L1),
                        .creation = preserve.contains("creation"_L1),
                        .location = preserve.contains("location"_L1)};
    return options;
}

void addOrientationRows()
{
    QTest::addColumn<ImageFormat>("format");
    QTest::addColumn<int>("orientation");
    for (const ImageFormat format : {ImageFormat::jpeg, ImageFormat::png, ImageFormat::webp}) {
        for (int orientation = 1; orientation <= 8; ++orientation)
            QTest::addRow("%s %d", qPrintable(rawValue(format)), orientation)
                << format << orientation;
    }
}

} // namespace pixpress::testing

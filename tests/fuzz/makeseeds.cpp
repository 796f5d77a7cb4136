// SPDX-FileCopyrightText: 2026 The Pixpress authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "pictures.h"

#include "codec/metadata.h"
#include "codec/vipslibrary.h"

#include <QDir>
#include <QFile>

#include <cstdio>

using namespace Qt::StringLiterals;
using namespace pixpress;
using namespace pixpress::testing;
using vips::VImage;

namespace {

void write(const QDir &folder, const QString &target, const QString &name, const QByteArray &bytes)
{
    folder.mkpath(target);
    QFile file(folder.filePath(target + u'/' + name));
    if (!file.open(QIODevice::WriteOnly) || file.write(bytes) != bytes.size())
        qFatal("%s cannot be written.", qPrintable(file.fileName()));
}

VImage small()
{
    return quarters(12, 9);
}

/// With what cameras state of it, of which a part is to be kept.
VImage described()
{
    VImage image = small().copy();
    image.set("orientation", 6);
    image.set("exif-ifd0-Orientation", "6");
    image.set("exif-ifd0-Copyright", "A. Author");
    image.set("exif-ifd0-Make", "Camera");
    image.set("exif-ifd2-DateTimeOriginal", "2026:01:02 03:04:05");
    image.set("exif-ifd3-GPSLatitude", "48/1 51/1 0/1");
    return image;
}

VImage transparent()
{
    return small().bandjoin(plain(12, 9, {128, 128, 128})[0]);
}

VImage deep()
{
    return (small().cast(VIPS_FORMAT_USHORT) * 257)
        .cast(VIPS_FORMAT_USHORT)
        .copy(VImage::option()->set("interpretation", VIPS_INTERPRETATION_RGB16));
}

QByteArray savedAs(const VImage &image, const char *suffix, vips::VOption *options)
{
    void *bytes = nullptr;
    size_t size = 0;
    image.write_to_buffer(suffix, &bytes, &size, options);
    const QByteArray result(static_cast<const char *>(bytes), static_cast<qsizetype>(size));
    g_free(bytes);
    return result;
}

using Picture = std::pair<QString, QByteArray>;

QList<Picture> pictures()
{
    QList<Picture> result;
    for (const ImageFormat format : allCases<ImageFormat>()) {
        const QString suffix = u'.' + fileExtension(format);
        result.append({u"plain"_s + suffix, saved(small(), format)});
        result.append({u"described"_s + suffix, saved(described(), format)});
        result.append({u"pixel"_s + suffix, saved(plain(1, 1, {1, 2, 3}), format)});
        if (format != ImageFormat::jpeg)
            result.append({u"transparent"_s + suffix, saved(transparent(), format)});
    }
    const QByteArray png = saved(small(), ImageFormat::png);
    const QByteArray avif = saved(small(), ImageFormat::avif);
    result.append({u"animated.png"_s, asAnimatedPng(png)});
    result.append({u"animated.webp"_s, animatedWebp(6, 5, 3)});
    result.append({u"sequence.avif"_s, withBrand(avif, "avis")});
    result.append({u"other.heic"_s, withBrand(avif, "heic")});
    result.append({u"deep.png"_s, saved(deep(), ImageFormat::png)});
    result.append(
        {u"grey.jpg"_s, saved(small().colourspace(VIPS_INTERPRETATION_B_W), ImageFormat::jpeg)});
    result.append(
        {u"palette.png"_s, savedAs(transparent(), ".png", VImage::option()->set("palette", true))});
    result.append(
        {u"interlaced.png"_s, savedAs(small(), ".png", VImage::option()->set("interlace", true))});
    result.append(
        {u"progressive.jpg"_s, savedAs(small(), ".jpg", VImage::option()->set("interlace", true))});
    result.append({u"cmyk.jpg"_s, savedAs(small().colourspace(VIPS_INTERPRETATION_CMYK), ".jpg",
                                          VImage::option()->set("strip", true))});
    result.append({u"exact.webp"_s,
                   savedAs(transparent(), ".webp", VImage::option()->set("lossless", true))});
    result.append(
        {u"profile.png"_s, savedAs(small(), ".png", VImage::option()->set("profile", "srgb"))});
    return result;
}

} // namespace

// Usage: fuzz-seeds FOLDER
int main(int argc, char **argv)
{
    if (argc != 2) {
        std::fprintf(stderr, "Usage: fuzz-seeds FOLDER\n");
        return 2;
    }
    startVips();
    const QDir folder(QString::fromLocal8Bit(argv[1]));
    for (const auto &[name, bytes] : pictures())
        write(folder, u"pictures"_s, name, bytes);
    const QByteArray withExif = saved(described(), ImageFormat::jpeg);
    write(folder, u"exif"_s, u"described"_s, exifBlock(loaded(withExif)));
    return 0;
}

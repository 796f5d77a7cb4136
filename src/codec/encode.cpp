// SPDX-FileCopyrightText: 2026 The Pixpress authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "codec/encode.h"

#include "codec/jpegencoder.h"
#include "codec/metadata.h"
#include "codec/quality.h"
#include "codec/vipslibrary.h"

namespace pixpress {

namespace {

using vips::VImage;

constexpr qint64 megapixels = 1'000'000;

qint64 pixelsOf(const VImage &image)
{
    return static_cast<qint64>(image.width()) * image.height();
}

vips::VOption *saveOptions(const VImage &image)
{
    // When not told to strip, libvips writes an EXIF block of its own even into pictures that have
    // none.
    return VImage::option()->set("strip", exifBlock(image).isEmpty());
}

/// With colours at half the size, unless that would show.
QByteArray encodeJpeg(const VImage &image, const std::atomic_bool &stopped)
{
    constexpr QualityRange qualities{50, 80, 96, 0.8};
    const VImage pixels = image.copy_memory();
    const QByteArray exif = exifBlock(image);
    const auto encode = [&](JpegEncoder::Colours colours, bool isLast) {
        JpegEncoder encoder(pixels, colours, stopped);
        QByteArray last;
        int lastQuality = 0;
        const auto [quality, similarity] =
            chooseQuality(pixels, ImageFormat::jpeg, qualities, [&](int q) {
                lastQuality = q;
                return last = encoder.encode(q, exif);
            });
        if (similarity < lowestSimilarity && !isLast)
            return QByteArray();
        return quality == lastQuality ? last : encoder.encode(quality, exif);
    };
    const bool hasColours = pixels.bands() > 1;
    QByteArray bytes;
    if (!hasColours || !isGraphic(pixels))
        bytes = encode(JpegEncoder::Colours::halfSize, !hasColours);
    return bytes.isEmpty() ? encode(JpegEncoder::Colours::fullSize, true) : bytes;
}

/// The encoder's time grows faster than the gain of its slow settings is worth to somebody who
/// waits for the answer.
int avifEffort(qint64 pixels)
{
    if (pixels <= 16 * megapixels)
        return 3;
    if (pixels <= 40 * megapixels)
        return 2;
    return pixels <= 64 * megapixels ? 1 : 0;
}

QByteArray encodeAvif(const VImage &image, const std::atomic_bool &stopped)
{
    constexpr QualityRange qualities{50, 66, maxAvifQuality, 0.65};
    const int effort = avifEffort(pixelsOf(image));
    const auto encode = [&](int quality, int speed) {
        if (stopped)
            return QByteArray();
        return taken(image.heifsave_buffer(
            saveOptions(image)
                ->set("compression", VIPS_FOREIGN_HEIF_COMPRESSION_AV1)
                ->set("bitdepth", 8)
                ->set("subsample_mode",
                      isGraphic(image) ? VIPS_FOREIGN_SUBSAMPLE_OFF : VIPS_FOREIGN_SUBSAMPLE_ON)
                ->set("Q", quality)
                ->set("effort", speed)));
    };
    const auto chosen =
        chooseQuality(image, ImageFormat::avif, qualities, [&](int q) { return encode(q, 0); });
    return encode(chosen.quality, effort);
}

} // namespace

QByteArray encodePicture(const VImage &image, ImageFormat format, const std::atomic_bool &stopped)
{
    switch (format) {
    case ImageFormat::png: return encodePng(image, stopped);
    case ImageFormat::jpeg: return encodeJpeg(image, stopped);
    case ImageFormat::webp: return encodeWebp(image, stopped);
    case ImageFormat::avif: return encodeAvif(image.copy_memory(), stopped);
    }
    Q_UNREACHABLE();
}

} // namespace pixpress

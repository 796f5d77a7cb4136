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

constexpr QualityRange avifQualities{50, 66, 80, 0.65};
constexpr int avifTrialEffort = 0;

/// `image` is in memory. None once the work is stopped.
QByteArray writeAvif(const VImage &image, int quality, int effort, const std::atomic_bool &stopped)
{
    if (stopped)
        return {};
    const auto subsampling =
        isGraphic(image) ? VIPS_FOREIGN_SUBSAMPLE_OFF : VIPS_FOREIGN_SUBSAMPLE_ON;
    return taken(image.heifsave_buffer(saveOptions(image)
                                           ->set("compression", VIPS_FOREIGN_HEIF_COMPRESSION_AV1)
                                           ->set("bitdepth", 8)
                                           ->set("subsample_mode", subsampling)
                                           ->set("Q", quality)
                                           ->set("effort", effort)));
}

QByteArray encodeAvif(const VImage &image, const std::atomic_bool &stopped)
{
    const auto chosen = chooseQuality(image, ImageFormat::avif, avifQualities, [&](int quality) {
        return writeAvif(image, quality, avifTrialEffort, stopped);
    });
    return writeAvif(image, chosen.quality, avifEffort(pixelsOf(image)), stopped);
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

QByteArray encodeFinest(const VImage &image, ImageFormat format, const std::atomic_bool &stopped)
{
    return format == ImageFormat::webp
               ? encodeFinestWebp(image, stopped)
               : writeAvif(image.copy_memory(), avifQualities.highest, avifTrialEffort, stopped);
}

} // namespace pixpress

// SPDX-FileCopyrightText: 2026 The Pixpress authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "codec/encode.h"

#include "codec/metadata.h"
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

QByteArray encodeJpeg(const VImage &image)
{
    return taken(image.jpegsave_buffer(saveOptions(image)
                                           ->set("Q", jpegQuality)
                                           ->set("optimize_coding", true)
                                           ->set("interlace", true)));
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

QByteArray encodeAvif(const VImage &image)
{
    return taken(image.heifsave_buffer(saveOptions(image)
                                           ->set("compression", VIPS_FOREIGN_HEIF_COMPRESSION_AV1)
                                           ->set("bitdepth", 8)
                                           ->set("Q", 60)
                                           ->set("effort", avifEffort(pixelsOf(image)))));
}

} // namespace

QByteArray encodePicture(const VImage &image, ImageFormat format, const std::atomic_bool &stopped)
{
    switch (format) {
    case ImageFormat::png: return encodePng(image, stopped);
    case ImageFormat::jpeg: return encodeJpeg(image);
    case ImageFormat::webp: return encodeWebp(image, stopped);
    case ImageFormat::avif: return encodeAvif(image);
    }
    Q_UNREACHABLE();
}

} // namespace pixpress

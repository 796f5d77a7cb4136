// SPDX-FileCopyrightText: 2026 The Pixpress authors
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "codec/codec.h"

#include <vips/vips8>

#include <atomic>

/// From pixels to the bytes of a file. `image` holds what decodePicture() returns; the metadata
/// that it carries is written. The functions throw vips::VError. Once `stopped` is raised they end
/// early, but for the AV1 encoder and the last passes over a JPEG, and what they return is not to
/// be used.
namespace pixpress {

QByteArray encodePicture(const vips::VImage &image, ImageFormat format,
                         const std::atomic_bool &stopped);

/// The picture quickly encoded as WebP or AVIF at the highest quality that encodePicture() chooses.
QByteArray encodeFinest(const vips::VImage &image, ImageFormat format,
                        const std::atomic_bool &stopped);

QByteArray encodePng(const vips::VImage &image, const std::atomic_bool &stopped);
QByteArray encodeWebp(const vips::VImage &image, const std::atomic_bool &stopped);
QByteArray encodeFinestWebp(const vips::VImage &image, const std::atomic_bool &stopped);

/// Whether the decoder would have to make up a part of the picture; libvips does not tell.
bool isJpegDamaged(const QByteArray &original, const std::atomic_bool &stopped);

struct RecompressedJpeg
{
    bool isDamaged = false;
    bool isCompact = false; ///< Another lossy pass would cost quality for next to nothing.
    QByteArray bytes;       ///< Empty when this way is not open for the picture.
};

/// The same pixels, packed better without loss. `exif` is written when it is not empty.
RecompressedJpeg recompressJpeg(const QByteArray &original, const QByteArray &exif,
                                const std::atomic_bool &stopped);

} // namespace pixpress

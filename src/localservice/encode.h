// SPDX-FileCopyrightText: 2026 The Pixpress authors
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "localservice/codec.h"

#include <vips/vips8>

#include <atomic>

/// From pixels to the bytes of a file. `image` holds what decodePicture() returns; the metadata
/// that it carries is written. The functions throw vips::VError.
namespace pixpress {

QByteArray encodePicture(const vips::VImage &image, ImageFormat format,
                         const std::atomic_bool &stopped);

QByteArray encodePng(const vips::VImage &image, const std::atomic_bool &stopped);
QByteArray encodeWebp(const vips::VImage &image, const std::atomic_bool &stopped);

/// What the coefficients of a JPEG say, and the same coefficients written in less space.
struct RepackedJpeg
{
    bool isDamaged = false;    ///< The decoder would have to make up a part of the picture.
    bool isCompressed = false; ///< Already at the quality that encodePicture() aims at, or below.
    QByteArray bytes;          ///< Without loss; empty when there is no such form.
};

/// `exif` is written into the result when it is not empty.
RepackedJpeg repackJpeg(const QByteArray &original, const QByteArray &exif,
                        const std::atomic_bool &stopped);

/// The quality on libjpeg's scale that is written.
inline constexpr int jpegQuality = 82;

} // namespace pixpress

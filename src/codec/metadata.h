// SPDX-FileCopyrightText: 2026 The Pixpress authors
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "codec/requestoptions.h"

#include <QByteArray>

namespace vips {
class VImage;
}

namespace pixpress {

/// The image without any metadata but its animation timing and the EXIF entries to be preserved.
vips::VImage withoutMetadata(const vips::VImage &image, const Preserve &preserve);

/// The block of the EXIF entries to be preserved, from its identifier on; with `orientation`, the
/// one that tells how to turn the pixels is among them. Empty when there are none.
QByteArray preservedExif(const vips::VImage &image, const Preserve &preserve, bool orientation);

/// The EXIF block that `image` carries, from its "Exif" identifier on; empty when it has none.
QByteArray exifBlock(const vips::VImage &image);

/// What follows an EXIF block's identifier, "Exif" and two zeros, which only JPEG files have. Empty
/// when the block is.
QByteArrayView tiffOf(const QByteArray &exif);

} // namespace pixpress

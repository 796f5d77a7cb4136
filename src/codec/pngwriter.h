// SPDX-FileCopyrightText: 2026 The Pixpress authors
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <QByteArray>

#include <libimagequant.h>
#include <png.h>

#include <atomic>

namespace pixpress {

/// What libpng writes: rows of samples, and a palette when they are indices.
struct PngRaster
{
    int width = 0; ///< Pixels.
    int height = 0;
    int colourType = 0; ///< One of PNG_COLOR_TYPE_*.
    int bitDepth = 8;   ///< Of the samples in the file.
    size_t stride = 0;  ///< Bytes from row to row, one per sample.
    const unsigned char *samples = nullptr;
    const liq_palette *palette = nullptr;
};

/// The file, with the EXIF block when there is one. Throws vips::VError, also when `stopped` is
/// raised meanwhile.
QByteArray writePng(const PngRaster &raster, const QByteArray &exif,
                    const std::atomic_bool &stopped);

} // namespace pixpress

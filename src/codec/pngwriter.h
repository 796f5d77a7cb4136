// SPDX-FileCopyrightText: 2026 The Pixpress authors
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <QByteArray>

#include <array>
#include <atomic>
#include <vector>

namespace pixpress {

enum class PngColours { grey = 0, rgb = 2, palette = 3, greyAlpha = 4, rgbAlpha = 6 };

struct PngColour
{
    unsigned char red = 0;
    unsigned char green = 0;
    unsigned char blue = 0;
    unsigned char alpha = 255;

    auto operator<=>(const PngColour &) const = default;
};

/// Rows of samples, a byte each, without gaps.
struct PngRaster
{
    int width = 0; ///< Pixels.
    int height = 0;
    PngColours colours = PngColours::rgb;
    int bitDepth = 8; ///< Of the samples in the file.
    const unsigned char *samples = nullptr;
    std::vector<PngColour> palette; ///< Opaque colours last.
};

/// The file, with the EXIF block when there is one. Ends early, with no bytes, when `stopped` is
/// raised meanwhile, except while it deflates.
QByteArray writePng(const PngRaster &raster, const QByteArray &exif,
                    const std::atomic_bool &stopped);

} // namespace pixpress

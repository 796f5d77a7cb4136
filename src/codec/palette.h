// SPDX-FileCopyrightText: 2026 The Pixpress authors
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "codec/pngwriter.h"

#include <vips/vips8>

#include <optional>

namespace pixpress {

/// A picture of at most 256 colours: for each pixel the index of its colour.
struct IndexedPicture
{
    std::vector<PngColour> palette;
    std::vector<unsigned char> indices;
};

/// The very pixels of an image in memory, if they have so few colours. All that is transparent
/// counts as one colour.
std::optional<IndexedPicture> exactPalette(const vips::VImage &image);

/// The same pixels with the palette that follows from them alone: no colour twice or without use,
/// opaque ones last, else by frequency.
IndexedPicture tidied(const IndexedPicture &picture);

} // namespace pixpress

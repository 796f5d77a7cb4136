// SPDX-FileCopyrightText: 2026 The Pixpress authors
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "codec/requestoptions.h"

#include <QByteArray>

#include <vips/vips8>

/// Pictures that the tests make for themselves.
namespace pixpress::testing {

/// A soft colour gradient with some structure, as a photograph has it.
vips::VImage photo(int width, int height);

/// Nothing in common from pixel to pixel; hard to compress.
vips::VImage noise(int width, int height);

/// All in one colour, given as 3 or 4 bands.
vips::VImage plain(int width, int height, const std::vector<double> &colour);

/// Four quarters: red, green / blue, white.
vips::VImage quarters(int width, int height);

/// Encoded at high quality, with all metadata that the image carries.
QByteArray saved(const vips::VImage &image, ImageFormat format);

/// An animation of `frames` frames, each all in one colour, 100 ms apart.
QByteArray animatedWebp(int width, int height, int frames);

/// The file's bytes with an animation control chunk in the front.
QByteArray asAnimatedPng(const QByteArray &png);

/// The file's bytes with other brands in its first box.
QByteArray withBrand(const QByteArray &avif, const QByteArray &brand);

/// Decoded as it is stored; the bytes are kept with the image.
vips::VImage loaded(const QByteArray &bytes);

std::vector<double> pixel(const vips::VImage &image, int x, int y);

/// The largest difference of any band.
double distance(const std::vector<double> &a, const std::vector<double> &b);

/// A string field of the image's header; empty when it has none of this name.
QByteArray field(const vips::VImage &image, const char *name);

/// Options written as the web service takes them: {"convert":{"type":"image/webp"}}; "*/*" stands
/// for every format.
RequestOptions requestOptions(const QByteArray &json);

/// Adds the columns "format" and "orientation" to a test's table: those formats whose metadata
/// tells how to turn a picture, with each of the eight ways.
void addOrientationRows();

} // namespace pixpress::testing

// SPDX-FileCopyrightText: 2026 The Pixpress authors
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "codec/codec.h"
#include "codec/sniff.h"

#include <vips/vips8>

#include <atomic>

/// From the bytes of a file to pixels. The functions throw vips::VError.
namespace pixpress {

/// The image with only its header read. `bytes` must outlive it.
vips::VImage openPicture(const QByteArray &bytes, const Sniffed &sniffed);

PictureInfo describe(const vips::VImage &opened, ImageFormat format);

/// Whether the pixels need no more than decoding: upright and already sRGB or grey.
bool isPlain(const vips::VImage &opened);

/// The pixels in memory: upright, 8 bits, sRGB or grey, with an alpha band only when something is
/// transparent. Frames of an animation stand below each other, as libvips has them.
vips::VImage decodePicture(vips::VImage opened, const std::atomic_bool &stopped);

} // namespace pixpress

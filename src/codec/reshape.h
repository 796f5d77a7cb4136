// SPDX-FileCopyrightText: 2026 The Pixpress authors
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "codec/codec.h"

#include <vips/vips8>

/// Pixels of other sizes and without transparency. `image` holds what decodePicture() returns, and
/// so does the result. The functions throw vips::VError.
namespace pixpress {

/// Each of the frames that `info` counts, resized as planned.
vips::VImage resized(const vips::VImage &image, const PictureInfo &info, const ResizePlan &plan,
                     ResizeMode method);

vips::VImage flattened(const vips::VImage &image, RequestOptions::Colour colour);

} // namespace pixpress

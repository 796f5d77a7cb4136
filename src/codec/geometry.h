// SPDX-FileCopyrightText: 2026 The Pixpress authors
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "model/formats.h"

#include <optional>

/// Where the pixels of a resized picture come from, in whole numbers only.
namespace pixpress {

/// In pixels.
struct PixelSize
{
    qint64 width = 0;
    qint64 height = 0;

    bool operator==(const PixelSize &) const = default;
};

/// What a request asks for, in pixels. A side that is not given is the source's.
struct ResizeRequest
{
    ResizeMode method = ResizeMode::fit;
    std::optional<qint64> width;
    std::optional<qint64> height;

    bool operator==(const ResizeRequest &) const = default;
};

/// First the whole picture is scaled to `scaled`; then `result` is cut out of that.
struct ResizePlan
{
    PixelSize scaled;
    PixelSize result;

    bool operator==(const ResizePlan &) const = default;
};

/// The plan for a picture of this size, which has at least one pixel. No side is ever shorter than
/// a pixel, and the side that follows from the proportions is rounded to the nearest one.
///
/// - scale: the side that was given decides. Both given, as the program's own client sends it when
///   both are set: like fit, for this is what keeps the proportions and exceeds neither.
/// - fit: the largest size of the same proportions inside the box.
/// - Neither enlarges: a picture that is small enough keeps its size.
/// - cover, thumb: exactly the box, so a smaller picture is enlarged.
ResizePlan planResize(PixelSize source, const ResizeRequest &request);

} // namespace pixpress

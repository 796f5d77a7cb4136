// SPDX-FileCopyrightText: 2026 The Pixpress authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "codec/geometry.h"

#include <algorithm>

namespace pixpress {

namespace {

/// value * numerator / denominator to the nearest pixel, at least one.
qint64 proportional(qint64 value, qint64 numerator, qint64 denominator)
{
    return std::max<qint64>(1, (2 * value * numerator + denominator) / (2 * denominator));
}

PixelSize withWidth(PixelSize source, qint64 width)
{
    return {width, proportional(source.height, width, source.width)};
}

PixelSize withHeight(PixelSize source, qint64 height)
{
    return {proportional(source.width, height, source.height), height};
}

/// Whether the box is, for its height, at least as wide as the picture. Cross-multiplied, so that
/// no rounding decides which side is the tight one.
bool isWider(PixelSize box, PixelSize source)
{
    return box.width * source.height >= source.width * box.height;
}

PixelSize inside(PixelSize source, PixelSize box)
{
    if (source.width <= box.width && source.height <= box.height)
        return source;
    return isWider(box, source) ? withHeight(source, box.height) : withWidth(source, box.width);
}

PixelSize around(PixelSize source, PixelSize box)
{
    return isWider(box, source) ? withWidth(source, box.width) : withHeight(source, box.height);
}

} // namespace

ResizePlan planResize(PixelSize source, const ResizeRequest &request)
{
    const PixelSize box{request.width.value_or(source.width),
                        request.height.value_or(source.height)};
    switch (request.method) {
    case ResizeMode::scale:
    case ResizeMode::fit: {
        const PixelSize size = inside(source, box);
        return {size, size};
    }
    case ResizeMode::cover:
    case ResizeMode::thumb: {
        const PixelSize size = around(source, box);
        // The other side is at least the box's, whatever its rounding did.
        return {{std::max(size.width, box.width), std::max(size.height, box.height)}, box};
    }
    }
    Q_UNREACHABLE();
}

} // namespace pixpress

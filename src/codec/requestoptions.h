// SPDX-FileCopyrightText: 2026 The Pixpress authors
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "codec/geometry.h"
#include "model/options.h"

#include <QList>
#include <QString>

#include <array>
#include <expected>
#include <optional>

namespace pixpress {

/// What is kept of a picture's EXIF data; the rest is dropped.
struct Preserve
{
    bool copyright = false; ///< Who made it and who owns it.
    bool creation = false;  ///< When it was taken.
    bool location = false;  ///< Where it was taken.

    bool any() const { return copyright || creation || location; }
    bool operator==(const Preserve &) const = default;
};

/// What a request asks for beyond plain compression.
struct RequestOptions
{
    using Colour = std::array<quint8, 3>; ///< Red, green, blue (sRGB).

    std::optional<ResizeRequest> resize;
    QList<ImageFormat> convert; ///< The smallest of these answers; empty: the picture's own format.
    std::optional<Colour> background; ///< Replaces transparency.
    Preserve preserve;

    bool operator==(const RequestOptions &) const = default;
};

/// The longest side of a result, in pixels, and so the longest that can be asked for: no JPEG has
/// a longer one. A PNG could.
inline constexpr qint64 maxSide = 65'535;

/// The codec's part of what a person has set. The error is a sentence about a size or colour that
/// no picture can have.
std::expected<RequestOptions, QString> toRequestOptions(const CompressionOptions &options);

} // namespace pixpress

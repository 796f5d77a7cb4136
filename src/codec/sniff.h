// SPDX-FileCopyrightText: 2026 The Pixpress authors
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "codec/geometry.h"
#include "model/formats.h"

#include <QByteArray>
#include <QString>

#include <optional>

namespace pixpress {

/// What the first bytes of a file say about it; nothing is decoded.
struct Sniffed
{
    ImageFormat format = ImageFormat::png;
    bool isAnimated = false; ///< Several frames that play one after the other.

    bool operator==(const Sniffed &) const = default;
};

/// The format by content, never by name; none when it is not one of the four.
std::optional<Sniffed> sniff(const QByteArray &bytes);

/// Why the decoders cannot read this JPEG although it is whole, as a sentence: it is lossless,
/// hierarchical or has more than 8 bits per sample. Empty for all others.
QString unreadableJpegReason(const QByteArray &bytes);

/// The size that a PNG states in its header; none when that is not there. Read here because libpng
/// refuses sizes above its own limit as damage, where a person should hear that the picture is too
/// large.
std::optional<PixelSize> statedPngSize(const QByteArray &bytes);

} // namespace pixpress

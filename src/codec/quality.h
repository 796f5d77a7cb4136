// SPDX-FileCopyrightText: 2026 The Pixpress authors
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "model/formats.h"

#include <QByteArray>

#include <vips/vips8>

#include <functional>

namespace pixpress {

/// Below this, on the scale of similarity(), a result is not good enough.
inline constexpr double lowestSimilarity = 74;

/// The qualities of an encoder, on its own scale.
struct QualityRange
{
    int lowest = 0;
    int usual = 0; ///< Where most photographs end up.
    int highest = 100;
    double gain = 1; ///< How much similarity() grows with a step at the usual quality.
};

struct ChosenQuality
{
    int quality = 0;
    double similarity = 0; ///< Expected at this quality.
};

/// The quality at which this picture looks as results are to look: the encoder is tried with
/// usually one quality, at most three. `encode` gives the bytes of a file, none once the work is
/// stopped.
ChosenQuality chooseQuality(const vips::VImage &pixels, ImageFormat format,
                            const QualityRange &range,
                            const std::function<QByteArray(int quality)> &encode);

/// How alike the picture in `bytes` looks.
double similarityOf(const QByteArray &bytes, ImageFormat format, const vips::VImage &pixels);

/// Whether many neighbours have the very same colour, as in drawings, text and screenshots, and
/// unlike in photographs. Of an image in memory.
bool isGraphic(const vips::VImage &pixels);

} // namespace pixpress

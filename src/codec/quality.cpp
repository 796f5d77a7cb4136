// SPDX-FileCopyrightText: 2026 The Pixpress authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "codec/quality.h"

#include "codec/decode.h"
#include "codec/similarity.h"

#include <algorithm>
#include <cmath>
#include <cstring>

namespace pixpress {

namespace {

using vips::VImage;

constexpr double wantedSimilarity = 78;
constexpr double tolerance = 2; ///< Another try would cost more than it is worth.
constexpr qint64 manyPixels = 30'000'000;

} // namespace

ChosenQuality chooseQuality(const VImage &pixels, ImageFormat format, const QualityRange &range,
                            const std::function<QByteArray(int quality)> &encode)
{
    const bool isLarge = static_cast<qint64>(pixels.width()) * pixels.height() > manyPixels;
    const int tries = isLarge ? 1 : 3;
    double gain = range.gain;
    ChosenQuality last{range.usual, wantedSimilarity};
    for (int i = 0; i < tries; ++i) {
        const QByteArray bytes = encode(last.quality);
        if (bytes.isEmpty())
            return last;
        const double measured = similarityOf(bytes, format, pixels);
        if (i > 0 && std::abs(measured - last.similarity) > 0.5) {
            // `last.similarity` is what was hoped for with the gain so far.
            gain *= std::clamp(1 + (measured - last.similarity) / 20, 0.4, 2.0);
        }
        last.similarity = measured;
        const double missing = wantedSimilarity - measured;
        if (std::abs(missing) <= tolerance)
            break;
        const int next = std::clamp(last.quality + static_cast<int>(std::lround(missing / gain)),
                                    range.lowest, range.highest);
        if (next == last.quality)
            break;
        last.similarity += (next - last.quality) * gain;
        last.quality = next;
    }
    return last;
}

double similarityOf(const QByteArray &bytes, ImageFormat format, const VImage &pixels)
{
    return similarity(pixels, openPicture(bytes, {format, false}));
}

bool isGraphic(const VImage &pixels)
{
    constexpr double shareOfGraphics = 0.3;
    const auto bands = static_cast<size_t>(pixels.bands());
    const auto width = static_cast<size_t>(pixels.width());
    const auto height = static_cast<size_t>(pixels.height());
    const auto *row = static_cast<const unsigned char *>(vips_image_get_data(pixels.get_image()));
    size_t same = 0;
    for (size_t y = 0; y < height; ++y, row += width * bands) {
        for (size_t x = bands; x < width * bands; x += bands)
            same += std::memcmp(row + x, row + x - bands, bands) == 0;
    }
    return static_cast<double>(same) > shareOfGraphics * static_cast<double>(height * (width - 1));
}

} // namespace pixpress

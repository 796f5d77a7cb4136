// SPDX-FileCopyrightText: 2026 The Pixpress authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "codec/palette.h"

#include <algorithm>
#include <map>
#include <tuple>
#include <unordered_map>

namespace pixpress {

namespace {

constexpr size_t maxColours = 256;

PngColour colourAt(const unsigned char *sample, int bands)
{
    PngColour colour{sample[0], sample[bands < 3 ? 0 : 1], sample[bands < 3 ? 0 : 2], 255};
    if (bands == 2 || bands == 4)
        colour.alpha = sample[bands - 1];
    return colour.alpha == 0 ? PngColour{0, 0, 0, 0} : colour;
}

quint32 keyOf(PngColour colour)
{
    return static_cast<quint32>(colour.red << 16 | colour.green << 8 | colour.blue) |
           static_cast<quint32>(colour.alpha) << 24;
}

} // namespace

std::optional<IndexedPicture> exactPalette(const vips::VImage &image)
{
    const int bands = image.bands();
    const auto *sample = static_cast<const unsigned char *>(vips_image_get_data(image.get_image()));
    IndexedPicture picture;
    picture.indices.resize(static_cast<size_t>(image.width()) *
                           static_cast<size_t>(image.height()));
    std::unordered_map<quint32, unsigned char> known;
    std::optional<quint32> lastKey;
    unsigned char lastIndex = 0;
    for (unsigned char &index : picture.indices) {
        const PngColour colour = colourAt(sample, bands);
        sample += bands;
        const quint32 key = keyOf(colour);
        if (key != lastKey) { // Most often the pixel on the left has the same.
            const auto [entry, isNew] =
                known.try_emplace(key, static_cast<unsigned char>(picture.palette.size()));
            if (isNew && picture.palette.size() == maxColours)
                return std::nullopt;
            if (isNew)
                picture.palette.push_back(colour);
            lastKey = key;
            lastIndex = entry->second;
        }
        index = lastIndex;
    }
    return picture;
}

IndexedPicture tidied(const IndexedPicture &picture)
{
    std::vector<size_t> counts(picture.palette.size());
    for (const unsigned char index : picture.indices)
        ++counts[index];
    std::map<PngColour, size_t> used;
    for (size_t i = 0; i < counts.size(); ++i) {
        if (counts[i] > 0)
            used[picture.palette[i]] += counts[i];
    }
    IndexedPicture result;
    for (const auto &[colour, count] : used)
        result.palette.push_back(colour);
    std::ranges::sort(result.palette, [&](const PngColour &a, const PngColour &b) {
        return std::tuple(a.alpha == 255, used[b], a) < std::tuple(b.alpha == 255, used[a], b);
    });
    std::vector<unsigned char> places(picture.palette.size());
    for (size_t i = 0; i < places.size(); ++i) {
        const auto found = std::ranges::find(result.palette, picture.palette[i]);
        places[i] = static_cast<unsigned char>(found - result.palette.begin());
    }
    result.indices.reserve(picture.indices.size());
    for (const unsigned char index : picture.indices)
        result.indices.push_back(places[index]);
    return result;
}

} // namespace pixpress

// SPDX-FileCopyrightText: 2026 The Pixpress authors
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <array>
#include <cstddef>
#include <vector>

namespace pixpress {

/// How each row of a PNG is predicted from what is left of it and above.
enum class PngFilter {
    none,
    up,
    paeth,
    leastSum,   ///< Row by row the filter whose differences are smallest.
    fewestPairs ///< Row by row the filter that leaves the fewest different pairs of bytes.
};
inline constexpr std::array pngFilters{PngFilter::none, PngFilter::up, PngFilter::paeth,
                                       PngFilter::leastSum, PngFilter::fewestPairs};

struct FilterInput
{
    const unsigned char *rows = nullptr;
    size_t stride = 0; ///< Bytes of a row.
    size_t height = 0;
    size_t distance = 1; ///< Bytes to the sample on the left.
};

/// The rows, each after the number of its filter.
std::vector<unsigned char> filtered(const FilterInput &input, PngFilter filter);

} // namespace pixpress

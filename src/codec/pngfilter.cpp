// SPDX-FileCopyrightText: 2026 The Pixpress authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "codec/pngfilter.h"

#include <algorithm>
#include <bitset>
#include <cstdlib>
#include <limits>
#include <memory>

namespace pixpress {

namespace {

enum RowFilter : unsigned char { none, sub, up, average, paeth };
constexpr size_t rowFilterCount = 5;

unsigned char paethOf(int left, int above, int corner)
{
    const int toLeft = std::abs(above - corner);
    const int toAbove = std::abs(left - corner);
    const int toCorner = std::abs(left + above - 2 * corner);
    if (toLeft <= toAbove && toLeft <= toCorner)
        return static_cast<unsigned char>(left);
    return static_cast<unsigned char>(toAbove <= toCorner ? above : corner);
}

/// The first row is predicted from zeros.
template <typename Predict>
void subtract(const FilterInput &input, size_t y, unsigned char *out, Predict predict)
{
    const std::vector<unsigned char> zeros(y == 0 ? input.stride : 0);
    const unsigned char *row = input.rows + y * input.stride;
    const unsigned char *upper = y == 0 ? zeros.data() : row - input.stride;
    for (size_t x = 0; x < input.distance; ++x)
        out[x] = static_cast<unsigned char>(row[x] - predict(0, upper[x], 0));
    for (size_t x = input.distance; x < input.stride; ++x)
        out[x] = static_cast<unsigned char>(
            row[x] - predict(row[x - input.distance], upper[x], upper[x - input.distance]));
}

void filterRow(const FilterInput &input, size_t y, RowFilter filter, unsigned char *out)
{
    switch (filter) {
    case none: return subtract(input, y, out, [](int, int, int) { return 0; });
    case sub: return subtract(input, y, out, [](int left, int, int) { return left; });
    case up: return subtract(input, y, out, [](int, int above, int) { return above; });
    case average:
        return subtract(input, y, out, [](int left, int above, int) { return (left + above) / 2; });
    case paeth: return subtract(input, y, out, paethOf);
    }
}

size_t sumOf(const unsigned char *row, size_t size)
{
    size_t sum = 0;
    for (size_t x = 0; x < size; ++x)
        sum += static_cast<size_t>(std::abs(static_cast<signed char>(row[x])));
    return sum;
}

size_t pairsOf(const unsigned char *row, size_t size)
{
    const auto seen = std::make_unique<std::bitset<0x10000>>();
    for (size_t x = 1; x < size; ++x)
        seen->set(static_cast<size_t>(row[x - 1] << 8 | row[x]));
    return seen->count();
}

} // namespace

std::vector<unsigned char> filtered(const FilterInput &input, PngFilter filter)
{
    const size_t outStride = input.stride + 1;
    std::vector<unsigned char> result(outStride * input.height);
    std::vector<unsigned char> trial(input.stride);
    for (size_t y = 0; y < input.height; ++y) {
        unsigned char *out = result.data() + y * outStride;
        const auto use = [&](RowFilter number) {
            out[0] = number;
            filterRow(input, y, number, out + 1);
        };
        switch (filter) {
        case PngFilter::none: use(none); break;
        case PngFilter::up: use(up); break;
        case PngFilter::paeth: use(paeth); break;
        case PngFilter::leastSum:
        case PngFilter::fewestPairs: {
            size_t least = std::numeric_limits<size_t>::max();
            for (size_t number = 0; number < rowFilterCount; ++number) {
                filterRow(input, y, static_cast<RowFilter>(number), trial.data());
                const size_t cost = filter == PngFilter::leastSum
                                        ? sumOf(trial.data(), trial.size())
                                        : pairsOf(trial.data(), trial.size());
                if (cost < least) {
                    least = cost;
                    out[0] = static_cast<unsigned char>(number);
                    std::copy(trial.begin(), trial.end(), out + 1);
                }
            }
            break;
        }
        }
    }
    return result;
}

} // namespace pixpress

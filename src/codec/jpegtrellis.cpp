// SPDX-FileCopyrightText: 2026 The Pixpress authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "codec/jpegtrellis.h"

#include <algorithm>
#include <bit>
#include <cstdlib>

namespace pixpress {

namespace {

constexpr size_t blockSize = 64;

constexpr std::array<unsigned char, blockSize> zigzag{
    0,  1,  8,  16, 9,  2,  3,  10, 17, 24, 32, 25, 18, 11, 4,  5,  12, 19, 26, 33, 40, 48,
    41, 34, 27, 20, 13, 6,  7,  14, 21, 28, 35, 42, 49, 56, 57, 50, 43, 36, 29, 22, 15, 23,
    30, 37, 44, 51, 58, 59, 52, 45, 38, 31, 39, 46, 53, 60, 61, 54, 47, 55, 62, 63};

/// What a bit may cost, in squared steps of the table. Measured: less gives larger files at the
/// same look, more makes fine structure vanish.
constexpr float bitPrice = 0.09F;

/// About as many bits as the usual codes take for a value of this many bits after `run` zeros.
float bitsFor(size_t run, unsigned size)
{
    constexpr float longRun = 11; // The code for 16 zeros.
    const float runs = longRun * static_cast<float>(run / 16);
    const auto zeros = static_cast<float>(run % 16);
    const auto bits = static_cast<float>(size);
    const float code = 0.6F + 1.0F * bits + 0.75F * zeros + 0.35F * zeros * (bits - 1);
    return runs + std::clamp(code, 2.0F, 16.0F) + bits;
}

/// The cheapest way to code the coefficients up to one that is not zero.
struct Way
{
    size_t place = 0; ///< In the zigzag order; 0 is the start.
    float cost = 0;
    int level = 0;
    size_t previous = 0; ///< Index of the way that it continues.
};

} // namespace

void quantiseBlock(const short *coefficients, const QuantTable &table, short *out)
{
    constexpr float endBits = 3; // The code for nothing but zeros to the end.
    std::fill(out, out + blockSize, short{0});
    const int step = static_cast<int>(table[0]);
    const int first = coefficients[0];
    out[0] = static_cast<short>((first >= 0 ? first + step / 2 : first - step / 2) / step);

    std::array<float, blockSize> lost{}; // When all coefficients up to this one become zero.
    std::array<Way, blockSize> ways{};
    size_t count = 1;
    for (size_t i = 1; i < blockSize; ++i) {
        const size_t place = zigzag[i];
        const float value =
            static_cast<float>(std::abs(coefficients[place])) / static_cast<float>(table[place]);
        lost[i] = lost[i - 1] + value * value;
        const int rounded = static_cast<int>(value + 0.5F);
        if (rounded == 0)
            continue;
        Way best{i, 1e30F, 0, 0};
        for (int level = std::max(1, rounded - 1); level <= rounded; ++level) {
            const float error = value - static_cast<float>(level);
            const auto size = static_cast<unsigned>(std::bit_width(static_cast<unsigned>(level)));
            for (size_t from = 0; from < count; ++from) {
                const size_t run = i - ways[from].place - 1;
                const float cost = ways[from].cost + lost[i - 1] - lost[ways[from].place] +
                                   error * error + bitPrice * bitsFor(run, size);
                if (cost < best.cost)
                    best = {i, cost, level, from};
            }
        }
        ways[count++] = best;
    }

    size_t best = 0;
    float least = 1e30F;
    for (size_t i = 0; i < count; ++i) {
        const bool isLast = ways[i].place == blockSize - 1;
        const float cost = ways[i].cost + lost[blockSize - 1] - lost[ways[i].place] +
                           (isLast ? 0 : bitPrice * endBits);
        if (cost < least) {
            least = cost;
            best = i;
        }
    }
    for (size_t i = best; i > 0; i = ways[i].previous) {
        const size_t place = zigzag[ways[i].place];
        out[place] = static_cast<short>(coefficients[place] < 0 ? -ways[i].level : ways[i].level);
    }
}

} // namespace pixpress

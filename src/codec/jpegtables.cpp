// SPDX-FileCopyrightText: 2026 The Pixpress authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "codec/jpegtables.h"

#include <algorithm>

namespace pixpress {

QuantTable quantTable(int quality)
{
    // Published by Nicolas Robidoux, made to please the eye rather than to measure well.
    constexpr QuantTable middle{16,  16,  16,  18,  25,  37,  56,  85,  16,  17,  20,  27, 34,
                                40,  53,  75,  16,  20,  24,  31,  43,  62,  91,  135, 18, 27,
                                31,  40,  53,  74,  106, 156, 25,  34,  43,  53,  69,  94, 131,
                                189, 37,  40,  62,  74,  94,  124, 169, 238, 56,  53,  91, 106,
                                131, 169, 226, 311, 85,  75,  135, 156, 189, 238, 311, 418};
    const unsigned percent =
        static_cast<unsigned>(quality < 50 ? 5000 / quality : 200 - 2 * quality);
    QuantTable table{};
    std::ranges::transform(middle, table.begin(), [&](unsigned step) {
        return std::clamp((step * percent + 50) / 100, 1U, 255U);
    });
    return table;
}

} // namespace pixpress

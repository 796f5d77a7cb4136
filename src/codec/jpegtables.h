// SPDX-FileCopyrightText: 2026 The Pixpress authors
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <array>

namespace pixpress {

/// In rows, the lowest frequency first.
using QuantTable = std::array<unsigned, 64>;

/// The steps in which the coefficients of brightness and colours are stored at a quality of 1 to
/// 100: coarser for high frequencies than libjpeg's own tables, finer for low ones.
QuantTable quantTable(int quality);

} // namespace pixpress

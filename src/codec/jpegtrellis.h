// SPDX-FileCopyrightText: 2026 The Pixpress authors
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "codec/jpegtables.h"

namespace pixpress {

/// Divides the 64 coefficients of a block, in rows, by the steps of the table, and rounds each so
/// that the block looks as alike as possible in as few bits as possible: where the last bit of
/// likeness is expensive, a coefficient becomes smaller or none.
void quantiseBlock(const short *coefficients, const QuantTable &table, short *out);

} // namespace pixpress

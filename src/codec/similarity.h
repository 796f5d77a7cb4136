// SPDX-FileCopyrightText: 2026 The Pixpress authors
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <vips/vips8>

namespace pixpress {

/// How alike two pictures of the same size look, on the scale of SSIMULACRA 2: 100 for the same
/// pixels, 90 when nobody sees a difference side by side, 70 for high and 50 for medium quality.
/// Multi-scale structural similarity of brightness and the two colour differences; an estimate, a
/// few points off. Both images have 8 bits, 1 to 4 bands. Throws vips::VError when one cannot be
/// decoded.
double similarity(const vips::VImage &original, const vips::VImage &copy);

} // namespace pixpress

// SPDX-FileCopyrightText: 2026 The Pixpress authors
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <vips/vips8>

namespace pixpress {

/// Whether it would take minutes to decode this picture: a JPEG can be made of any number of scans,
/// of a few bytes each, and the decoder goes over all of the picture for each of them before it
/// gives the first line. Files as they are in use have fewer than twenty.
///
/// `opened` is the picture that `source` holds, with only its header read. Reads from the source's
/// beginning on. Throws vips::VError when that cannot be read.
bool hasTooManyScans(const vips::VImage &opened, const vips::VSource &source);

} // namespace pixpress

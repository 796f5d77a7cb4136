// SPDX-FileCopyrightText: 2026 The Pixpress authors
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "model/thumbnail.h"

#include <atomic>

namespace pixpress {

/// Reads the picture of one of the four formats, whole, from an open file, which stays open, and
/// makes it `longerSide` pixels on its longer side; a smaller picture stays as it is. Gives none
/// when the file is damaged, too large or no picture, or when `stopped` is raised meanwhile.
/// Blocks; may be called from several threads.
Thumbnail makeThumbnail(int descriptor, int longerSide, const std::atomic_bool &stopped);

} // namespace pixpress

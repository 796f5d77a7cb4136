// SPDX-FileCopyrightText: 2026 The Pixpress authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "memoryfile.h"

#include "codec/thumbnail.h"

#include <algorithm>

using namespace pixpress;

// A file that a row shows small: either a whole small picture or none.
extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    constexpr int longerSide = 16;
    const fuzz::MemoryFile file(fuzz::bytesOf(data, size));
    const std::atomic_bool stopped = false;
    const auto [width, height, rgba] = makeThumbnail(file.descriptor(), longerSide, stopped);
    fuzz::noteOutcome(0, static_cast<quint64>(width));
    fuzz::noteOutcome(1, static_cast<quint64>(height));
    fuzz::noteOutcome(2, fuzz::digestOf(rgba) >> (fuzz::digestOf(rgba) & 63));
    HOLDS(rgba.size() == qsizetype{4} * width * height);
    HOLDS((width == 0) == (height == 0));
    HOLDS(std::max(width, height) <= longerSide);
    // Threads decide nothing.
    HOLDS(makeThumbnail(file.descriptor(), longerSide, stopped).rgba == rgba);
    HOLDS(::lseek(file.descriptor(), 0, SEEK_CUR) >= 0); // still open
    return 0;
}

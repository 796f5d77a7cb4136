// SPDX-FileCopyrightText: 2026 The Pixpress authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "fuzz.h"

#include "codec/sniff.h"
#include "codec/strip.h"

using namespace pixpress;

namespace {

/// What a WebP file needs around its picture to hold metadata.
constexpr qsizetype containerSize = 64;

void check(const QByteArray &file, ImageFormat format, const QByteArray &exif)
{
    const auto once = stripped(file, format, exif);
    fuzz::noteOutcome(static_cast<unsigned>(format), once ? 1 : 0);
    if (!once)
        return;
    HOLDS(once->size() <= file.size() + exif.size() + containerSize);
    HOLDS(format != ImageFormat::avif || once->size() == file.size());
    if (const auto before = sniff(file); before && before->format == format) {
        const auto after = sniff(*once);
        HOLDS(after && after->format == format);
    }
    if (!exif.isEmpty())
        return;
    const auto twice = stripped(*once, format, exif);
    // What was blanked in an AVIF file may occur in it a second time, and then has no known place.
    HOLDS(twice == once || (format == ImageFormat::avif && !twice));
}

} // namespace

// What takes the metadata out of a file, given any bytes: the result is of the same format, and
// there is nothing left to take out.
extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    const QByteArray file = fuzz::bytesOf(data, size);
    const QByteArray exif("Exif\0\0MM\0\x2a\0\0\0\x08\0\1\1\x12\0\3\0\0\0\1\0\6\0\0\0\0\0\0", 32);
    if (const auto stated = statedPngSize(file))
        HOLDS(stated->width >= 0 && stated->height >= 0);
    for (const ImageFormat format : allCases<ImageFormat>()) {
        check(file, format, {});
        check(file, format, exif);
    }
    return 0;
}

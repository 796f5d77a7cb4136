// SPDX-FileCopyrightText: 2026 The Pixpress authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "fuzz.h"

#include "codec/metadata.h"
#include "codec/vipslibrary.h"

using namespace pixpress;

// The EXIF data of a picture: what is kept of it is less than there was, and kept whole when it is
// asked for again.
extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    startVips();
    const auto withBlock = [](const void *block, size_t length) {
        vips::VImage image = vips::VImage::black(1, 1).copy();
        vips_image_set_blob_copy(image.get_image(), VIPS_META_EXIF_NAME, block, length);
        return image;
    };
    if (size == 0)
        return 0;
    const vips::VImage image = withBlock(data, size);
    for (int choice = 0; choice < 16; ++choice) {
        const Preserve preserve{(choice & 1) != 0, (choice & 2) != 0, (choice & 4) != 0};
        const bool orientation = (choice & 8) != 0;
        const QByteArray kept = preservedExif(image, preserve, orientation);
        HOLDS(!kept.isEmpty() || kept.isNull() || choice != 0);
        if (kept.isEmpty())
            continue;
        HOLDS(choice != 0 && kept.startsWith("Exif"));
        const vips::VImage again = withBlock(kept.constData(), static_cast<size_t>(kept.size()));
        HOLDS(preservedExif(again, preserve, orientation) == kept);
        HOLDS(preservedExif(again, {}, false).isEmpty());
        HOLDS(withoutMetadata(image, {}).get_typeof(VIPS_META_EXIF_NAME) == 0);
    }
    return 0;
}

// SPDX-FileCopyrightText: 2026 The Pixpress authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "memoryfile.h"

#include "codec/codec.h"
#include "codec/sniff.h"
#include "codec/strip.h"
#include "codec/thumbnail.h"

#include <algorithm>

using namespace pixpress;

namespace {

constexpr qint64 maxPixels = 48 * 48;
constexpr qsizetype slack = 64; ///< What orientation and its container may add to an original.

const std::atomic_bool stopped = false;

void checkError(const CodecError &error)
{
    fuzz::noteOutcome(0, quint64{1} << static_cast<unsigned>(error.fault));
    HOLDS(!error.message.isEmpty());
    HOLDS(error.fault != CodecFault::stopped);
}

/// That `encoded` is the picture it says it is.
void checkEncoded(const Encoded &encoded, const PictureInfo &original)
{
    const auto info = inspect(encoded.bytes, 1 << 24);
    HOLDS(info && info->format == encoded.format);
    const PixelSize turned{encoded.size.height, encoded.size.width};
    HOLDS(info->frame == encoded.size || info->frame == turned);
    HOLDS(info->frameCount == original.frameCount);
    HOLDS(makeThumbnail(fuzz::MemoryFile(encoded.bytes).descriptor(), 16, stopped).width > 0);
}

/// Some options, which follow from the input.
CompressionOptions optionsFor(quint64 choice)
{
    const auto take = [&choice](quint64 count) {
        const quint64 taken = choice % count;
        choice /= count;
        return taken;
    };
    CompressionOptions options;
    if (take(2) != 0)
        options.convertEnabled = true;
    options.convertFormat = allCases<ImageFormat>()[take(4)];
    options.backgroundColor = QStringLiteral("#010203");
    options.preserveCopyright = take(2) != 0;
    options.preserveCreation = take(2) != 0;
    options.preserveLocation = take(2) != 0;
    options.resizeEnabled = take(2) != 0;
    options.resizeMode = allCases<ResizeMode>()[take(4)];
    options.resizeWidth = static_cast<qint64>(1 + take(40));
    options.resizeHeight = static_cast<qint64>(1 + take(40));
    return options;
}

} // namespace

// A picture to compress: refused with a sentence, or answered with a picture of the same
// format and size that is not larger; then the same with some options.
extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    const QByteArray original = fuzz::bytesOf(data, size);
    const auto info = inspect(original, maxPixels);
    if (!info) {
        checkError(info.error());
        return 0;
    }
    HOLDS(info->frame.width >= 1 && info->frame.height >= 1 && info->frameCount >= 1);
    HOLDS(info->pixels() <= maxPixels);
    fuzz::noteOutcome(1 + static_cast<unsigned>(info->format), quint64(info->frame.width));
    fuzz::noteOutcome(5 + static_cast<unsigned>(info->format), quint64(info->frame.height));

    const auto plain = compress(original, {}, maxPixels, stopped);
    if (plain) {
        fuzz::noteOutcome(9 + static_cast<unsigned>(info->format), quint64(plain->bytes.size()));
        HOLDS(plain->format == info->format);
        checkEncoded(*plain, *info);
        if (const auto kept = stripped(original, info->format, {}))
            HOLDS(plain->bytes.size() <= std::max(original.size(), kept->size()) + slack);
    } else {
        checkError(plain.error());
    }

    const CompressionOptions options = optionsFor(fuzz::digestOf(original));
    if (const auto reworked =
            compress(original, toRequestOptions(options).value(), maxPixels, stopped)) {
        HOLDS(plain);
        HOLDS(reworked->format == (options.convertEnabled ? options.convertFormat : info->format));
        checkEncoded(*reworked, *info);
    } else {
        checkError(reworked.error());
    }
    return 0;
}

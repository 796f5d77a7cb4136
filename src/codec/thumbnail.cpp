// SPDX-FileCopyrightText: 2026 The Pixpress authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "codec/thumbnail.h"

#include "codec/descriptorsource.h"
#include "codec/scans.h"
#include "codec/vipslibrary.h"

#include <algorithm>
#include <string_view>

namespace pixpress {

namespace {

using vips::VImage;

/// Some decoders hold all pixels at once.
constexpr qint64 maxDecodedBytes = 1 << 30;

/// What the decoder can do towards a smaller picture at next to no cost, as long as it leaves twice
/// what is wanted.
void shrinkOnLoad(vips::VOption &options, const VImage &opened, int longerSide)
{
    const auto [thinner, longer] = std::minmax({opened.width(), opened.height()});
    // Of a line that gets thinner than a pixel nothing would be left, at which libvips ends the
    // process.
    const double shrink = std::min(longer / (2.0 * longerSide), static_cast<double>(thinner));
    const std::string_view loader = opened.get_string("vips-loader");
    if (loader.starts_with("jpeg")) {
        const auto factors = {8, 4, 2, 1};
        const auto *factor = std::ranges::find_if(factors, [&](int f) { return f <= shrink; });
        options.set("shrink", factor == factors.end() ? 1 : *factor);
    } else if (loader.starts_with("webp")) {
        options.set("scale", 1 / std::max(1.0, shrink));
    }
}

VImage open(const vips::VSource &source, int longerSide)
{
    const VImage opened = VImage::new_from_source(source, "");
    const auto pixelBytes =
        static_cast<qint64>(vips_format_sizeof(opened.format())) * opened.bands();
    if (qint64{opened.width()} * opened.height() > maxDecodedBytes / pixelBytes)
        throw vips::VError("too large");
    if (hasTooManyScans(opened, source))
        throw vips::VError("too many scans");
    auto *options =
        VImage::option()->set("access", VIPS_ACCESS_SEQUENTIAL)->set("fail_on", VIPS_FAIL_ON_ERROR);
    shrinkOnLoad(*options, opened, longerSide);
    return VImage::new_from_source(source, "", options);
}

Thumbnail toThumbnail(VImage image)
{
    if (!image.has_alpha())
        image = image.bandjoin(255);
    size_t size = 0;
    auto *pixels = static_cast<char *>(image.write_to_memory(&size));
    Thumbnail thumbnail{image.width(), image.height(),
                        QByteArray(pixels, static_cast<qsizetype>(size))};
    g_free(pixels);
    return thumbnail;
}

} // namespace

Thumbnail makeThumbnail(int descriptor, int longerSide, const std::atomic_bool &stopped)
{
    startVips();
    try {
        // Not VImage::thumbnail_source(), which paints black what is damaged.
        VImage image = open(descriptorSource(descriptor), longerSide);
        stopWith(image, stopped);
        const VImage small = image.thumbnail_image(longerSide, VImage::option()
                                                                   ->set("height", longerSide)
                                                                   ->set("size", VIPS_SIZE_DOWN)
                                                                   ->set("output_profile", "srgb"));
        Thumbnail thumbnail = toThumbnail(small.colourspace(VIPS_INTERPRETATION_sRGB));
        return stopped ? Thumbnail() : thumbnail;
    } catch (const vips::VError &) {
        vips_error_clear();
        return {};
    }
}

} // namespace pixpress

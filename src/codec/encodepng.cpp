// SPDX-FileCopyrightText: 2026 The Pixpress authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "codec/encode.h"

#include "codec/metadata.h"
#include "codec/pngwriter.h"

#include <libimagequant.h>

#include <array>
#include <memory>
#include <vector>

namespace pixpress {

namespace {

using vips::VImage;

// On libimagequant's scale of 0 to 100. Fewer colours are enough once the upper is reached; below
// the lower, banding shows and the picture is stored without loss instead.
constexpr int minQuality = 60;
constexpr int maxQuality = 98;

template <auto destroy>
struct Destroyer
{
    template <typename T>
    void operator()(T *object) const
    {
        destroy(object);
    }
};
using Attributes = std::unique_ptr<liq_attr, Destroyer<liq_attr_destroy>>;
using Image = std::unique_ptr<liq_image, Destroyer<liq_image_destroy>>;
using Result = std::unique_ptr<liq_result, Destroyer<liq_result_destroy>>;

size_t strideOf(const VImage &image)
{
    return static_cast<size_t>(image.width()) * static_cast<size_t>(image.bands());
}

/// Of an image in memory.
const unsigned char *rowOf(const VImage &image, int y)
{
    return static_cast<const unsigned char *>(vips_image_get_data(image.get_image())) +
           static_cast<size_t>(y) * strideOf(image);
}

// C callback; libimagequant calls it from several threads.
void fillRow(liq_color *out, int y, int width, void *data)
{
    const auto &image = *static_cast<const VImage *>(data);
    const int bands = image.bands();
    const bool hasAlpha = bands == 2 || bands == 4;
    const unsigned char *in = rowOf(image, y);
    for (int x = 0; x < width; ++x, in += bands) {
        out[x].r = in[0];
        out[x].g = bands < 3 ? in[0] : in[1];
        out[x].b = bands < 3 ? in[0] : in[2];
        out[x].a = hasAlpha ? in[bands - 1] : 255;
    }
}

// C callback: 0 ends the work.
int goesOn(float, void *data)
{
    return *static_cast<const std::atomic_bool *>(data) ? 0 : 1;
}

int bitDepthFor(unsigned colours)
{
    if (colours <= 2)
        return 1;
    if (colours <= 4)
        return 2;
    return colours <= 16 ? 4 : 8;
}

/// The picture in at most 256 colours; empty when that would show.
QByteArray encodeQuantised(const VImage &image, const QByteArray &exif,
                           const std::atomic_bool &stopped)
{
    const Attributes attributes(liq_attr_create());
    liq_set_quality(attributes.get(), minQuality, maxQuality);
    liq_attr_set_progress_callback(attributes.get(), goesOn,
                                   const_cast<std::atomic_bool *>(&stopped));
    const Image source(liq_image_create_custom(
        attributes.get(), fillRow, const_cast<VImage *>(&image), image.width(), image.height(), 0));
    liq_result *quantised = nullptr;
    if (!source || liq_image_quantize(source.get(), attributes.get(), &quantised) != LIQ_OK)
        return {};
    const Result result(quantised);
    liq_set_dithering_level(result.get(), 1.0F);

    const auto width = static_cast<size_t>(image.width());
    std::vector<unsigned char> indices(width * static_cast<size_t>(image.height()));
    if (liq_write_remapped_image(result.get(), source.get(), indices.data(), indices.size()) !=
        LIQ_OK)
        return {};
    const liq_palette *palette = liq_get_palette(result.get());
    return writePng({image.width(), image.height(), PNG_COLOR_TYPE_PALETTE,
                     bitDepthFor(palette->count), width, indices.data(), palette},
                    exif, stopped);
}

QByteArray encodeLossless(const VImage &image, const QByteArray &exif,
                          const std::atomic_bool &stopped)
{
    constexpr std::array types{PNG_COLOR_TYPE_GRAY, PNG_COLOR_TYPE_GRAY_ALPHA, PNG_COLOR_TYPE_RGB,
                               PNG_COLOR_TYPE_RGB_ALPHA};
    return writePng({image.width(), image.height(),
                     types.at(static_cast<size_t>(image.bands()) - 1), 8, strideOf(image),
                     rowOf(image, 0), nullptr},
                    exif, stopped);
}

} // namespace

QByteArray encodePng(const VImage &image, const std::atomic_bool &stopped)
{
    const VImage pixels = image.copy_memory();
    const QByteArray exif = exifBlock(image);
    const QByteArray quantised = encodeQuantised(pixels, exif, stopped);
    return quantised.isEmpty() && !stopped ? encodeLossless(pixels, exif, stopped) : quantised;
}

} // namespace pixpress

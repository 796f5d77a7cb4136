// SPDX-FileCopyrightText: 2026 The Pixpress authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "codec/encode.h"

#include "codec/metadata.h"
#include "codec/palette.h"
#include "codec/pngwriter.h"
#include "codec/quality.h"
#include "codec/similarity.h"

#include <libimagequant.h>

#include <algorithm>
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

VImage pixelsOf(const IndexedPicture &picture, int width, int height)
{
    std::vector<unsigned char> samples;
    samples.reserve(picture.indices.size() * 4);
    for (const unsigned char index : picture.indices) {
        const auto &[red, green, blue, alpha] = picture.palette[index];
        samples.insert(samples.end(), {red, green, blue, alpha});
    }
    return VImage(vips_image_new_from_memory_copy(samples.data(), samples.size(), width, height, 4,
                                                  VIPS_FORMAT_UCHAR))
        .copy(VImage::option()->set("interpretation", VIPS_INTERPRETATION_sRGB));
}

/// The picture in at most 256 colours; none when that would show.
std::optional<IndexedPicture> quantised(const VImage &image, const std::atomic_bool &stopped)
{
    const Attributes attributes(liq_attr_create());
    liq_set_quality(attributes.get(), minQuality, maxQuality);
    liq_attr_set_progress_callback(attributes.get(), goesOn,
                                   const_cast<std::atomic_bool *>(&stopped));
    const Image source(liq_image_create_custom(
        attributes.get(), fillRow, const_cast<VImage *>(&image), image.width(), image.height(), 0));
    liq_result *quantisation = nullptr;
    if (!source || liq_image_quantize(source.get(), attributes.get(), &quantisation) != LIQ_OK)
        return std::nullopt;
    const Result result(quantisation);
    liq_set_dithering_level(result.get(), 1.0F);

    IndexedPicture picture;
    picture.indices.resize(static_cast<size_t>(image.width()) *
                           static_cast<size_t>(image.height()));
    if (liq_write_remapped_image(result.get(), source.get(), picture.indices.data(),
                                 picture.indices.size()) != LIQ_OK)
        return std::nullopt;
    const liq_palette *palette = liq_get_palette(result.get());
    for (unsigned i = 0; i < palette->count; ++i) {
        const auto &[red, green, blue, alpha] = palette->entries[i];
        picture.palette.push_back(alpha == 0 ? PngColour{0, 0, 0, 0}
                                             : PngColour{red, green, blue, alpha});
    }
    if (similarity(image, pixelsOf(picture, image.width(), image.height())) < lowestSimilarity)
        return std::nullopt;
    return picture;
}

int bitDepthFor(size_t colours)
{
    if (colours <= 2)
        return 1;
    if (colours <= 4)
        return 2;
    return colours <= 16 ? 4 : 8;
}

/// The grey levels of the palette; none when it has colours or is transparent.
std::optional<std::array<unsigned char, 256>> greysOf(const std::vector<PngColour> &palette)
{
    std::array<unsigned char, 256> greys{};
    for (size_t i = 0; i < palette.size(); ++i) {
        const auto &[red, green, blue, alpha] = palette[i];
        if (red != green || green != blue || alpha < 255)
            return std::nullopt;
        greys.at(i) = red;
    }
    return greys;
}

QByteArray smaller(const QByteArray &a, const QByteArray &b)
{
    return b.isEmpty() || (!a.isEmpty() && a.size() <= b.size()) ? a : b;
}

/// The bytes depend on nothing but the pixels, so that they stay when the file is read and written
/// again.
QByteArray encodeIndexed(const IndexedPicture &untidy, const VImage &image, const QByteArray &exif,
                         const std::atomic_bool &stopped)
{
    const IndexedPicture picture = tidied(untidy);
    const auto write = [&](PngColours colours, int depth, const unsigned char *samples) {
        return writePng({image.width(), image.height(), colours, depth, samples, picture.palette},
                        exif, stopped);
    };
    QByteArray bytes =
        write(PngColours::palette, bitDepthFor(picture.palette.size()), picture.indices.data());
    if (const auto greys = greysOf(picture.palette)) {
        std::vector<unsigned char> samples;
        samples.reserve(picture.indices.size());
        for (const unsigned char index : picture.indices)
            samples.push_back(greys->at(index));
        bytes = smaller(bytes, write(PngColours::grey, 8, samples.data()));
    }
    return bytes;
}

QByteArray encodeLossless(const VImage &image, const QByteArray &exif,
                          const std::atomic_bool &stopped)
{
    constexpr std::array types{PngColours::grey, PngColours::greyAlpha, PngColours::rgb,
                               PngColours::rgbAlpha};
    return writePng({image.width(),
                     image.height(),
                     types.at(static_cast<size_t>(image.bands()) - 1),
                     8,
                     rowOf(image, 0),
                     {}},
                    exif, stopped);
}

} // namespace

QByteArray encodePng(const VImage &image, const std::atomic_bool &stopped)
{
    const VImage pixels = image.copy_memory();
    const QByteArray exif = exifBlock(image);
    if (const auto exact = exactPalette(pixels))
        return encodeIndexed(*exact, pixels, exif, stopped);
    if (const auto few = quantised(pixels, stopped))
        return encodeIndexed(*few, pixels, exif, stopped);
    return stopped ? QByteArray() : encodeLossless(pixels, exif, stopped);
}

} // namespace pixpress

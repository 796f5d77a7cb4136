// SPDX-FileCopyrightText: 2026 The Pixpress authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "localservice/encode.h"

#include "localservice/metadata.h"

#include <libimagequant.h>
#include <png.h>

#include <array>
#include <csetjmp>
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

/// What libpng writes: rows of samples, and a palette when they are indices.
struct Raster
{
    int width = 0;
    int height = 0;
    int colourType = 0;
    int bitDepth = 8;
    size_t stride = 0; ///< Bytes from row to row, one per sample.
    const unsigned char *samples = nullptr;
    const liq_palette *palette = nullptr;
};

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

// As in the JPEG writer, what lives across libpng's longjmp is held outside of the function that is
// left by it.
struct PngWriter
{
    png_structp png = nullptr;
    png_infop info = nullptr;
    QByteArray bytes;
    std::vector<unsigned char> tiff;

    ~PngWriter() { png_destroy_write_struct(&png, &info); }

    bool write(const Raster &raster, const std::atomic_bool &stopped);
    void setPalette(const liq_palette &palette);
};

void append(png_structp png, png_bytep data, size_t size)
{
    static_cast<PngWriter *>(png_get_io_ptr(png))
        ->bytes.append(reinterpret_cast<const char *>(data), static_cast<qsizetype>(size));
}

void PngWriter::setPalette(const liq_palette &palette)
{
    std::array<png_color, 256> colours{};
    std::array<png_byte, 256> alphas{};
    int translucent = 0; // How many of the first colours need an alpha value.
    for (unsigned i = 0; i < palette.count; ++i) {
        const liq_color &entry = palette.entries[i];
        colours[i] = {entry.r, entry.g, entry.b};
        alphas[i] = entry.a;
        if (entry.a < 255)
            translucent = static_cast<int>(i) + 1;
    }
    png_set_PLTE(png, info, colours.data(), static_cast<int>(palette.count));
    if (translucent > 0)
        png_set_tRNS(png, info, alphas.data(), translucent, nullptr);
}

bool PngWriter::write(const Raster &raster, const std::atomic_bool &stopped)
{
    constexpr qint64 manyPixels = 30'000'000;
    const bool isLarge = static_cast<qint64>(raster.width) * raster.height > manyPixels;
    png = png_create_write_struct(PNG_LIBPNG_VER_STRING, nullptr, nullptr, nullptr);
    info = png ? png_create_info_struct(png) : nullptr;
    if (!info || setjmp(png_jmpbuf(png)) != 0)
        return false;
    png_set_write_fn(png, this, append, nullptr);
    png_set_compression_level(png, isLarge ? 4 : 9);
    // Measured: short blocks suit flat graphics, longer ones the noise of dithering.
    const bool isFlat = raster.palette && raster.palette->count < 256;
    png_set_compression_mem_level(png, isFlat ? 5 : 7);
    png_set_compression_buffer_size(png, 1 << 20); // Of one chunk, each with its own overhead.
    png_set_filter(png, PNG_FILTER_TYPE_BASE, raster.palette ? PNG_FILTER_NONE : PNG_ALL_FILTERS);
    png_set_IHDR(png, info, static_cast<png_uint_32>(raster.width),
                 static_cast<png_uint_32>(raster.height), raster.bitDepth, raster.colourType,
                 PNG_INTERLACE_NONE, PNG_COMPRESSION_TYPE_DEFAULT, PNG_FILTER_TYPE_DEFAULT);
    if (raster.palette)
        setPalette(*raster.palette);
    if (!tiff.empty())
        png_set_eXIf_1(png, info, static_cast<png_uint_32>(tiff.size()), tiff.data());
    png_write_info(png, info);
    png_set_packing(png);
    for (int y = 0; y < raster.height; ++y) {
        if (stopped)
            return false;
        png_write_row(png, raster.samples + static_cast<size_t>(y) * raster.stride);
    }
    png_write_end(png, info);
    return true;
}

QByteArray writePng(const Raster &raster, const QByteArray &exif, const std::atomic_bool &stopped)
{
    PngWriter writer;
    if (!exif.isEmpty()) // The chunk starts after the "Exif" identifier.
        writer.tiff.assign(exif.begin() + 6, exif.end());
    if (!writer.write(raster, stopped))
        throw vips::VError("the PNG was not written");
    return std::move(writer.bytes);
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

// SPDX-FileCopyrightText: 2026 The Pixpress authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "codec/pngwriter.h"

#include "codec/metadata.h"

#include <vips/vips8>

#include <array>
#include <csetjmp>
#include <vector>

namespace pixpress {

namespace {

// As in the JPEG writer, what lives across libpng's longjmp is held outside of the function that is
// left by it.
struct PngWriter
{
    png_structp png = nullptr;
    png_infop info = nullptr;
    QByteArray bytes;
    std::vector<unsigned char> tiff;

    ~PngWriter() { png_destroy_write_struct(&png, &info); }

    bool write(const PngRaster &raster, const std::atomic_bool &stopped);
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

bool PngWriter::write(const PngRaster &raster, const std::atomic_bool &stopped)
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

} // namespace

QByteArray writePng(const PngRaster &raster, const QByteArray &exif,
                    const std::atomic_bool &stopped)
{
    PngWriter writer;
    const QByteArrayView tiff = tiffOf(exif);
    writer.tiff.assign(tiff.begin(), tiff.end());
    if (!writer.write(raster, stopped))
        throw vips::VError("the PNG was not written");
    return std::move(writer.bytes);
}

} // namespace pixpress

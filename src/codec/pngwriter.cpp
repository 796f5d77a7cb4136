// SPDX-FileCopyrightText: 2026 The Pixpress authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "codec/pngwriter.h"

#include "codec/metadata.h"
#include "codec/pngfilter.h"

#include <QtEndian>

#include <libdeflate.h>

#include <algorithm>
#include <memory>
#include <new>

namespace pixpress {

namespace {

using Compressor = std::unique_ptr<libdeflate_compressor, decltype(&libdeflate_free_compressor)>;

QByteArray deflated(const std::vector<unsigned char> &data, int level)
{
    const Compressor compressor(libdeflate_alloc_compressor(level), libdeflate_free_compressor);
    if (!compressor)
        throw std::bad_alloc();
    QByteArray result(
        static_cast<qsizetype>(libdeflate_zlib_compress_bound(compressor.get(), data.size())),
        Qt::Uninitialized);
    const size_t size = libdeflate_zlib_compress(compressor.get(), data.data(), data.size(),
                                                 result.data(), static_cast<size_t>(result.size()));
    result.truncate(static_cast<qsizetype>(size));
    return result;
}

/// The rows as the file has them before they are filtered: samples of fewer than 8 bits share
/// bytes, the first in the highest bits.
std::vector<unsigned char> packedRows(const PngRaster &raster, size_t samplesPerRow)
{
    const auto height = static_cast<size_t>(raster.height);
    if (raster.bitDepth == 8)
        return {raster.samples, raster.samples + height * samplesPerRow};
    const auto depth = static_cast<size_t>(raster.bitDepth);
    const size_t stride = (samplesPerRow * depth + 7) / 8;
    std::vector<unsigned char> rows(height * stride);
    for (size_t y = 0; y < height; ++y) {
        for (size_t x = 0; x < samplesPerRow; ++x) {
            const unsigned shift = static_cast<unsigned>(8 - depth - x * depth % 8);
            rows[y * stride + x * depth / 8] |=
                static_cast<unsigned char>(raster.samples[y * samplesPerRow + x] << shift);
        }
    }
    return rows;
}

void appendChunk(QByteArray &file, const char *type, QByteArrayView content)
{
    std::array<char, 4> number{};
    qToBigEndian(static_cast<quint32>(content.size()), number.data());
    file.append(number.data(), number.size());
    const qsizetype checked = file.size();
    file.append(type, 4);
    file.append(content);
    qToBigEndian(static_cast<quint32>(libdeflate_crc32(0, file.constData() + checked,
                                                       static_cast<size_t>(file.size() - checked))),
                 number.data());
    file.append(number.data(), number.size());
}

QByteArray head(const PngRaster &raster)
{
    QByteArray content(13, '\0');
    qToBigEndian(static_cast<quint32>(raster.width), content.data());
    qToBigEndian(static_cast<quint32>(raster.height), content.data() + 4);
    content[8] = static_cast<char>(raster.bitDepth);
    content[9] = static_cast<char>(raster.colours);
    return content;
}

void appendPalette(QByteArray &file, const std::vector<PngColour> &palette)
{
    QByteArray colours;
    QByteArray alphas; // Only of the first colours: what follows is opaque.
    for (const PngColour &colour : palette) {
        for (const unsigned char part : {colour.red, colour.green, colour.blue})
            colours.append(static_cast<char>(part));
        if (colour.alpha < 255)
            alphas.append(static_cast<char>(colour.alpha));
    }
    appendChunk(file, "PLTE", colours);
    if (!alphas.isEmpty())
        appendChunk(file, "tRNS", alphas);
}

int samplesPerPixel(PngColours colours)
{
    switch (colours) {
    case PngColours::grey:
    case PngColours::palette: return 1;
    case PngColours::greyAlpha: return 2;
    case PngColours::rgb: return 3;
    case PngColours::rgbAlpha: return 4;
    }
    Q_UNREACHABLE();
}

/// The smallest of the ways to filter the rows, compared at a low level.
QByteArray deflatedRows(const PngRaster &raster, const std::atomic_bool &stopped)
{
    constexpr size_t manyBytes = 60'000'000;
    constexpr int quickLevel = 5;
    const int perPixel = samplesPerPixel(raster.colours);
    const size_t samplesPerRow = static_cast<size_t>(raster.width) * static_cast<size_t>(perPixel);
    const std::vector<unsigned char> rows = packedRows(raster, samplesPerRow);
    const FilterInput input{rows.data(), rows.size() / static_cast<size_t>(raster.height),
                            static_cast<size_t>(raster.height), static_cast<size_t>(perPixel)};
    const bool isLarge = rows.size() > manyBytes;
    const bool isPalette = raster.colours == PngColours::palette;
    PngFilter best = isPalette || raster.bitDepth < 8 ? PngFilter::none : PngFilter::leastSum;
    if (!isLarge) {
        qsizetype least = 0;
        for (const PngFilter filter : pngFilters) {
            if (stopped)
                return {};
            const qsizetype size = deflated(filtered(input, filter), quickLevel).size();
            if (least == 0 || size < least) {
                least = size;
                best = filter;
            }
        }
    }
    return stopped ? QByteArray() : deflated(filtered(input, best), isLarge ? 7 : 12);
}

} // namespace

QByteArray writePng(const PngRaster &raster, const QByteArray &exif,
                    const std::atomic_bool &stopped)
{
    const QByteArray rows = deflatedRows(raster, stopped);
    if (rows.isEmpty())
        return {};
    QByteArray file("\x89PNG\r\n\x1a\n", 8);
    file.reserve(rows.size() + exif.size() + 2048);
    appendChunk(file, "IHDR", head(raster));
    if (raster.colours == PngColours::palette)
        appendPalette(file, raster.palette);
    if (!exif.isEmpty())
        appendChunk(file, "eXIf", tiffOf(exif));
    appendChunk(file, "IDAT", rows);
    appendChunk(file, "IEND", {});
    return file;
}

} // namespace pixpress

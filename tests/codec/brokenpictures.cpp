// SPDX-FileCopyrightText: 2026 The Pixpress authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "brokenpictures.h"

#include "pictures.h"

#include <QtEndian>

#include <random>
#include <set>
#include <zlib.h>

namespace pixpress::testing {

namespace {

constexpr qsizetype pngSignatureSize = 8;

/// A number within a file.
struct Field
{
    qsizetype offset;
    int bytes;
    bool isLittleEndian = false;
};

QByteArray encoded(quint64 value, const Field &field)
{
    QByteArray result(8, '\0');
    if (field.isLittleEndian) {
        qToLittleEndian(value, result.data());
        return result.first(field.bytes);
    }
    qToBigEndian(value, result.data());
    return result.last(field.bytes);
}

quint64 valueOf(const QByteArray &file, const Field &field)
{
    quint64 value = 0;
    for (int i = 0; i < field.bytes; ++i) {
        const int at = field.isLittleEndian ? field.bytes - 1 - i : i;
        value = value << 8 | static_cast<uchar>(file[field.offset + at]);
    }
    return value;
}

QByteArray with(const QByteArray &file, const Field &field, quint64 value)
{
    return QByteArray(file).replace(field.offset, field.bytes, encoded(value, field));
}

quint32 crc(const QByteArray &bytes)
{
    return static_cast<quint32>(crc32(0, reinterpret_cast<const Bytef *>(bytes.constData()),
                                      static_cast<uInt>(bytes.size())));
}

QByteArray chunk(const QByteArray &type, const QByteArray &data)
{
    const QByteArray body = type + data;
    return encoded(static_cast<quint64>(data.size()), {0, 4}) + body + encoded(crc(body), {0, 4});
}

QByteArray header(quint32 width, quint32 height)
{
    return chunk("IHDR", encoded(width, {0, 4}) + encoded(height, {0, 4}) +
                             QByteArray::fromHex("0800000000"));
}

/// The lengths of a series of chunks or boxes between two offsets.
QList<Field> lengthsOfPng(const QByteArray &file)
{
    QList<Field> fields;
    for (qsizetype at = pngSignatureSize; at + 8 <= file.size();
         at += 12 + qsizetype(valueOf(file, {at, 4})))
        fields.append({at, 4});
    return fields;
}

QList<Field> lengthsOfJpeg(const QByteArray &file)
{
    QList<Field> fields;
    for (qsizetype at = 2; at + 4 <= file.size();) {
        fields.append({at + 2, 2});
        if (file[at + 1] == '\xda') // what follows has no length
            break;
        at += 2 + qsizetype(valueOf(file, fields.last()));
    }
    return fields;
}

QList<Field> lengthsOfWebp(const QByteArray &file)
{
    QList<Field> fields{{4, 4, true}};
    for (qsizetype at = 12; at + 8 <= file.size();) {
        fields.append({at + 4, 4, true});
        const auto size = qsizetype(valueOf(file, fields.last()));
        at += 8 + size + size % 2;
    }
    return fields;
}

QList<Field> lengthsOfAvif(const QByteArray &file, qsizetype from, qsizetype to)
{
    QList<Field> fields;
    for (qsizetype at = from; at + 8 <= to;) {
        fields.append({at, 4});
        const auto size = qsizetype(valueOf(file, fields.last()));
        const QByteArray type = file.sliced(at + 4, 4);
        if (type == "meta")
            fields += lengthsOfAvif(file, at + 12, at + size);
        if (type == "iprp" || type == "ipco")
            fields += lengthsOfAvif(file, at + 8, at + size);
        at += std::max<qsizetype>(size, 8);
    }
    return fields;
}

QList<Field> lengthsOf(ImageFormat format, const QByteArray &file)
{
    switch (format) {
    case ImageFormat::png: return lengthsOfPng(file);
    case ImageFormat::jpeg: return lengthsOfJpeg(file);
    case ImageFormat::webp: return lengthsOfWebp(file);
    case ImageFormat::avif: return lengthsOfAvif(file, 0, file.size());
    }
    return {};
}

/// Where width and height stand, one after the other or, for JPEG, the other way round.
std::pair<Field, Field> dimensionsOf(ImageFormat format, const QByteArray &file)
{
    switch (format) {
    case ImageFormat::png: return {{16, 4}, {20, 4}};
    case ImageFormat::jpeg: {
        const qsizetype frame = file.indexOf(QByteArray::fromHex("ffc0"));
        return {{frame + 7, 2}, {frame + 5, 2}};
    }
    case ImageFormat::webp: { // of the canvas
        return {{24, 3, true}, {27, 3, true}};
    }
    case ImageFormat::avif: {
        const qsizetype box = file.indexOf("ispe");
        return {{box + 8, 4}, {box + 12, 4}};
    }
    }
    return {};
}

} // namespace

QByteArray wholePicture(ImageFormat format)
{
    vips::VImage image = photo(96, 64).copy();
    image.set("exif-ifd0-Copyright", "Somebody (Somebody, ASCII, 9 components, 9 bytes)");
    const QByteArray jpeg = saved(image, ImageFormat::jpeg);
    return format == ImageFormat::jpeg ? jpeg : saved(loaded(jpeg), format);
}

BrokenPictures truncated(ImageFormat format)
{
    const QByteArray whole = wholePicture(format);
    std::set<qsizetype> lengths;
    for (qsizetype i = 0; i < 20; ++i)
        lengths.insert(i);
    for (qsizetype i = 1; i <= 40; ++i)
        lengths.insert(whole.size() * i / 41);
    BrokenPictures result;
    for (const qsizetype length : lengths)
        result.append({"ends at " + QByteArray::number(length), whole.first(length)});
    return result;
}

BrokenPictures withFlippedBits(ImageFormat format)
{
    const QByteArray whole = wholePicture(format);
    std::mt19937 random(static_cast<unsigned>(format) + 1); // the same numbers everywhere
    BrokenPictures result;
    for (int i = 0; i < 150; ++i) {
        // Every other time where the headers are.
        const auto range = static_cast<unsigned>(i % 2 ? whole.size() : whole.size() / 8);
        QByteArray broken = whole;
        QByteArray name = "bits";
        for (unsigned flips = 1 + random() % 4; flips > 0; --flips) {
            const auto at = static_cast<qsizetype>(random() % range);
            broken[at] = static_cast<char>(broken[at] ^ (1 << random() % 8));
            name += ' ' + QByteArray::number(at);
        }
        result.append({name, broken});
    }
    return result;
}

BrokenPictures withWrongLengths(ImageFormat format)
{
    const QByteArray whole = wholePicture(format);
    BrokenPictures result;
    for (const Field &field : lengthsOf(format, whole)) {
        const quint64 length = valueOf(whole, field);
        const quint64 most = (quint64(1) << 8 * field.bytes) - 1;
        for (const quint64 wrong : {quint64(0), quint64(1), quint64(7), length - 1, length + 1,
                                    length * 2, most / 2, most - 7, most}) {
            result.append(
                {"length " + QByteArray::number(wrong) + " at " + QByteArray::number(field.offset),
                 with(whole, field, wrong & most)});
        }
    }
    return result;
}

BrokenPictures withLyingDimensions(ImageFormat format)
{
    const QByteArray whole = wholePicture(format);
    const auto [width, height] = dimensionsOf(format, whole);
    const quint64 w = valueOf(whole, width);
    const quint64 h = valueOf(whole, height);
    BrokenPictures result;
    for (const auto &[newWidth, newHeight] :
         std::initializer_list<std::pair<quint64, quint64>>{{0, h},
                                                            {w, 0},
                                                            {0, 0},
                                                            {w + 1, h},
                                                            {w, h + 1},
                                                            {w - 1, h},
                                                            {w, h - 1},
                                                            {w * 64, h},
                                                            {w, h * 64},
                                                            {1, 1},
                                                            {5'000, 5'000},
                                                            {16'384, 16'384},
                                                            {60'000, 60'000},
                                                            {1, 65'535},
                                                            {65'535, 1},
                                                            {0xffffff, 0xffffff},
                                                            {0x7fffffff, 0x7fffffff},
                                                            {0xffffffff, 0xffffffff}}) {
        QByteArray broken = with(with(whole, width, newWidth), height, newHeight);
        if (format == ImageFormat::png)
            broken = with(broken, {29, 4}, crc(broken.sliced(12, 17)));
        result.append(
            {QByteArray::number(newWidth) + " by " + QByteArray::number(newHeight), broken});
    }
    return result;
}

QByteArray blackPng(quint32 width, quint32 height, qsizetype inflated)
{
    QByteArray packed(static_cast<qsizetype>(compressBound(uLong(1) << 20)), '\0');
    z_stream stream{};
    deflateInit(&stream, 9);
    QByteArray zeros(1 << 20, '\0');
    QByteArray data;
    for (qsizetype left = inflated; left >= 0; left -= zeros.size()) {
        stream.next_in = reinterpret_cast<Bytef *>(zeros.data());
        stream.avail_in = static_cast<uInt>(std::min(left, zeros.size()));
        do {
            stream.next_out = reinterpret_cast<Bytef *>(packed.data());
            stream.avail_out = static_cast<uInt>(packed.size());
            deflate(&stream, left < zeros.size() ? Z_FINISH : Z_NO_FLUSH);
            data += packed.first(packed.size() - stream.avail_out);
        } while (stream.avail_out == 0);
    }
    deflateEnd(&stream);
    return QByteArray::fromHex("89504e470d0a1a0a") + header(width, height) + chunk("IDAT", data) +
           chunk("IEND", {});
}

QByteArray jpegOfScans(int side, int repeated)
{
    const vips::VImage image = plain(side, side, {0});
    size_t size = 0;
    void *data = nullptr;
    image.write_to_buffer(".jpg", &data, &size, vips::VImage::option()->set("interlace", true));
    QByteArray jpeg(static_cast<const char *>(data), static_cast<qsizetype>(size));
    g_free(data);
    const qsizetype last = jpeg.lastIndexOf("\xff\xda");
    const QByteArray scan = jpeg.sliced(last, jpeg.size() - 2 - last);
    return jpeg.insert(last, scan.repeated(repeated));
}

BrokenPictures bombs()
{
    constexpr qsizetype large = 300'000'000;
    const QByteArray small = blackPng(100, 100, 100 * 101);
    const qsizetype dataAt = small.indexOf("IDAT") - 4;
    const QByteArray zeros = blackPng(1, 1, large);
    const auto start = zeros.indexOf("IDAT") + 4;
    const QByteArray packed = zeros.sliced(start, zeros.size() - start - 16);
    BrokenPictures result{
        {"says 60000 by 60000", blackPng(60'000, 60'000, 1000)},
        {"has 7000 by 7000 pixels", blackPng(7'000, 7'000, 7'000 * 7'001)},
        {"has 17000 by 17000 pixels", blackPng(17'000, 17'000, 17'000 * 17'001)},
        {"has far more data than pixels", blackPng(100, 100, large)},
        {"has a few large scans more", jpegOfScans(7000, 90)},
        {"has thousands of scans", jpegOfScans(4000, 5000)},
    };
    for (const QByteArray type : {"zTXt", "iCCP", "iTXt"}) {
        const QByteArray data = type == "iTXt" ? QByteArray("a\0\1\0\0\0", 6) + packed
                                               : QByteArray("a\0\0", 3) + packed;
        result.append({"has a large " + type, QByteArray(small).insert(dataAt, chunk(type, data))});
    }
    return result;
}

} // namespace pixpress::testing

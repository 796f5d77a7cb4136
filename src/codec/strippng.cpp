// SPDX-FileCopyrightText: 2026 The Pixpress authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "codec/strip.h"

#include "codec/metadata.h"

#include <QByteArrayView>
#include <QtEndian>

#include <libdeflate.h>

#include <algorithm>
#include <array>
#include <utility>

namespace pixpress {

namespace {

constexpr qsizetype signatureSize = 8;

bool isNeeded(QByteArrayView type)
{
    // A capital stands for what cannot be left out, such as the pixels and their palette.
    constexpr std::array<QByteArrayView, 8> colour{"tRNS", "gAMA", "cHRM", "sRGB",
                                                   "iCCP", "sBIT", "cICP", "mDCv"};
    return (type.front() & 0x20) == 0 || std::ranges::find(colour, type) != colour.end();
}

QByteArray exifChunk(const QByteArray &exif)
{
    const QByteArray content = "eXIf" + tiffOf(exif).toByteArray();
    QByteArray chunk(4 + content.size() + 4, '\0');
    qToBigEndian(static_cast<quint32>(content.size() - 4), chunk.data());
    chunk.replace(4, content.size(), content);
    const quint32 sum =
        libdeflate_crc32(0, content.constData(), static_cast<size_t>(content.size()));
    qToBigEndian(sum, chunk.data() + chunk.size() - 4);
    return chunk;
}

} // namespace

std::optional<QByteArray> strippedPng(const QByteArray &file, const QByteArray &exif)
{
    QByteArray result = file.first(std::min(signatureSize, file.size()));
    bool awaitsExif = !exif.isEmpty();
    qsizetype at = signatureSize;
    while (at + 12 <= file.size()) {
        const auto size =
            12 + static_cast<qsizetype>(qFromBigEndian<quint32>(file.constData() + at));
        if (size > file.size() - at)
            return std::nullopt;
        const QByteArrayView chunk = QByteArrayView(file).sliced(at, size);
        const QByteArrayView type = chunk.sliced(4, 4);
        if (isNeeded(type))
            result.append(chunk.data(), chunk.size());
        if (type == "IHDR" && std::exchange(awaitsExif, false))
            result.append(exifChunk(exif));
        if (type == "IEND")
            return result;
        at += size;
    }
    return std::nullopt;
}

} // namespace pixpress

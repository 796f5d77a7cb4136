// SPDX-FileCopyrightText: 2026 The Pixpress authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "codec/strip.h"

#include <QByteArrayView>
#include <QtEndian>

namespace pixpress {

namespace {

// The second bytes of markers; the first is always 0xff.
constexpr quint8 firstApplication = 0xe0;
constexpr quint8 lastApplication = 0xef;
constexpr quint8 comment = 0xfe;
constexpr quint8 startOfScan = 0xda;
constexpr quint8 endOfImage = 0xd9;

quint8 byteAt(const QByteArray &file, qsizetype at)
{
    return static_cast<quint8>(file.at(at));
}

/// What is left of a segment, with its marker and length; nothing of what a picture looks the same
/// without.
QByteArray needed(QByteArrayView segment)
{
    constexpr qsizetype densityEnd = 16; // The thumbnail's size follows, and then itself.
    const auto marker = static_cast<quint8>(segment.at(1));
    const QByteArrayView content = segment.sliced(4);
    if (marker == comment)
        return {};
    if (marker < firstApplication || marker > lastApplication)
        return segment.toByteArray();
    if (marker == firstApplication && content.startsWith("JFIF") &&
        segment.size() >= densityEnd + 2) {
        QByteArray withoutThumbnail = segment.first(densityEnd + 2).toByteArray();
        withoutThumbnail.replace(2, 2, QByteArray("\0\x10", 2));
        return withoutThumbnail.replace(densityEnd, 2, QByteArray(2, '\0'));
    }
    const bool isProfile =
        marker == firstApplication + 2 && content.startsWith(QByteArrayView("ICC_PROFILE\0", 12));
    const bool isColourModel = marker == firstApplication + 14 && content.startsWith("Adobe");
    return isProfile || isColourModel ? segment.toByteArray() : QByteArray();
}

/// Where the next marker begins; in between a scan's data may only be interrupted by restarts.
qsizetype scanEnd(const QByteArray &file, qsizetype at)
{
    while ((at = file.indexOf('\xff', at)) >= 0 && at + 1 < file.size()) {
        const quint8 next = byteAt(file, at + 1);
        const bool isRestart = next >= 0xd0 && next <= 0xd7;
        if (next != 0 && !isRestart)
            return at;
        at += 2;
    }
    return file.size();
}

QByteArray exifSegment(const QByteArray &exif)
{
    QByteArray segment("\xff\xe1\0\0", 4);
    qToBigEndian(static_cast<quint16>(exif.size() + 2), segment.data() + 2);
    return segment + exif;
}

} // namespace

std::optional<QByteArray> strippedJpeg(const QByteArray &file, const QByteArray &exif)
{
    constexpr qsizetype maxContent = 0xffff - 2;
    if (exif.size() > maxContent)
        return std::nullopt;
    QByteArray result("\xff\xd8");
    bool awaitsExif = !exif.isEmpty();
    qsizetype at = 2;
    while (at + 2 <= file.size()) {
        const quint8 marker = byteAt(file, at + 1);
        if (byteAt(file, at) != 0xff || marker == 0xff || marker == 0) {
            ++at; // Stray bytes, which decoders skip too.
            continue;
        }
        // The JFIF segment wants to be the first.
        if (awaitsExif && marker != firstApplication) {
            result += exifSegment(exif);
            awaitsExif = false;
        }
        if (marker == endOfImage)
            return result + "\xff\xd9"; // What follows are other pictures, or films.
        if (at + 4 > file.size())
            break;
        const auto length =
            static_cast<qsizetype>(qFromBigEndian<quint16>(file.constData() + at + 2));
        const qsizetype end = at + 2 + length;
        if (length < 2 || end > file.size())
            break;
        result += needed(QByteArrayView(file).sliced(at, end - at));
        at = marker == startOfScan ? scanEnd(file, end) : end;
        if (marker == startOfScan)
            result.append(file.constData() + end, at - end);
    }
    return std::nullopt;
}

} // namespace pixpress
